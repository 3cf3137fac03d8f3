// The playground's binding (web/NrvPlayground.h), natively: the bytes drive
// each entry point the page calls, and every reply must be JSON of the shape
// the page reads. The input:
//
//   byte 0   switches: 1 scans escaped, 2 triggers escaped, 4 the explained
//            line escaped, 8 a dropped file read with the escapes on, 16 the
//            seed commands only (switched on after the parse)
//   byte 1   the scans' symbology (any number: unknown ones are taken as none)
//   byte 2   the first scan edited, byte 3 how many
//   then     fields cut at 0x1F: expression, scans, minimum size, maximum
//            size, symbologies, contains, starts with, ends with, the line
//            explained (missing fields are empty)
//
// and the whole input is also read as a dropped file. As the binding does,
// an allocation that fails (std::bad_alloc, above the allocation limit) is a
// reply of its own; every other call must reply. No call may hold more than
// kPlaygroundMemoryBound bytes at once.
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FuzzSupport.h"
#include "NrvEscapes.h"
#include "NrvPlayground.h"
#include "NrvShownBytes.h"

namespace {

// What one call may hold at once: an edit builds texts of at most the
// largest text (16 MiB by default), several alive together (a command's
// parameters and its result), and a failed edit is explained as well. The
// allocation limit keeps any one block under 16 MiB.
constexpr size_t kPlaygroundMemoryBound = 256u << 20;

// --- A JSON reader, strict: the page parses the replies with JSON.parse. ---

struct SJson {
    enum EType { kNull, kBool, kNumber, kString, kArray, kObject } type = kNull;
    bool bValue = false;
    long long nValue = 0;
    bool bInteger = true;
    std::string text;
    std::vector<SJson> items;
    std::vector<std::pair<std::string, SJson>> members;

    const SJson* Member(const char* pszName) const
    {
        for (const auto& member : members)
            if (member.first == pszName)
                return &member.second;
        return nullptr;
    }
};

class CJsonReader {
public:
    explicit CJsonReader(std::string_view text) : m_Text(text) {}

    // The whole text is one value, or false.
    bool Read(SJson* pValue)
    {
        return Value(pValue, 0) && (Blank(), m_nAt == m_Text.size());
    }

private:
    void Blank()
    {
        while (m_nAt < m_Text.size() && (m_Text[m_nAt] == ' ' || m_Text[m_nAt] == '\n' || m_Text[m_nAt] == '\t' ||
                                         m_Text[m_nAt] == '\r'))
            ++m_nAt;
    }

    bool Take(char c)
    {
        Blank();
        if (m_nAt >= m_Text.size() || m_Text[m_nAt] != c)
            return false;
        ++m_nAt;
        return true;
    }

    bool Word(const char* pszWord)
    {
        const size_t n = std::strlen(pszWord);
        if (m_Text.compare(m_nAt, n, pszWord) != 0)
            return false;
        m_nAt += n;
        return true;
    }

    bool Value(SJson* pValue, int nDepth)
    {
        if (nDepth > 4096)
            return false;
        Blank();
        if (m_nAt >= m_Text.size())
            return false;
        const char c = m_Text[m_nAt];
        if (c == '{') {
            pValue->type = SJson::kObject;
            ++m_nAt;
            if (Take('}'))
                return true;
            do {
                pValue->members.emplace_back();
                Blank();
                if (!String(&pValue->members.back().first) || !Take(':') ||
                    !Value(&pValue->members.back().second, nDepth + 1))
                    return false;
            } while (Take(','));
            return Take('}');
        }
        if (c == '[') {
            pValue->type = SJson::kArray;
            ++m_nAt;
            if (Take(']'))
                return true;
            do {
                pValue->items.emplace_back();
                if (!Value(&pValue->items.back(), nDepth + 1))
                    return false;
            } while (Take(','));
            return Take(']');
        }
        if (c == '"') {
            pValue->type = SJson::kString;
            return String(&pValue->text);
        }
        if (c == 't' || c == 'f') {
            pValue->type = SJson::kBool;
            pValue->bValue = c == 't';
            return Word(c == 't' ? "true" : "false");
        }
        if (c == 'n')
            return Word("null");
        pValue->type = SJson::kNumber;
        return Number(pValue);
    }

    // Integers only, as the replies write them; anything else is not ours.
    bool Number(SJson* pValue)
    {
        const bool bNegative = m_Text[m_nAt] == '-';
        m_nAt += bNegative ? 1 : 0;
        const size_t nStart = m_nAt;
        unsigned long long n = 0;
        while (m_nAt < m_Text.size() && m_Text[m_nAt] >= '0' && m_Text[m_nAt] <= '9') {
            if (n > (~0ull >> 1) / 10)
                return false;
            n = n * 10 + static_cast<unsigned>(m_Text[m_nAt++] - '0');
        }
        const size_t nDigits = m_nAt - nStart;
        if (nDigits == 0 || (nDigits > 1 && m_Text[nStart] == '0'))
            return false;
        pValue->nValue = bNegative ? -static_cast<long long>(n) : static_cast<long long>(n);
        return true;
    }

    // A string: valid UTF-8, no raw control bytes, escapes as JSON has them
    // (a \u surrogate only as half of a pair).
    bool String(std::string* pOut)
    {
        if (m_nAt >= m_Text.size() || m_Text[m_nAt++] != '"')
            return false;
        while (m_nAt < m_Text.size()) {
            const unsigned char c = static_cast<unsigned char>(m_Text[m_nAt]);
            if (c == '"') {
                ++m_nAt;
                return true;
            }
            if (c < 0x20)
                return false;
            if (c != '\\') {
                const size_t n = c < 0x80 ? 1
                                          : NrvUtf8SequenceLength(reinterpret_cast<const unsigned char*>(&m_Text[m_nAt]),
                                                                  m_Text.size() - m_nAt);
                if (n == 0)
                    return false;
                pOut->append(m_Text.substr(m_nAt, n));
                m_nAt += n;
                continue;
            }
            if (++m_nAt >= m_Text.size())
                return false;
            const char e = m_Text[m_nAt++];
            static const char kSimple[] = "\"\"\\\\//b\bf\fn\nr\rt\t";
            const char* pSimple = std::strchr(kSimple, e);
            if (e != '\0' && pSimple != nullptr && (pSimple - kSimple) % 2 == 0) {
                *pOut += pSimple[1];
                continue;
            }
            unsigned nCode = 0;
            if (e != 'u' || !Hex4(&nCode))
                return false;
            if (nCode >= 0xDC00 && nCode < 0xE000)
                return false;
            if (nCode >= 0xD800 && nCode < 0xDC00) {
                unsigned nLow = 0;
                if (!Word("\\u") || !Hex4(&nLow) || nLow < 0xDC00 || nLow >= 0xE000)
                    return false;
                nCode = 0x10000 + ((nCode - 0xD800) << 10) + (nLow - 0xDC00);
            }
            AppendUtf8(nCode, pOut);
        }
        return false;
    }

    bool Hex4(unsigned* pnCode)
    {
        for (int i = 0; i < 4; ++i, ++m_nAt) {
            if (m_nAt >= m_Text.size())
                return false;
            const char h = m_Text[m_nAt];
            const int d = h >= '0' && h <= '9' ? h - '0' : h >= 'a' && h <= 'f' ? h - 'a' + 10
                                                         : h >= 'A' && h <= 'F' ? h - 'A' + 10
                                                                                : -1;
            if (d < 0)
                return false;
            *pnCode = *pnCode * 16 + static_cast<unsigned>(d);
        }
        return true;
    }

    static void AppendUtf8(unsigned nCode, std::string* pOut)
    {
        if (nCode < 0x80) {
            *pOut += static_cast<char>(nCode);
        } else if (nCode < 0x800) {
            *pOut += static_cast<char>(0xC0 | (nCode >> 6));
            *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
        } else if (nCode < 0x10000) {
            *pOut += static_cast<char>(0xE0 | (nCode >> 12));
            *pOut += static_cast<char>(0x80 | ((nCode >> 6) & 0x3F));
            *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
        } else {
            *pOut += static_cast<char>(0xF0 | (nCode >> 18));
            *pOut += static_cast<char>(0x80 | ((nCode >> 12) & 0x3F));
            *pOut += static_cast<char>(0x80 | ((nCode >> 6) & 0x3F));
            *pOut += static_cast<char>(0x80 | (nCode & 0x3F));
        }
    }

    std::string_view m_Text;
    size_t m_nAt = 0;
};

// --- The shapes of the replies ----------------------------------------------

bool Is(const SJson* pValue, SJson::EType type)
{
    return pValue != nullptr && pValue->type == type;
}

bool IsTextOrNull(const SJson* pValue)
{
    return pValue != nullptr && (pValue->type == SJson::kString || pValue->type == SJson::kNull);
}

// A byte range inside a text of nSize bytes.
bool IsRange(const SJson& value, size_t nSize)
{
    const SJson* pOffset = value.Member("offset");
    const SJson* pLength = value.Member("length");
    return Is(pOffset, SJson::kNumber) && Is(pLength, SJson::kNumber) && pOffset->nValue >= 0 && pLength->nValue >= 0 &&
           static_cast<unsigned long long>(pOffset->nValue) + static_cast<unsigned long long>(pLength->nValue) <=
               nSize;
}

// "code","name","offset","length","command","message" of a failure.
bool IsDiagnostic(const SJson& value, size_t nExpression)
{
    const SJson* pCode = value.Member("code");
    return value.type == SJson::kObject && Is(pCode, SJson::kNumber) && pCode->nValue < 0 &&
           IsTextOrNull(value.Member("name")) && IsRange(value, nExpression) && IsTextOrNull(value.Member("command")) &&
           Is(value.Member("message"), SJson::kString);
}

bool IsNode(const SJson& node, size_t nExpression)
{
    const SJson* pKind = node.Member("kind");
    const SJson* pCode = node.Member("code");
    const SJson* pValue = node.Member("value");
    const SJson* pParams = node.Member("params");
    if (!Is(pKind, SJson::kString) || !Is(node.Member("name"), SJson::kString) || !IsRange(node, nExpression) ||
        !(Is(pCode, SJson::kNumber) || Is(pCode, SJson::kNull)) || pValue == nullptr ||
        !(pValue->type == SJson::kString || pValue->type == SJson::kNumber || pValue->type == SJson::kNull) ||
        !Is(pParams, SJson::kArray))
        return false;
    if (pKind->text != "command" && pKind->text != "text" && pKind->text != "integer")
        return false;
    for (const SJson& param : pParams->items)
        if (!IsNode(param, nExpression))
            return false;
    return true;
}

// The codes an edit of the page may give: the engine's, and its limits'.
bool IsEditCode(long long nCode)
{
    return NrvFuzzIsKnownResult(nCode) || nCode == NRV_ERR_TEXT_LIMIT || nCode == NRV_ERR_WORK_LIMIT;
}

// --- Driving the binding -----------------------------------------------------

constexpr char kOutOfMemory[] = "{\"outOfMemory\":true}";

// One call as the binding makes it: the reply, or the binding's reply to an
// allocation that failed; either way within the memory bound.
template <typename F>
SJson Call(F fn)
{
    std::string reply;
    {
        CNrvFuzzMemoryMeter meter;
        try {
            reply = fn();
        } catch (const std::bad_alloc&) {
            reply = kOutOfMemory;
        }
        if (meter.PeakBytes() > kPlaygroundMemoryBound) {
            std::fprintf(stderr, "one call held %zu bytes\n", meter.PeakBytes());
            NRV_FUZZ_CHECK(meter.PeakBytes() <= kPlaygroundMemoryBound);
        }
    }
    SJson value;
    NRV_FUZZ_CHECK(CJsonReader(reply).Read(&value));
    return value;
}

bool IsOutOfMemory(const SJson& value)
{
    return Is(value.Member("outOfMemory"), SJson::kBool);
}

std::vector<std::string_view> Fields(std::string_view rest)
{
    std::vector<std::string_view> fields;
    for (size_t nStart = 0;;) {
        const size_t nCut = rest.find('\x1F', nStart);
        fields.push_back(rest.substr(nStart, nCut == std::string_view::npos ? std::string_view::npos : nCut - nStart));
        if (nCut == std::string_view::npos)
            break;
        nStart = nCut + 1;
    }
    fields.resize(9);
    return fields;
}

// A parse outcome, {"ok":true} or the diagnostic; a zero byte in the
// expression is refused at its offset. Sets *pnCode (0 when it parses).
void CheckParseOutcome(const SJson& outcome, std::string_view expression, long long* pnCode)
{
    const SJson* pOk = outcome.Member("ok");
    NRV_FUZZ_CHECK(Is(pOk, SJson::kBool));
    NRV_FUZZ_CHECK(pOk->bValue ? outcome.members.size() == 1 : IsDiagnostic(outcome, expression.size()));
    *pnCode = pOk->bValue ? 0 : outcome.Member("code")->nValue;
    const size_t nZero = expression.find('\0');
    if (nZero != std::string_view::npos)
        NRV_FUZZ_CHECK(*pnCode == NRV_ERR_INVALID_PARAMETER &&
                       outcome.Member("offset")->nValue == static_cast<long long>(nZero));
}

// A dropped file: kept as it is, or one escaped line per line that reads
// back to the file's lines.
void CheckFile(std::string_view bytes, bool bEscapes)
{
    const SJson reply = Call([&] { return CNrvPlayground::ReadFile(bytes, bEscapes); });
    if (IsOutOfMemory(reply))
        return;
    const SJson* pEscapes = reply.Member("escapes");
    const SJson* pText = reply.Member("text");
    NRV_FUZZ_CHECK(Is(pEscapes, SJson::kBool) && Is(pText, SJson::kString) && reply.members.size() == 2);
    NRV_FUZZ_CHECK(pEscapes->bValue || !bEscapes);
    if (!pEscapes->bValue) {
        NRV_FUZZ_CHECK(pText->text == bytes);
        return;
    }
    const std::vector<std::string_view> lines = NrvSplitLines(bytes);
    const std::vector<std::string_view> shown = NrvSplitLines(pText->text);
    NRV_FUZZ_CHECK(shown.size() == lines.size() && (pText->text.empty() || pText->text.back() == '\n'));
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string line, problem;
        NRV_FUZZ_CHECK(NrvUnescape(shown[i].data(), shown[i].size(), &line, &problem) && line == lines[i]);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const std::string_view input(reinterpret_cast<const char*>(pData), nSize);
    CNrvFuzzAllocationLimit limit;
    const unsigned nSwitches = nSize > 0 ? pData[0] : 0;
    const int nSymbology = nSize > 1 ? static_cast<int8_t>(pData[1]) : 0;
    const size_t nFirst = nSize > 2 ? pData[2] : 0;
    const size_t nCount = nSize > 3 ? pData[3] : 0;
    const std::vector<std::string_view> fields = Fields(nSize > 4 ? input.substr(4) : std::string_view());
    const std::string_view expression = fields[0];

    CheckFile(input, (nSwitches & 8) != 0);

    CNrvPlayground playground;
    SJson parsed = Call([&] { return playground.Parse(expression); });
    long long nParseCode = 0;
    if (!IsOutOfMemory(parsed))
        CheckParseOutcome(parsed, expression, &nParseCode);
    if ((nSwitches & 16) != 0) {
        // Parses the same expression again, with the eighteen commands only.
        parsed = Call([&] { return playground.SetSeedOnly(true); });
        if (!IsOutOfMemory(parsed))
            CheckParseOutcome(parsed, expression, &nParseCode);
    }
    const bool bParsed = nParseCode == 0;

    const SJson triggers = Call([&] {
        return playground.SetTriggers(fields[2], fields[3], fields[4], fields[5], fields[6], fields[7],
                                      (nSwitches & 2) != 0);
    });
    const SJson* pTriggersOk = triggers.Member("ok");
    bool bTriggersOk = false;
    if (!IsOutOfMemory(triggers)) {
        NRV_FUZZ_CHECK(Is(pTriggersOk, SJson::kBool));
        bTriggersOk = pTriggersOk->bValue;
        NRV_FUZZ_CHECK(bTriggersOk ? triggers.members.size() == 1
                                   : Is(triggers.Member("setting"), SJson::kString) &&
                                         Is(triggers.Member("message"), SJson::kString));
    }

    const std::string_view scans = fields[1];
    const SJson count = Call([&] { return playground.SetScans(scans, (nSwitches & 1) != 0); });
    if (IsOutOfMemory(count))
        return 0;  // the scans the page holds are then unknown; the page says so and stops
    const size_t nScans = NrvSplitLines(scans).size();
    NRV_FUZZ_CHECK(Is(&count, SJson::kNumber) && count.nValue == static_cast<long long>(nScans));

    const SJson edited = Call([&] { return playground.EditScans(nSymbology, nFirst, nCount); });
    if (!IsOutOfMemory(edited) && !IsOutOfMemory(parsed) && !IsOutOfMemory(triggers)) {
        const SJson* pRows = edited.Member("rows");
        const size_t nBegin = nFirst < nScans ? nFirst : nScans;
        const size_t nRows = nCount < nScans - nBegin ? nCount : nScans - nBegin;
        NRV_FUZZ_CHECK(Is(pRows, SJson::kArray) && pRows->items.size() == nRows);
        for (const SJson& row : pRows->items) {
            NRV_FUZZ_CHECK(Is(&row, SJson::kArray) && (row.items.size() == 2 || row.items.size() == 3));
            NRV_FUZZ_CHECK(row.items[1].type == SJson::kString);
            if (row.items[0].type == SJson::kNull) {  // a line whose escapes are malformed
                NRV_FUZZ_CHECK((nSwitches & 1) != 0 && row.items.size() == 3 && row.items[2].type == SJson::kString);
                continue;
            }
            NRV_FUZZ_CHECK(row.items[0].type == SJson::kNumber);
            const long long nCode = row.items[0].nValue;
            if (!bParsed)
                NRV_FUZZ_CHECK(nCode == nParseCode && row.items.size() == 2);
            else if (!bTriggersOk)
                NRV_FUZZ_CHECK(nCode == NRV_ERR_INVALID_PARAMETER && row.items.size() == 2);
            else
                NRV_FUZZ_CHECK(IsEditCode(nCode) && (row.items.size() == 3) == (nCode < 0) &&
                               (nCode >= 0 || IsDiagnostic(row.items[2], expression.size())));
        }
    }

    const std::string_view line = fields[8];
    const SJson explained = Call([&] { return playground.Explain(expression, line, (nSwitches & 4) != 0, 1); });
    if (!IsOutOfMemory(explained)) {
        const SJson* pLine = explained.Member("line");
        if (pLine != nullptr) {
            NRV_FUZZ_CHECK(Is(pLine, SJson::kBool) && !pLine->bValue && (nSwitches & 4) != 0 &&
                           Is(explained.Member("message"), SJson::kString));
        } else {
            const SJson* pScan = explained.Member("scan");
            const SJson* pCode = explained.Member("code");
            const SJson* pNodes = explained.Member("nodes");
            const SJson* pFailure = explained.Member("failure");
            NRV_FUZZ_CHECK(Is(pScan, SJson::kNumber) && pScan->nValue == 1 && Is(pCode, SJson::kNumber) &&
                           IsEditCode(pCode->nValue) && Is(explained.Member("output"), SJson::kString) &&
                           Is(pNodes, SJson::kArray));
            NRV_FUZZ_CHECK((pFailure != nullptr) == (pCode->nValue < 0));
            NRV_FUZZ_CHECK(pFailure == nullptr || IsDiagnostic(*pFailure, expression.size()));
            for (const SJson& node : pNodes->items)
                NRV_FUZZ_CHECK(IsNode(node, expression.size()));
            if (!IsOutOfMemory(parsed) && !bParsed)
                NRV_FUZZ_CHECK(pCode->nValue == nParseCode && pNodes->items.empty());
        }
    }
    return 0;
}
