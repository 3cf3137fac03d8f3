#ifndef NRV_BENCH_TYPICAL_H
#define NRV_BENCH_TYPICAL_H

// Six typical edits of short scans, each in up to six forms:
//   engine  the profile running the expression;
//   floor   only the new[]/delete[] and memcpy calls that the engine's rules
//           require for that expression (every value record holds its text
//           in a buffer of its own, every command that builds a text takes a
//           work buffer and copies it into its result, the profile copies
//           the scan in and the results out), in the engine's order, and
//           nothing else: what no implementation of these rules can beat;
//   hand    a hand-written std::string function, the least an edit can cost;
//   std::regex, RE2 and PCRE2 (JIT), each compiled once, outside the loop.
// RE2 and PCRE2 are compiled in only when the build found them.

#include <cstddef>
#include <cstring>
#include <memory>
#include <regex>
#include <string>
#include <string_view>

#ifdef NRV_HAVE_RE2
#include <re2/re2.h>
#endif
#ifdef NRV_HAVE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

#include "bench_scans.h"

namespace nrvbench {

// Keeps the compiler from removing a new[]/delete[] pair or a copy whose
// result is never read.
inline void Escape(void* p)
{
    asm volatile("" : : "g"(p) : "memory");
}

// ---- The floor's two moves.

// A value record taking its own copy of a text.
inline char* FloorCopy(const char* p, size_t n)
{
    char* q = new char[n + 1];
    memcpy(q, p, n);
    q[n] = '\0';
    Escape(q);
    return q;
}

// A command's work buffer.
inline char* FloorWork(size_t n)
{
    char* q = new char[n + 1];
    q[n] = '\0';
    Escape(q);
    return q;
}

// What the profile does around the root: the scan into its copy, the root's
// result appended to the edited data (both buffers keep their size).
struct FloorProfile {
    std::string copy, edited;
    void In(const std::string& scan)
    {
        copy.resize(scan.size() + 1);
        memcpy(&copy[0], scan.data(), scan.size());
        Escape(&copy[0]);
    }
    void Out(const char* p, size_t n)
    {
        edited.resize(n + 1);
        memcpy(&edited[0], p, n);
        Escape(&edited[0]);
    }
};

// ---- Regular-expression forms, one description for all three libraries.
enum class RegexKind {
    kDeleteFirst,  // the first match removed
    kReplaceAll,   // every match replaced
    kCapture,      // group 1 of the first match, the whole scan without one
    kUpperCase,    // a prefix, then the scan with every [a-z]+ run upper-cased
};

struct RegexPlan {
    RegexKind kind;
    const char* pszPattern;
    const char* pszReplacement;  // kReplaceAll
    const char* pszPrefix;       // kUpperCase
};

inline void Upper(std::string& out, const char* p, size_t n)
{
    const size_t nAt = out.size();
    out.append(p, n);
    for (size_t i = nAt; i < out.size(); ++i)
        out[i] = static_cast<char>(out[i] - 'a' + 'A');
}

struct StdRegexEdit {
    RegexPlan plan;
    std::shared_ptr<const std::regex> pattern;
    explicit StdRegexEdit(RegexPlan s) : plan(s), pattern(std::make_shared<const std::regex>(s.pszPattern)) {}
    void operator()(std::string_view in, std::string& out) const
    {
        using Iterator = std::string_view::const_iterator;
        switch (plan.kind) {
        case RegexKind::kDeleteFirst:
        case RegexKind::kReplaceAll:
            out.clear();
            std::regex_replace(std::back_inserter(out), in.begin(), in.end(), *pattern,
                               plan.kind == RegexKind::kDeleteFirst ? "" : plan.pszReplacement,
                               plan.kind == RegexKind::kDeleteFirst ? std::regex_constants::format_first_only
                                                                     : std::regex_constants::format_default);
            return;
        case RegexKind::kCapture: {
            std::match_results<Iterator> match;
            if (std::regex_search(in.begin(), in.end(), match, *pattern))
                out.assign(match[1].first, match[1].second);
            else
                out.assign(in.data(), in.size());
            return;
        }
        case RegexKind::kUpperCase: {
            out.assign(plan.pszPrefix);
            auto last = in.begin();
            for (std::regex_iterator<Iterator> it(in.begin(), in.end(), *pattern), end; it != end; ++it) {
                const auto& match = (*it)[0];
                out.append(last, match.first);
                Upper(out, &*match.first, static_cast<size_t>(match.second - match.first));
                last = match.second;
            }
            out.append(last, in.end());
            return;
        }
        }
    }
};

#ifdef NRV_HAVE_RE2
// Bytes, not UTF-8: scans hold 0x80..0xFF that are not characters.
inline std::shared_ptr<const re2::RE2> Re2Pattern(const char* pszPattern)
{
    re2::RE2::Options options;
    options.set_encoding(re2::RE2::Options::EncodingLatin1);
    options.set_dot_nl(true);
    options.set_log_errors(false);
    return std::make_shared<const re2::RE2>(pszPattern, options);
}

struct Re2Edit {
    RegexPlan plan;
    std::shared_ptr<const re2::RE2> pattern;
    explicit Re2Edit(RegexPlan s) : plan(s), pattern(Re2Pattern(s.pszPattern)) {}
    void operator()(std::string_view in, std::string& out) const
    {
        const re2::StringPiece text(in.data(), in.size());
        re2::StringPiece match[2];
        switch (plan.kind) {
        case RegexKind::kDeleteFirst:
            if (pattern->Match(text, 0, text.size(), re2::RE2::UNANCHORED, match, 1)) {
                const size_t nAt = static_cast<size_t>(match[0].data() - in.data());
                out.assign(in.data(), nAt);
                out.append(match[0].data() + match[0].size(), in.size() - nAt - match[0].size());
            } else {
                out.assign(in.data(), in.size());
            }
            return;
        case RegexKind::kReplaceAll:
            out.assign(in.data(), in.size());
            re2::RE2::GlobalReplace(&out, *pattern, plan.pszReplacement);
            return;
        case RegexKind::kCapture:
            if (pattern->Match(text, 0, text.size(), re2::RE2::UNANCHORED, match, 2))
                out.assign(match[1].data(), match[1].size());
            else
                out.assign(in.data(), in.size());
            return;
        case RegexKind::kUpperCase: {
            out.assign(plan.pszPrefix);
            size_t nAt = 0;
            while (pattern->Match(text, nAt, text.size(), re2::RE2::UNANCHORED, match, 1)) {
                const size_t nStart = static_cast<size_t>(match[0].data() - in.data());
                out.append(in.data() + nAt, nStart - nAt);
                Upper(out, match[0].data(), match[0].size());
                nAt = nStart + match[0].size();
            }
            out.append(in.data() + nAt, in.size() - nAt);
            return;
        }
        }
    }
};
#endif  // NRV_HAVE_RE2

#ifdef NRV_HAVE_PCRE2
// A JIT-compiled pattern and the match data it reuses, made once.
struct Pcre2Compiled {
    pcre2_code* pCode = nullptr;
    pcre2_match_data* pMatch = nullptr;
    explicit Pcre2Compiled(const char* pszPattern)
    {
        int nError = 0;
        PCRE2_SIZE nOffset = 0;
        pCode = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pszPattern), PCRE2_ZERO_TERMINATED,
                              PCRE2_DOTALL | PCRE2_DOLLAR_ENDONLY, &nError, &nOffset, nullptr);
        if (pCode == nullptr)
            std::abort();
        pcre2_jit_compile(pCode, PCRE2_JIT_COMPLETE);
        pMatch = pcre2_match_data_create_from_pattern(pCode, nullptr);
    }
    ~Pcre2Compiled()
    {
        pcre2_match_data_free(pMatch);
        pcre2_code_free(pCode);
    }
    Pcre2Compiled(const Pcre2Compiled&) = delete;
    Pcre2Compiled& operator=(const Pcre2Compiled&) = delete;
};

struct Pcre2Edit {
    RegexPlan plan;
    std::shared_ptr<Pcre2Compiled> pattern;
    explicit Pcre2Edit(RegexPlan s) : plan(s), pattern(std::make_shared<Pcre2Compiled>(s.pszPattern)) {}

    // pcre2_substitute into out from nAt on, growing it when told to.
    void Substitute(std::string_view in, std::string& out, size_t nAt, const char* pszReplacement,
                    uint32_t nOptions) const
    {
        if (out.size() < nAt + in.size() * 2 + 16)
            out.resize(nAt + in.size() * 2 + 16);
        for (;;) {
            PCRE2_SIZE nLength = out.size() - nAt;
            const int rc = pcre2_substitute(
                pattern->pCode, reinterpret_cast<PCRE2_SPTR>(in.data()), in.size(), 0,
                nOptions | PCRE2_SUBSTITUTE_OVERFLOW_LENGTH, pattern->pMatch, nullptr,
                reinterpret_cast<PCRE2_SPTR>(pszReplacement), PCRE2_ZERO_TERMINATED,
                reinterpret_cast<PCRE2_UCHAR*>(&out[nAt]), &nLength);
            if (rc == PCRE2_ERROR_NOMEMORY) {
                out.resize(nAt + nLength);
                continue;
            }
            out.resize(rc < 0 ? nAt : nAt + nLength);
            return;
        }
    }

    void operator()(std::string_view in, std::string& out) const
    {
        switch (plan.kind) {
        case RegexKind::kDeleteFirst:
            Substitute(in, out, 0, "", 0);
            return;
        case RegexKind::kReplaceAll:
            Substitute(in, out, 0, plan.pszReplacement, PCRE2_SUBSTITUTE_GLOBAL);
            return;
        case RegexKind::kCapture: {
            const int rc = pcre2_jit_match(pattern->pCode, reinterpret_cast<PCRE2_SPTR>(in.data()), in.size(), 0, 0,
                                           pattern->pMatch, nullptr);
            if (rc >= 2) {
                const PCRE2_SIZE* pOffsets = pcre2_get_ovector_pointer(pattern->pMatch);
                out.assign(in.data() + pOffsets[2], pOffsets[3] - pOffsets[2]);
            } else {
                out.assign(in.data(), in.size());
            }
            return;
        }
        case RegexKind::kUpperCase: {
            // The extended replacement syntax changes case itself.
            const size_t nPrefix = strlen(plan.pszPrefix);
            if (out.size() < nPrefix)
                out.resize(nPrefix);
            memcpy(&out[0], plan.pszPrefix, nPrefix);
            Substitute(in, out, nPrefix, "\\U$0", PCRE2_SUBSTITUTE_GLOBAL | PCRE2_SUBSTITUTE_EXTENDED);
            return;
        }
        }
    }
};
#endif  // NRV_HAVE_PCRE2

// ---- The six edits.
struct TypicalEdit {
    const char* pszName;
    const char* pszScanName;
    const std::string* pScan;
    const char* pszExpression;
    size_t nAllocations;  // what the engine's rules require per edit
    RegexPlan regex;
    // The hand-written form and the floor.
    void (*pHand)(std::string_view in, std::string& out);
    void (*pFloor)(const std::string& scan, FloorProfile& profile);
};

// A Code 128 scan with a serial number, two '-' and a lot.
inline const std::string& Code128()
{
    static const std::string s("]C1SN:4711-0815-ax/LOT:b99");
    return s;
}

namespace typical {

inline void HandCut2(std::string_view in, std::string& out)
{
    out.assign(in.data() + 2, in.size() - 2);
}
inline void FloorCut2(const std::string& scan, FloorProfile& profile)
{
    profile.In(scan);
    char* pData = FloorCopy(profile.copy.data(), scan.size());  // DecodedData
    char* pCount = FloorCopy("2", 1);                           // the literal 2
    char* pResult = FloorCopy(pData + 2, scan.size() - 2);       // TruncateFromBeginning
    delete[] pCount;
    delete[] pData;
    profile.Out(pResult, scan.size() - 2);
    delete[] pResult;
}

inline size_t Trailer(std::string_view in)
{
    size_t n = in.size();
    while (n > 0 && static_cast<signed char>(in[n - 1]) < 32)
        --n;
    return n;
}
inline void HandStripTrailer(std::string_view in, std::string& out)
{
    out.assign(in.data(), Trailer(in));
}
inline void FloorStripTrailer(const std::string& scan, FloorProfile& profile)
{
    profile.In(scan);
    const size_t n = Trailer(scan);
    char* pResult = FloorCopy(profile.copy.data(), n);
    profile.Out(pResult, n);
    delete[] pResult;
}

inline void HandGsToBar(std::string_view in, std::string& out)
{
    out.assign(in.data(), in.size());
    for (char& c : out)
        if (c == '\x1d')
            c = '|';
}
inline void FloorGsToBar(const std::string& scan, FloorProfile& profile)
{
    const size_t n = scan.size();
    profile.In(scan);
    char* pData = FloorCopy(profile.copy.data(), n);  // DecodedData
    char* pHex = FloorCopy("1D", 2);                   // the literal 1D
    char* pEscapeWork = FloorWork(2);                  // EscapeCharacter: work buffer
    char* pSet = FloorCopy(pEscapeWork, 1);            //   and its result
    delete[] pEscapeWork;
    delete[] pHex;
    char* pBar = FloorCopy("|", 1);        // the literal |
    char* pWork = FloorWork(n);            // Substitute: work buffer
    char* pResult = FloorCopy(pWork, n);   //   and its result
    delete[] pWork;
    delete[] pBar;
    delete[] pSet;
    delete[] pData;
    profile.Out(pResult, n);
    delete[] pResult;
}

inline void HandExtract(std::string_view in, std::string& out)
{
    const size_t a = in.find("SN:");
    const size_t b = in.rfind('/');
    out.assign(in.data() + a + 3, b - a - 3);
}
inline void FloorExtract(const std::string& scan, FloorProfile& profile)
{
    profile.In(scan);
    char* pData = FloorCopy(profile.copy.data(), scan.size());
    char* pStart = FloorCopy("SN:", 3);
    char* pStop = FloorCopy("/", 1);
    const size_t a = 6, n = 12;  // the piece, known here: the floor does no search
    char* pResult = FloorCopy(pData + a, n);
    delete[] pStop;
    delete[] pStart;
    delete[] pData;
    profile.Out(pResult, n);
    delete[] pResult;
}

inline void HandUpperPrefix(std::string_view in, std::string& out)
{
    out.assign("ID: ");
    out.append(in.data(), in.size());
    for (size_t i = 4; i < out.size(); ++i)
        if (out[i] >= 'a' && out[i] <= 'z')
            out[i] = static_cast<char>(out[i] - 'a' + 'A');
}
inline void FloorUpperPrefix(const std::string& scan, FloorProfile& profile)
{
    const size_t n = scan.size();
    profile.In(scan);
    char* pLabel = FloorCopy("ID: ", 4);  // the literal, the first root operation
    profile.Out(pLabel, 4);
    delete[] pLabel;
    char* pData = FloorCopy(profile.copy.data(), n);  // DecodedData
    char* pWork = FloorWork(n);                        // MakeUpperCase: work buffer
    char* pResult = FloorCopy(pWork, n);               //   and its result
    delete[] pWork;
    delete[] pData;
    profile.Out(pResult, n);  // appended after the label
    delete[] pResult;
}

inline void HandBetweenDashes(std::string_view in, std::string& out)
{
    const size_t a = in.find('-');
    const size_t b = in.rfind('-');
    out.assign(in.data() + a + 1, b - a - 1);
}
inline void FloorBetweenDashes(const std::string& scan, FloorProfile& profile)
{
    const size_t n = scan.size();
    profile.In(scan);
    char* pData = FloorCopy(profile.copy.data(), n);  // Substring's text
    // Each find command: its four parameters, released when it returns.
    auto Find = [&](const char* pszOffset) {
        char* p1 = FloorCopy(profile.copy.data(), n);
        char* p2 = FloorCopy("-1", 2);
        char* p3 = FloorCopy("-", 1);
        char* p4 = FloorCopy(pszOffset, 1);
        delete[] p4;
        delete[] p3;
        delete[] p2;
        delete[] p1;
    };
    Find("1");  // FindFirstFromIndex
    Find("0");  // FindLastFromIndex
    char* pResult = FloorCopy(pData + 11, 4);  // the piece, known here
    delete[] pData;
    profile.Out(pResult, 4);
    delete[] pResult;
}

}  // namespace typical

template <class F>
void ForEachTypicalEdit(F f)
{
    namespace t = typical;
    const TypicalEdit edits[] = {
        {"cut a 2-byte prefix", "ean13", &Ean13(), "{TruncateFromBeginning({DecodedData()},2)}", 3,
         {RegexKind::kDeleteFirst, "^[\\s\\S]{2}", "", ""}, t::HandCut2, t::FloorCut2},
        {"strip the trailer", "industrial", &Industrial(), "{DecodedDataWithoutTrailer()}", 1,
         {RegexKind::kDeleteFirst, "[\\x00-\\x1f\\x80-\\xff]+$", "", ""}, t::HandStripTrailer, t::FloorStripTrailer},
        {"GS to bar (Substitute)", "industrial", &Industrial(),
         "{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}", 7, {RegexKind::kReplaceAll, "\\x1d", "|", ""},
         t::HandGsToBar, t::FloorGsToBar},
        {"Extract between markers", "code128", &Code128(), "{Extract({DecodedData()},SN:,/)}", 4,
         {RegexKind::kCapture, "SN:([\\s\\S]*)/", "", ""}, t::HandExtract, t::FloorExtract},
        {"label + upper case", "code128", &Code128(), "ID: {MakeUpperCase({DecodedData()})}", 4,
         {RegexKind::kUpperCase, "[a-z]+", "", "ID: "}, t::HandUpperPrefix, t::FloorUpperPrefix},
        {"Substring between - and -", "code128", &Code128(),
         "{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,-,1)},"
         "{FindLastFromIndex({DecodedData()},-1,-,0)})}",
         10, {RegexKind::kCapture, "-([\\s\\S]*)-", "", ""}, t::HandBetweenDashes, t::FloorBetweenDashes},
    };
    for (const TypicalEdit& edit : edits)
        f(edit);
}

}  // namespace nrvbench

#endif  // NRV_BENCH_TYPICAL_H
