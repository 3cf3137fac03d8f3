// The playground's window on the engine: plain C functions exported to
// JavaScript. Each takes zero-terminated UTF-8 texts and returns a JSON text
// that stays valid until the next call (the page copies it at once), so one
// call crosses the boundary per keystroke however many scans there are.
//
// Bytes are shown to a person in one of two forms: with escapes, exactly as
// `nrv-edit -e` writes them; without, as UTF-8 text with every control byte
// drawn as its control picture (U+2400 + byte, U+2421 for 0x7F) and a byte
// that starts no valid UTF-8 sequence written as \xHH.
#include <emscripten/emscripten.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "NrvCommandTable.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"
#include "NrvEscapes.h"
#include "NrvSymbologies.h"

namespace {

// The profile the scans are edited with: the last expression parsed and the
// last triggers set.
CNrvDataEditingProfile g_Profile;
std::string g_Expression;
NRVRESULT g_ParseResult = NRV_OK;
std::string g_Reply;

// The scans as last read: their bytes, or, for a line whose escapes are
// malformed, the line as written and what is wrong with it.
struct SScan {
    std::string bytes;
    bool bRead = true;
    std::string problem;
};
std::vector<SScan> g_Scans;
bool g_bScansEscaped = false;

// What one edit may build and examine here, as nrv-edit's defaults: a
// hostile expression (nested Substitute doubling a text, a search of a long
// marker at every byte) stops with its code instead of holding the page.
TNrvLimits PageLimits()
{
    TNrvLimits limits;
    limits.nMaximumTextSize = 16u << 20;
    limits.nWorkBase = 64u << 20;
    limits.nWorkPerScanByte = 4096;
    return limits;
}

// Length of the valid UTF-8 sequence at p[0..n), or 0.
size_t Utf8SequenceLength(const unsigned char* p, size_t n)
{
    size_t nLength;
    unsigned nMin;
    if (p[0] >= 0xC2 && p[0] <= 0xDF) {
        nLength = 2;
        nMin = 0x80;
    } else if (p[0] >= 0xE0 && p[0] <= 0xEF) {
        nLength = 3;
        nMin = 0x800;
    } else if (p[0] >= 0xF0 && p[0] <= 0xF4) {
        nLength = 4;
        nMin = 0x10000;
    } else {
        return 0;
    }
    if (n < nLength)
        return 0;
    unsigned nCode = p[0] & (0x7F >> nLength);
    for (size_t i = 1; i < nLength; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        nCode = (nCode << 6) | (p[i] & 0x3F);
    }
    const bool bSurrogate = nCode >= 0xD800 && nCode <= 0xDFFF;
    return nCode >= nMin && nCode <= 0x10FFFF && !bSurrogate ? nLength : 0;
}

void AppendHexByte(unsigned char c, std::string* pOut)
{
    static const char kHex[] = "0123456789ABCDEF";
    *pOut += "\\x";
    *pOut += kHex[c >> 4];
    *pOut += kHex[c & 15];
}

// The bytes as a person sees them (see the top of the file).
void AppendShown(const char* pData, size_t nLength, bool bEscapes, std::string* pOut)
{
    if (bEscapes) {
        NrvAppendEscaped(pData, nLength, pOut);
        return;
    }
    const unsigned char* p = reinterpret_cast<const unsigned char*>(pData);
    for (size_t i = 0; i < nLength;) {
        const unsigned char c = p[i];
        if (c < 0x20 || c == 0x7F) {
            const unsigned nPicture = c == 0x7F ? 0x2421 : 0x2400 + c;
            *pOut += static_cast<char>(0xE0 | (nPicture >> 12));
            *pOut += static_cast<char>(0x80 | ((nPicture >> 6) & 0x3F));
            *pOut += static_cast<char>(0x80 | (nPicture & 0x3F));
            ++i;
        } else if (c < 0x80) {
            *pOut += static_cast<char>(c);
            ++i;
        } else if (const size_t n = Utf8SequenceLength(p + i, nLength - i)) {
            pOut->append(pData + i, n);
            i += n;
        } else {
            AppendHexByte(c, pOut);
            ++i;
        }
    }
}

// A JSON string of UTF-8 text (the texts here are UTF-8 by construction).
void AppendJson(const std::string& text, std::string* pOut)
{
    *pOut += '"';
    for (const char ch : text) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\') {
            *pOut += '\\';
            *pOut += ch;
        } else if (c < 0x20) {
            static const char kHex[] = "0123456789abcdef";
            *pOut += "\\u00";
            *pOut += kHex[c >> 4];
            *pOut += kHex[c & 15];
        } else {
            *pOut += ch;
        }
    }
    *pOut += '"';
}

// The shown form of the bytes as a JSON string: the shown text holds no
// control byte (those are drawn or escaped), so only quotes and backslashes
// need a backslash.
void AppendJsonShown(const char* pData, size_t nLength, bool bEscapes, std::string* pOut)
{
    thread_local std::string shown;
    shown.clear();
    AppendShown(pData, nLength, bEscapes, &shown);
    *pOut += '"';
    for (const char c : shown) {
        if (c == '"' || c == '\\')
            *pOut += '\\';
        *pOut += c;
    }
    *pOut += '"';
}

void AppendNumber(long long n, std::string* pOut) { *pOut += std::to_string(n); }

void AppendCodeName(NRVRESULT nCode, std::string* pOut)
{
    const char* pszName = NrvResultCodeName(nCode);
    if (pszName != nullptr)
        AppendJson(pszName, pOut);
    else
        *pOut += "null";
}

void AppendDiagnostic(const TNrvDiagnostic& diagnostic, std::string* pOut)
{
    *pOut += "{\"code\":";
    AppendNumber(diagnostic.nCode, pOut);
    *pOut += ",\"name\":";
    AppendCodeName(diagnostic.nCode, pOut);
    *pOut += ",\"offset\":";
    AppendNumber(static_cast<long long>(diagnostic.nOffset), pOut);
    *pOut += ",\"length\":";
    AppendNumber(static_cast<long long>(diagnostic.nLength), pOut);
    *pOut += ",\"command\":";
    AppendJson(diagnostic.command, pOut);
    *pOut += ",\"message\":";
    AppendJson(diagnostic.message, pOut);
    *pOut += '}';
}

const char* const kNodeKinds[] = {"command", "text", "integer"};

void AppendNodes(const std::vector<TNrvExplainNode>& nodes, bool bEscapes, std::string* pOut)
{
    *pOut += '[';
    for (size_t i = 0; i < nodes.size(); ++i) {
        const TNrvExplainNode& node = nodes[i];
        if (i != 0)
            *pOut += ',';
        *pOut += "{\"kind\":\"";
        *pOut += kNodeKinds[node.kind];
        *pOut += "\",\"name\":";
        AppendJson(node.name, pOut);
        *pOut += ",\"offset\":";
        AppendNumber(static_cast<long long>(node.nOffset), pOut);
        *pOut += ",\"length\":";
        AppendNumber(static_cast<long long>(node.nLength), pOut);
        *pOut += node.bRun ? ",\"run\":true" : ",\"run\":false";
        *pOut += ",\"code\":";
        AppendNumber(node.nCode, pOut);
        *pOut += node.bInteger ? ",\"integer\":true" : ",\"integer\":false";
        *pOut += ",\"value\":";
        AppendJsonShown(node.value.data(), node.value.size(), bEscapes && !node.bInteger, pOut);
        if (node.nValueLength > node.value.size()) {  // cut: the whole length
            *pOut += ",\"valueLength\":";
            AppendNumber(static_cast<long long>(node.nValueLength), pOut);
        }
        *pOut += ",\"params\":";
        AppendNodes(node.params, bEscapes, pOut);
        *pOut += '}';
    }
    *pOut += ']';
}

// Decodes one scan line as the tool reads it: as is, or through its escapes.
bool ReadScan(const char* pLine, size_t nLength, bool bEscapes, std::string* pScan, std::string* pProblem)
{
    if (!bEscapes) {
        pScan->assign(pLine, nLength);
        return true;
    }
    return NrvUnescape(pLine, nLength, pScan, pProblem);
}

const char* Reply(const std::string& text)
{
    g_Reply = text;
    return g_Reply.c_str();
}

// Runs fn and turns an allocation failure (a runaway Substitute nest) into a
// reply the page can show; the engine has released what it held by then.
template <typename F>
const char* Guarded(F fn)
{
    try {
        g_Reply.clear();
        fn(&g_Reply);
        return g_Reply.c_str();
    } catch (const std::bad_alloc&) {
        return Reply("{\"outOfMemory\":true}");
    }
}

}  // namespace

extern "C" {

// Parses the expression for the next edits; replies with its diagnostic.
EMSCRIPTEN_KEEPALIVE const char* nrv_parse(const char* pszExpression)
{
    return Guarded([&](std::string* pOut) {
        g_Expression = pszExpression;
        g_ParseResult = g_Profile.Parse(pszExpression);
        g_Profile.WriteLimitMaximumTextSize(PageLimits().nMaximumTextSize);
        g_Profile.WriteLimitWorkBudget(PageLimits().nWorkBase, PageLimits().nWorkPerScanByte);
        AppendDiagnostic(NrvDiagnoseParse(pszExpression), pOut);
    });
}

// Sets the triggers for the next edits (sizes of 0 and empty texts leave a
// condition unset; pszSymbologies lists identifiers separated by commas).
// Replies {"ok":true}, or which trigger text has a malformed escape.
EMSCRIPTEN_KEEPALIVE const char* nrv_set_triggers(int nMinSize, int nMaxSize, const char* pszSymbologies,
                                                  const char* pszContains, const char* pszStartsWith,
                                                  const char* pszEndsWith, int bEscapes)
{
    return Guarded([&](std::string* pOut) {
        g_Profile.ResetTrigger();
        g_Profile.WriteTriggerMinimumSize(nMinSize > 0 ? static_cast<size_t>(nMinSize) : 0);
        g_Profile.WriteTriggerMaximumSize(nMaxSize > 0 ? static_cast<size_t>(nMaxSize) : 0);
        for (const char* p = pszSymbologies; *p != '\0';) {
            char* pEnd = nullptr;
            const long nId = strtol(p, &pEnd, 10);
            if (pEnd == p)
                break;
            g_Profile.AddTriggerSymbology(static_cast<int>(nId));
            p = *pEnd == ',' ? pEnd + 1 : pEnd;
        }
        const struct {
            const char* pszName;
            const char* pszText;
            NRVRESULT (CNrvDataEditingProfile::*write)(const char*);
        } texts[] = {
            {"contains", pszContains, &CNrvDataEditingProfile::WriteTriggerContains},
            {"startsWith", pszStartsWith, &CNrvDataEditingProfile::WriteTriggerStartsBy},
            {"endsWith", pszEndsWith, &CNrvDataEditingProfile::WriteTriggerEndsWith},
        };
        std::string decoded, problem;
        for (const auto& text : texts) {
            // Triggers are zero-terminated texts: a \x00 ends one, as in the tool.
            if (!ReadScan(text.pszText, strlen(text.pszText), bEscapes != 0, &decoded, &problem)) {
                *pOut += "{\"ok\":false,\"trigger\":\"";
                *pOut += text.pszName;
                *pOut += "\",\"message\":";
                AppendJson(problem, pOut);
                *pOut += '}';
                return;
            }
            (g_Profile.*text.write)(decoded.c_str());
        }
        *pOut += "{\"ok\":true}";
    });
}

// Reads the scans for the next edits: every line of pszScans (a last line
// without '\n' counts, as the tool reads a file), through the escapes when
// bEscapes is set. Kept decoded, so that typing in the expression does not
// read them again. Replies with the number of scans.
EMSCRIPTEN_KEEPALIVE const char* nrv_set_scans(const char* pszScans, int bEscapes)
{
    return Guarded([&](std::string* pOut) {
        g_Scans.clear();
        std::string problem;
        for (const char* pLine = pszScans; *pLine != '\0';) {
            const char* pEnd = strchr(pLine, '\n');
            const size_t nLength = pEnd != nullptr ? static_cast<size_t>(pEnd - pLine) : strlen(pLine);
            g_Scans.emplace_back();
            SScan& scan = g_Scans.back();
            if (!ReadScan(pLine, nLength, bEscapes != 0, &scan.bytes, &problem)) {
                scan.bRead = false;
                scan.bytes.assign(pLine, nLength);
                scan.problem = problem;
            }
            pLine += nLength;
            if (*pLine == '\n')
                ++pLine;
        }
        g_bScansEscaped = bEscapes != 0;
        AppendNumber(static_cast<long long>(g_Scans.size()), pOut);
    });
}

// Edits nCount scans from nFirst on (from 0; clamped to the scans read) with
// the parsed expression and the triggers. Replies
// {"rows":[[code, shown, command, message], ...]}: code is null for a line
// whose escapes are malformed (message says why); command and message
// describe a failed edit. When the expression does not parse, no edit is
// described: the parse's diagnostic says it all.
EMSCRIPTEN_KEEPALIVE const char* nrv_edit_scans(int nSymbology, int nFirst, int nCount)
{
    return Guarded([&](std::string* pOut) {
        const ENrvScanSymbologyID symbology = NrvSymbologyName(nSymbology) != nullptr
                                                  ? static_cast<ENrvScanSymbologyID>(nSymbology)
                                                  : kNrvScanSymbologyNotSpecified;
        const size_t nBegin = std::min(static_cast<size_t>(std::max(nFirst, 0)), g_Scans.size());
        const size_t nEnd = std::min(nBegin + static_cast<size_t>(std::max(nCount, 0)), g_Scans.size());
        *pOut += "{\"rows\":[";
        for (size_t i = nBegin; i < nEnd; ++i) {
            SScan& scan = g_Scans[i];
            *pOut += i != nBegin ? ",[" : "[";
            if (!scan.bRead) {
                *pOut += "null,";
                AppendJsonShown(scan.bytes.data(), scan.bytes.size(), false, pOut);
                *pOut += ",\"\",";
                AppendJson(scan.problem, pOut);
            } else {
                TNrvScanDecodedData record = {symbology, {0, nullptr}, {scan.bytes.size(), &scan.bytes[0]}};
                const NRVRESULT nCode = g_Profile.Edit(&record);
                AppendNumber(nCode, pOut);
                *pOut += ',';
                // A failed or untriggered edit leaves the record as it was.
                AppendJsonShown(record.String.pValue, record.String.nLength, g_bScansEscaped, pOut);
                if (nCode < 0 && g_ParseResult >= 0) {
                    const TNrvDiagnostic why =
                        NrvExplainFailure(g_Expression.c_str(), scan.bytes.data(), scan.bytes.size(), PageLimits());
                    *pOut += ',';
                    AppendJson(why.command, pOut);
                    *pOut += ',';
                    AppendJson(why.message, pOut);
                }
            }
            *pOut += ']';
        }
        *pOut += "]}";
    });
}

// What the expression does to one scan line, node by node. Triggers are not
// applied. Replies {"code","name","line","output","failure","nodes"}, or
// {"line":false,"message"} when the line's escapes are malformed.
EMSCRIPTEN_KEEPALIVE const char* nrv_explain(const char* pszExpression, const char* pszLine, int bEscapes)
{
    return Guarded([&](std::string* pOut) {
        std::string scan, problem;
        if (!ReadScan(pszLine, strlen(pszLine), bEscapes != 0, &scan, &problem)) {
            *pOut += "{\"line\":false,\"message\":";
            AppendJson(problem, pOut);
            *pOut += '}';
            return;
        }
        const TNrvExplanation explanation = NrvExplain(pszExpression, scan.data(), scan.size(), PageLimits());
        *pOut += "{\"line\":true,\"code\":";
        AppendNumber(explanation.nCode, pOut);
        *pOut += ",\"name\":";
        AppendCodeName(explanation.nCode, pOut);
        *pOut += ",\"output\":";
        AppendJsonShown(explanation.output.data(), explanation.output.size(), bEscapes != 0, pOut);
        *pOut += ",\"failure\":";
        AppendDiagnostic(explanation.failure, pOut);
        *pOut += ",\"nodes\":";
        AppendNodes(explanation.nodes, bEscapes != 0, pOut);
        *pOut += '}';
    });
}

// The command table: [{"name","summary","result","parameters":[{"name","kind"}]}].
EMSCRIPTEN_KEEPALIVE const char* nrv_commands()
{
    return Guarded([](std::string* pOut) {
        size_t nCount = 0;
        const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
        auto kind = [](int nKind) { return nKind == kNrvKindNumber ? "\"number\"" : "\"text\""; };
        *pOut += '[';
        for (size_t i = 0; i < nCount; ++i) {
            const TNrvCommandInfo& command = pTable[i];
            *pOut += i != 0 ? ",{\"name\":" : "{\"name\":";
            AppendJson(command.pszName, pOut);
            *pOut += ",\"summary\":";
            AppendJson(command.pszSummary, pOut);
            *pOut += ",\"result\":";
            *pOut += kind(command.nResultType);
            *pOut += ",\"parameters\":[";
            for (size_t p = 0; p < command.nParameterCount; ++p) {
                *pOut += p != 0 ? ",{\"name\":" : "{\"name\":";
                AppendJson(command.pParameters[p].pszName, pOut);
                *pOut += ",\"kind\":";
                *pOut += kind(command.pParameters[p].nKind);
                *pOut += '}';
            }
            *pOut += "]}";
        }
        *pOut += ']';
    });
}

// The symbology names, indexed by identifier.
EMSCRIPTEN_KEEPALIVE const char* nrv_symbologies()
{
    return Guarded([](std::string* pOut) {
        *pOut += '[';
        for (int nId = 0; NrvSymbologyName(nId) != nullptr; ++nId) {
            if (nId != 0)
                *pOut += ',';
            AppendJson(NrvSymbologyName(nId), pOut);
        }
        *pOut += ']';
    });
}

// The escaped form of nLength raw bytes (a dropped file's line), as the tool's
// -e writes it.
EMSCRIPTEN_KEEPALIVE const char* nrv_escape(const char* pData, int nLength)
{
    return Guarded([&](std::string* pOut) { NrvAppendEscaped(pData, nLength > 0 ? nLength : 0, pOut); });
}

}  // extern "C"
