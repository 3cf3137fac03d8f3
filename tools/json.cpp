#include "json.h"

namespace {

void AppendCode(NRVRESULT nCode, std::string* pOut)
{
    *pOut += std::to_string(static_cast<long long>(nCode));
}

// "code":C,"name":...,"offset":O,"length":L,"command":...,"message":...
void AppendDiagnosticFields(const TNrvDiagnostic& diagnostic, std::string* pOut)
{
    *pOut += "\"code\":";
    AppendCode(diagnostic.nCode, pOut);
    const char* pszName = NrvResultCodeName(diagnostic.nCode);
    *pOut += ",\"name\":";
    if (pszName != nullptr)
        AppendJsonString(pszName, std::char_traits<char>::length(pszName), pOut);
    else
        *pOut += "null";
    *pOut += ",\"offset\":" + std::to_string(diagnostic.nOffset) + ",\"length\":" + std::to_string(diagnostic.nLength);
    *pOut += ",\"command\":";
    if (diagnostic.command.empty())
        *pOut += "null";
    else
        AppendJsonString(diagnostic.command.data(), diagnostic.command.size(), pOut);
    *pOut += ",\"message\":";
    AppendJsonString(diagnostic.message.data(), diagnostic.message.size(), pOut);
}

const char* KindName(ENrvNodeKind kind)
{
    return kind == kNrvNodeCommand ? "command" : kind == kNrvNodeInteger ? "integer" : "text";
}

void AppendNode(const TNrvExplainNode& node, std::string* pOut)
{
    *pOut += "{\"kind\":\"";
    *pOut += KindName(node.kind);
    *pOut += "\",\"name\":";
    AppendJsonString(node.name.data(), node.name.size(), pOut);
    *pOut += ",\"offset\":" + std::to_string(node.nOffset) + ",\"length\":" + std::to_string(node.nLength);
    *pOut += ",\"code\":";
    if (node.bRun)
        AppendCode(node.nCode, pOut);
    else
        *pOut += "null";
    *pOut += ",\"value\":";
    if (!node.bRun || node.nCode < 0)
        *pOut += "null";
    else if (node.bInteger)
        *pOut += std::to_string(node.nInteger);
    else
        AppendJsonString(node.value.data(), node.value.size(), pOut);
    if (node.nValueLength > node.value.size())  // cut: the whole length
        *pOut += ",\"valueLength\":" + std::to_string(node.nValueLength);
    *pOut += ",\"params\":[";
    for (size_t i = 0; i < node.params.size(); ++i) {
        if (i != 0)
            *pOut += ',';
        AppendNode(node.params[i], pOut);
    }
    *pOut += "]}";
}

}  // namespace

void AppendJsonString(const char* pData, size_t nLength, std::string* pOut)
{
    static const char kHex[] = "0123456789abcdef";
    *pOut += '"';
    for (size_t i = 0; i < nLength; ++i) {
        const unsigned char c = static_cast<unsigned char>(pData[i]);
        if (c == '"' || c == '\\') {
            *pOut += '\\';
            *pOut += static_cast<char>(c);
        } else if (c < 0x20 || c >= 0x7F) {
            *pOut += "\\u00";
            *pOut += kHex[c >> 4];
            *pOut += kHex[c & 0xF];
        } else {
            *pOut += static_cast<char>(c);
        }
    }
    *pOut += '"';
}

std::string JsonParseOutcome(const TNrvDiagnostic& diagnostic)
{
    if (diagnostic.nCode >= 0)
        return "{\"ok\":true}";
    std::string json = "{\"ok\":false,";
    AppendDiagnosticFields(diagnostic, &json);
    return json + "}";
}

std::string JsonExplanation(unsigned long long nScan, NRVRESULT nCode, const std::string& output,
                            const TNrvExplanation& explanation, const std::string& rule)
{
    std::string json = "{\"scan\":" + std::to_string(nScan);
    if (!rule.empty())
        json += ",\"rule\":" + rule;
    json += ",\"code\":";
    AppendCode(nCode, &json);
    json += ",\"output\":";
    AppendJsonString(output.data(), output.size(), &json);
    json += ",\"nodes\":[";
    if (nCode != NRV_OK_NOT_TRIGGERED) {
        for (size_t i = 0; i < explanation.nodes.size(); ++i) {
            if (i != 0)
                json += ',';
            AppendNode(explanation.nodes[i], &json);
        }
    }
    json += ']';
    if (nCode < 0) {
        json += ",\"failure\":{";
        AppendDiagnosticFields(explanation.failure, &json);
        json += '}';
    }
    return json + "}";
}
