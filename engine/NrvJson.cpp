#include "NrvJson.h"

#include "NrvRuleSet.h"

namespace {

const char kHex[] = "0123456789abcdef";

void AppendUnicodeEscape(unsigned char c, std::string* pOut)
{
    const char szEscape[6] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 0xF]};
    pOut->append(szEscape, 6);
}

// A JSON string: quotes, backslashes and control bytes escaped, and with
// bAscii every byte from 0x7F up as the character of its value.
void AppendQuoted(std::string_view text, bool bAscii, std::string* pOut)
{
    *pOut += '"';
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\') {
            *pOut += '\\';
            *pOut += ch;
        } else if (c < 0x20 || (bAscii && c >= 0x7F)) {
            AppendUnicodeEscape(c, pOut);
        } else {
            *pOut += ch;
        }
    }
    *pOut += '"';
}

void AppendNumber(long long n, std::string* pOut)
{
    *pOut += std::to_string(n);
}

void AppendSize(size_t n, std::string* pOut)
{
    *pOut += std::to_string(n);
}

const char* KindName(ENrvNodeKind kind)
{
    return kind == kNrvNodeCommand ? "command" : kind == kNrvNodeInteger ? "integer" : "text";
}

}  // namespace

void CNrvJsonWriter::AppendString(std::string_view bytes, ENrvByteForm form, std::string* pOut) const
{
    // The code-point form is ASCII out, every byte one character: nothing
    // to decode, nothing lost. The other forms are valid UTF-8.
    if (form == kNrvBytesCodePoints)
        AppendQuoted(bytes, true, pOut);
    else
        AppendUtf8(NrvShown(bytes, form), pOut);
}

void CNrvJsonWriter::AppendUtf8(std::string_view text, std::string* pOut)
{
    AppendQuoted(text, false, pOut);
}

void CNrvJsonWriter::AppendBytes(std::string_view bytes, std::string* pOut) const
{
    AppendString(bytes, m_Form, pOut);
}

void CNrvJsonWriter::AppendText(std::string_view text, std::string* pOut) const
{
    AppendString(text, m_Form == kNrvBytesCodePoints ? kNrvBytesCodePoints : kNrvBytesDisplay, pOut);
}

void CNrvJsonWriter::AppendDiagnosticFields(const TNrvDiagnostic& diagnostic, std::string* pOut) const
{
    *pOut += "\"code\":";
    AppendNumber(diagnostic.nCode, pOut);
    *pOut += ",\"name\":";
    const char* pszName = NrvResultCodeName(diagnostic.nCode);
    if (pszName != nullptr)
        AppendText(pszName, pOut);
    else
        *pOut += "null";
    *pOut += ",\"offset\":";
    AppendSize(diagnostic.nOffset, pOut);
    *pOut += ",\"length\":";
    AppendSize(diagnostic.nLength, pOut);
    *pOut += ",\"command\":";
    if (diagnostic.command.empty())
        *pOut += "null";
    else
        AppendText(diagnostic.command, pOut);
    *pOut += ",\"message\":";
    AppendText(diagnostic.message, pOut);
}

void CNrvJsonWriter::AppendParseOutcome(const TNrvDiagnostic& diagnostic, std::string* pOut) const
{
    if (diagnostic.nCode >= 0) {
        *pOut += "{\"ok\":true}";
        return;
    }
    *pOut += "{\"ok\":false,";
    AppendDiagnosticFields(diagnostic, pOut);
    *pOut += '}';
}

void CNrvJsonWriter::AppendDiagnostic(const TNrvDiagnostic& diagnostic, std::string* pOut) const
{
    *pOut += '{';
    AppendDiagnosticFields(diagnostic, pOut);
    *pOut += '}';
}

void CNrvJsonWriter::AppendNode(const TNrvExplainNode& node, std::string* pOut) const
{
    *pOut += "{\"kind\":\"";
    *pOut += KindName(node.kind);
    *pOut += "\",\"name\":";
    AppendBytes(node.name, pOut);
    *pOut += ",\"offset\":";
    AppendSize(node.nOffset, pOut);
    *pOut += ",\"length\":";
    AppendSize(node.nLength, pOut);
    *pOut += ",\"code\":";
    if (node.bRun)
        AppendNumber(node.nCode, pOut);
    else
        *pOut += "null";
    *pOut += ",\"value\":";
    if (!node.bRun || node.nCode < 0)
        *pOut += "null";
    else if (node.bInteger)
        AppendNumber(node.nInteger, pOut);
    else
        AppendBytes(node.value, pOut);
    if (node.nValueLength > node.value.size()) {  // cut: the whole length
        *pOut += ",\"valueLength\":";
        AppendSize(node.nValueLength, pOut);
    }
    *pOut += ",\"params\":[";
    for (size_t i = 0; i < node.params.size(); ++i) {
        if (i != 0)
            *pOut += ',';
        AppendNode(node.params[i], pOut);
    }
    *pOut += ']';
    if (!node.gs1.empty() || node.bGs1More) {
        *pOut += ",\"gs1\":[";
        for (size_t i = 0; i < node.gs1.size(); ++i) {
            *pOut += i != 0 ? ",{\"ai\":" : "{\"ai\":";
            AppendUtf8(node.gs1[i].ai, pOut);
            *pOut += ",\"title\":";
            AppendUtf8(node.gs1[i].pszTitle, pOut);
            *pOut += ",\"data\":";
            AppendBytes(node.gs1[i].data, pOut);
            *pOut += '}';
        }
        *pOut += node.bGs1More ? "],\"gs1More\":true" : "]";
    }
    *pOut += '}';
}

void CNrvJsonWriter::AppendRule(size_t nRule, std::string_view name, std::string* pOut) const
{
    if (nRule == CNrvRuleSet::kNoRule) {
        *pOut += "null";
        return;
    }
    *pOut += "{\"index\":";
    AppendSize(nRule + 1, pOut);
    *pOut += ",\"name\":";
    AppendText(name, pOut);
    *pOut += '}';
}

void CNrvJsonWriter::AppendExplanation(const TNrvJsonScan& scan, const TNrvExplanation& explanation,
                                       std::string* pOut) const
{
    *pOut += "{\"scan\":";
    *pOut += std::to_string(scan.nScan);
    if (scan.bRuleSet) {
        *pOut += ",\"rule\":";
        AppendRule(scan.nRule, scan.ruleName, pOut);
    }
    *pOut += ",\"code\":";
    AppendNumber(scan.nCode, pOut);
    *pOut += ",\"output\":";
    AppendBytes(scan.output, pOut);
    *pOut += ",\"nodes\":[";
    if (scan.nCode != NRV_OK_NOT_TRIGGERED) {
        for (size_t i = 0; i < explanation.nodes.size(); ++i) {
            if (i != 0)
                *pOut += ',';
            AppendNode(explanation.nodes[i], pOut);
        }
    }
    *pOut += ']';
    if (scan.nCode < 0) {
        *pOut += ",\"failure\":";
        AppendDiagnostic(explanation.failure, pOut);
    }
    *pOut += '}';
}
