#include "NrvPlayground.h"

#include <algorithm>

#include "NrvCommandTable.h"
#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvJson.h"
#include "NrvShownBytes.h"
#include "NrvSymbologies.h"

namespace {

void AppendNumber(long long n, std::string* pOut)
{
    *pOut += std::to_string(n);
}

// Where an expression holds a zero byte, which the parser would take for
// its end: said as a parse would say it.
bool FindZeroByte(std::string_view expression, TNrvDiagnostic* pDiagnostic)
{
    const size_t nZero = expression.find('\0');
    if (nZero == std::string_view::npos)
        return false;
    pDiagnostic->nCode = NRV_ERR_INVALID_PARAMETER;
    pDiagnostic->nOffset = nZero;
    pDiagnostic->nLength = 1;
    pDiagnostic->command.clear();
    pDiagnostic->message = "the expression cannot hold a zero byte";
    return true;
}

// One scan line as the tool reads it: as it is, or through its escapes.
bool ReadLine(std::string_view line, bool bEscapes, std::string* pScan, std::string* pProblem)
{
    if (!bEscapes) {
        pScan->assign(line);
        return true;
    }
    return NrvUnescape(line.data(), line.size(), pScan, pProblem);
}

// Text that a text box holds as it is: valid UTF-8 whose only control
// bytes are tabs and newlines.
bool IsPlainText(std::string_view bytes)
{
    const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data());
    for (size_t i = 0; i < bytes.size();) {
        const unsigned char c = p[i];
        if ((c < 0x20 && c != '\t' && c != '\n') || c == 0x7F)
            return false;
        const size_t n = c < 0x80 ? 1 : NrvUtf8SequenceLength(p + i, bytes.size() - i);
        if (n == 0)
            return false;
        i += n;
    }
    return true;
}

const char* KindName(int nKind)
{
    return nKind == kNrvKindNumber ? "\"number\"" : "\"text\"";
}

}  // namespace

const TNrvSettingNames kPageSettingNames = {
    {"minimum size", "maximum size", "only symbologies", "contains", "starts with", "ends with", "largest text",
     "work per scan byte"},
    nullptr};

std::vector<std::string_view> NrvSplitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    for (size_t nStart = 0; nStart < text.size();) {
        size_t nEnd = text.find('\n', nStart);
        if (nEnd == std::string_view::npos)
            nEnd = text.size();
        lines.push_back(text.substr(nStart, nEnd - nStart));
        nStart = nEnd + 1;
    }
    return lines;
}

std::string NrvScansOfFile(std::string_view bytes, bool bEscapes, bool* pbEscapes)
{
    *pbEscapes = bEscapes || !IsPlainText(bytes);
    if (!*pbEscapes)
        return std::string(bytes);
    std::string text;
    for (const std::string_view line : NrvSplitLines(bytes)) {
        NrvAppendEscaped(line.data(), line.size(), &text);
        text += '\n';
    }
    return text;
}

CNrvPlayground::CNrvPlayground()
{
    m_Settings.Apply(&m_Profile);
}

std::string CNrvPlayground::SetSeedOnly(bool bSeedOnly)
{
    m_Settings.SetCommandSets(bSeedOnly ? kNrvCommandSetSeed : kNrvCommandSetsAll);
    m_Profile.EnableCommandSets(m_Settings.CommandSets());
    const std::string expression = m_Expression;
    return Parse(expression);
}

std::string CNrvPlayground::Parse(std::string_view expression)
{
    m_Expression.assign(expression);
    TNrvDiagnostic diagnostic;
    if (FindZeroByte(expression, &diagnostic)) {
        m_ParseResult = diagnostic.nCode;
    } else {
        m_ParseResult = m_Profile.Parse(m_Expression.c_str());
        diagnostic = NrvDiagnoseParse(m_Expression.c_str(), m_Settings.CommandSets());
    }
    std::string reply;
    CNrvJsonWriter(kNrvBytesDisplay).AppendParseOutcome(diagnostic, &reply);
    return reply;
}

std::string CNrvPlayground::SetTriggers(std::string_view minimumSize, std::string_view maximumSize,
                                        std::string_view symbologies, std::string_view contains,
                                        std::string_view startsWith, std::string_view endsWith, bool bEscapes)
{
    CNrvSettings settings;
    settings.SetCommandSets(m_Settings.CommandSets());  // the switch is not a trigger
    TNrvSettingError error;
    bool bRead = (minimumSize.empty() || settings.ReadSize(kNrvSettingMinimumSize, minimumSize, &error)) &&
                 (maximumSize.empty() || settings.ReadSize(kNrvSettingMaximumSize, maximumSize, &error)) &&
                 settings.ReadText(kNrvSettingContains, contains, bEscapes, &error) &&
                 settings.ReadText(kNrvSettingStartsWith, startsWith, bEscapes, &error) &&
                 settings.ReadText(kNrvSettingEndsWith, endsWith, bEscapes, &error);
    for (size_t nStart = 0; bRead && nStart < symbologies.size();) {
        const size_t nComma = std::min(symbologies.find(',', nStart), symbologies.size());
        bRead = settings.AddSymbology(symbologies.substr(nStart, nComma - nStart), &error);
        nStart = nComma + 1;
    }
    std::string message;
    std::vector<TNrvSettingError> contradictions;
    if (!bRead)
        message = error.Describe(kPageSettingNames);
    else if (!settings.Check(&contradictions))
        message = contradictions[0].Describe(kPageSettingNames) + ": no scan could be edited";
    m_bTriggersRefused = !message.empty();
    if (!m_bTriggersRefused) {
        m_Settings = settings;
        m_Settings.Apply(&m_Profile);
        return "{\"ok\":true}";
    }
    const ENrvSetting setting = bRead ? contradictions[0].setting : error.setting;
    std::string reply = "{\"ok\":false,\"setting\":";
    CNrvJsonWriter::AppendUtf8(kPageSettingNames.apszSetting[setting], &reply);
    reply += ",\"message\":";
    CNrvJsonWriter(kNrvBytesDisplay).AppendText(message, &reply);
    return reply + "}";
}

std::string CNrvPlayground::SetScans(std::string_view text, bool bEscapes)
{
    m_Scans.clear();
    for (const std::string_view line : NrvSplitLines(text)) {
        m_Scans.emplace_back();
        SScan& scan = m_Scans.back();
        if (!ReadLine(line, bEscapes, &scan.bytes, &scan.problem)) {
            scan.bRead = false;
            scan.bytes.assign(line);
        }
    }
    m_bScansEscaped = bEscapes;
    return std::to_string(m_Scans.size());
}

std::string CNrvPlayground::EditScans(int nSymbology, size_t nFirst, size_t nCount)
{
    const ENrvScanSymbologyID symbology = NrvSymbologyName(nSymbology) != nullptr
                                              ? static_cast<ENrvScanSymbologyID>(nSymbology)
                                              : kNrvScanSymbologyNotSpecified;
    const CNrvJsonWriter shown(m_bScansEscaped ? kNrvBytesEscaped : kNrvBytesDisplay);
    const CNrvJsonWriter display(kNrvBytesDisplay);
    // Without an expression, or with triggers refused, no scan is edited.
    const NRVRESULT nRefused =
        m_ParseResult < 0 ? m_ParseResult : m_bTriggersRefused ? NRV_ERR_INVALID_PARAMETER : NRV_OK;
    const size_t nBegin = std::min(nFirst, m_Scans.size());
    const size_t nEnd = nBegin + std::min(nCount, m_Scans.size() - nBegin);
    std::string reply = "{\"rows\":[";
    for (size_t i = nBegin; i < nEnd; ++i) {
        SScan& scan = m_Scans[i];
        reply += i != nBegin ? ",[" : "[";
        if (!scan.bRead) {
            reply += "null,";
            display.AppendBytes(scan.bytes, &reply);
            reply += ',';
            display.AppendText(scan.problem, &reply);
            reply += ']';
            continue;
        }
        TNrvScanDecodedData record = {symbology, {0, nullptr}, {scan.bytes.size(), &scan.bytes[0]}};
        const NRVRESULT nCode = nRefused < 0 ? nRefused : m_Profile.Edit(&record);
        AppendNumber(nCode, &reply);
        reply += ',';
        // A failed or untriggered edit leaves the record as it was.
        shown.AppendBytes(std::string_view(record.String.pValue, record.String.nLength), &reply);
        if (nCode < 0 && nRefused >= 0) {
            reply += ',';
            shown.AppendDiagnostic(
                NrvExplainFailure(m_Expression.c_str(), scan.bytes.data(), scan.bytes.size(), m_Settings.Limits(),
                                  m_Settings.CommandSets()),
                &reply);
        }
        reply += ']';
    }
    return reply + "]}";
}

std::string CNrvPlayground::Explain(std::string_view expression, std::string_view line, bool bEscapes,
                                    unsigned long long nScan)
{
    const CNrvJsonWriter writer(bEscapes ? kNrvBytesEscaped : kNrvBytesDisplay);
    std::string scan, problem, reply;
    if (!ReadLine(line, bEscapes, &scan, &problem)) {
        reply = "{\"line\":false,\"message\":";
        writer.AppendText(problem, &reply);
        return reply + "}";
    }
    TNrvExplanation explanation;
    if (FindZeroByte(expression, &explanation.failure))
        explanation.nCode = explanation.failure.nCode;
    else
        explanation = NrvExplain(std::string(expression).c_str(), scan.data(), scan.size(), m_Settings.Limits(),
                                 m_Settings.CommandSets());
    TNrvJsonScan shown;
    shown.nScan = nScan;
    shown.nCode = explanation.nCode;
    shown.output = explanation.nCode < 0 ? std::string_view(scan) : std::string_view(explanation.output);
    writer.AppendExplanation(shown, explanation, &reply);
    return reply;
}

std::string CNrvPlayground::Commands()
{
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    std::string reply = "[";
    for (size_t i = 0; i < nCount; ++i) {
        const TNrvCommandInfo& command = pTable[i];
        reply += i != 0 ? ",{\"name\":" : "{\"name\":";
        CNrvJsonWriter::AppendUtf8(command.pszName, &reply);
        reply += ",\"summary\":";
        CNrvJsonWriter::AppendUtf8(command.pszSummary, &reply);
        reply += ",\"result\":";
        reply += KindName(command.nResultType);
        reply += ",\"set\":";
        if (command.nSet == kNrvCommandSetSeed)
            reply += "null";
        else
            CNrvJsonWriter::AppendUtf8(NrvCommandSetName(command.nSet), &reply);
        reply += ",\"parameters\":[";
        for (size_t p = 0; p < command.nParameterCount; ++p) {
            reply += p != 0 ? ",{\"name\":" : "{\"name\":";
            CNrvJsonWriter::AppendUtf8(command.pParameters[p].pszName, &reply);
            reply += ",\"kind\":";
            reply += KindName(command.pParameters[p].nKind);
            reply += '}';
        }
        reply += "]}";
    }
    return reply + "]";
}

std::string CNrvPlayground::Symbologies()
{
    std::string reply = "[";
    for (int nId = 0; NrvSymbologyName(nId) != nullptr; ++nId) {
        if (nId != 0)
            reply += ',';
        CNrvJsonWriter::AppendUtf8(NrvSymbologyName(nId), &reply);
    }
    return reply + "]";
}

std::string CNrvPlayground::ReadFile(std::string_view bytes, bool bEscapes)
{
    bool bEscaped = false;
    const std::string text = NrvScansOfFile(bytes, bEscapes, &bEscaped);
    std::string reply = bEscaped ? "{\"escapes\":true,\"text\":" : "{\"escapes\":false,\"text\":";
    CNrvJsonWriter::AppendUtf8(text, &reply);
    return reply + "}";
}
