#ifndef NRV_BENCH_CASES_H
#define NRV_BENCH_CASES_H

// The edits that are measured, each in three forms: the engine's expression,
// a hand-written std::string function (the best an edit can cost) and the
// same edit with std::regex (what an application might write instead). The
// three must give the same bytes; every benchmark program checks that first.

#include <cstddef>
#include <iterator>
#include <memory>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "NrvCommandTable.h"
#include "bench_scans.h"

namespace nrvbench {

// ---- Hand-written baselines. Each writes into a caller's string that keeps
// its capacity between calls, as the profile keeps its buffers.

inline bool IsControl(char c)
{
    return static_cast<signed char>(c) < 32;
}

struct HandCutPrefix {
    size_t nCount;
    void operator()(std::string_view in, std::string& out) const { out.assign(in.data() + nCount, in.size() - nCount); }
};

struct HandStripTrailer {
    void operator()(std::string_view in, std::string& out) const
    {
        size_t n = in.size();
        while (n > 0 && IsControl(in[n - 1]))
            --n;
        out.assign(in.data(), n);
    }
};

struct HandCutPrefixStripTrailer {
    size_t nCount;
    void operator()(std::string_view in, std::string& out) const
    {
        size_t n = in.size();
        while (n > 0 && IsControl(in[n - 1]))
            --n;
        out.assign(in.data() + nCount, n - nCount);
    }
};

// From after the first marker to before the last one.
struct HandBetween {
    char cMarker;
    void operator()(std::string_view in, std::string& out) const
    {
        const size_t a = in.find(cMarker);
        const size_t b = in.rfind(cMarker);
        size_t start = a == std::string_view::npos ? 0 : a + 1;
        const size_t stop = b == std::string_view::npos ? in.size() : b;
        if (start > stop)
            start = stop;
        out.assign(in.data() + start, stop - start);
    }
};

// The value of a field: after the first occurrence of its code, up to the
// line feed that follows.
struct HandField {
    std::string_view code;
    void operator()(std::string_view in, std::string& out) const
    {
        const size_t a = in.find(code);
        if (a == std::string_view::npos) {
            out.assign(in.data(), in.size());
            return;
        }
        const size_t start = a + code.size();
        size_t stop = in.find('\n', start);
        if (stop == std::string_view::npos)
            stop = in.size();
        out.assign(in.data() + start, stop - start);
    }
};

// Everything after the first occurrence of a text (the text itself kept or
// not); the whole scan when it does not occur.
struct HandAfterFirst {
    std::string_view marker;
    bool bKeepMarker;
    void operator()(std::string_view in, std::string& out) const
    {
        const size_t a = in.find(marker);
        if (a == std::string_view::npos) {
            out.assign(in.data(), in.size());
            return;
        }
        const size_t start = bKeepMarker ? a : a + marker.size();
        out.assign(in.data() + start, in.size() - start);
    }
};

struct HandReplaceControls {
    char cReplacement;
    void operator()(std::string_view in, std::string& out) const
    {
        out.resize(in.size());
        char* p = &out[0];
        for (char c : in)
            *p++ = IsControl(c) ? cReplacement : c;
    }
};

struct HandUpperCase {
    void operator()(std::string_view in, std::string& out) const
    {
        out.resize(in.size());
        char* p = &out[0];
        for (char c : in)
            *p++ = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    }
};

// ---- std::regex baselines. The pattern is compiled once, outside the
// measured loop; the match runs over the scan's bytes in place.

// Replaces the first match (or every match) of a pattern.
struct RegexReplace {
    std::shared_ptr<const std::regex> pattern;
    std::string replacement;
    bool bFirstOnly;
    void operator()(std::string_view in, std::string& out) const
    {
        out.clear();
        std::regex_replace(std::back_inserter(out), in.begin(), in.end(), *pattern, replacement,
                           bFirstOnly ? std::regex_constants::format_first_only : std::regex_constants::format_default);
    }
};

// Keeps capture group 1 of the first match, the whole scan without a match.
struct RegexCapture {
    std::shared_ptr<const std::regex> pattern;
    void operator()(std::string_view in, std::string& out) const
    {
        std::match_results<std::string_view::const_iterator> match;
        if (std::regex_search(in.begin(), in.end(), match, *pattern))
            out.assign(match[1].first, match[1].second);
        else
            out.assign(in.data(), in.size());
    }
};

// Keeps what follows the first match, the whole scan without a match.
struct RegexSuffix {
    std::shared_ptr<const std::regex> pattern;
    bool bKeepMatch;
    void operator()(std::string_view in, std::string& out) const
    {
        std::match_results<std::string_view::const_iterator> match;
        if (std::regex_search(in.begin(), in.end(), match, *pattern))
            out.assign(bKeepMatch ? match[0].first : match[0].second, in.end());
        else
            out.assign(in.data(), in.size());
    }
};

// std::regex cannot change case: an application finds the lower-case runs
// and converts each.
struct RegexUpperCase {
    std::shared_ptr<const std::regex> pattern;
    void operator()(std::string_view in, std::string& out) const
    {
        out.clear();
        auto last = in.begin();
        using Iterator = std::regex_iterator<std::string_view::const_iterator>;
        for (Iterator it(in.begin(), in.end(), *pattern), end; it != end; ++it) {
            const auto& match = (*it)[0];
            out.append(last, match.first);
            for (auto p = match.first; p != match.second; ++p)
                out.push_back(static_cast<char>(*p - 'a' + 'A'));
            last = match.second;
        }
        out.append(last, in.end());
    }
};

inline std::shared_ptr<const std::regex> Pattern(const char* pszPattern)
{
    return std::make_shared<const std::regex>(pszPattern);
}

// A group of the report ("cut a prefix") and the scan it runs over.
struct CaseName {
    const char* pszEdit;
    const char* pszScan;
};

// Calls sink.Add(name, scan, expression, hand, regex) for every typical
// edit. Each sink instantiates its own Add for each pair of functor types, so
// the baselines are called directly, never through a pointer.
template <class Sink>
void ForEachEditCase(Sink& sink)
{
    const char kControls[] = "[\\x00-\\x1f\\x80-\\xff]";
    const std::string controls(kControls);

    sink.Add(CaseName{"cut_prefix", "ean13"}, Ean13(), "{TruncateFromBeginning({DecodedData()},1)}",
             HandCutPrefix{1}, RegexReplace{Pattern("^[\\s\\S]"), "", true});
    sink.Add(CaseName{"cut_prefix", "industrial"}, Industrial(), "{TruncateFromBeginning({DecodedData()},3)}",
             HandCutPrefix{3}, RegexReplace{Pattern("^[\\s\\S]{3}"), "", true});
    sink.Add(CaseName{"strip_trailer", "industrial"}, Industrial(), "{DecodedDataWithoutTrailer()}",
             HandStripTrailer{}, RegexReplace{Pattern((controls + "+$").c_str()), "", true});
    sink.Add(CaseName{"cut_prefix_strip_trailer", "industrial"}, Industrial(),
             "{TruncateFromBeginning({DecodedDataWithoutTrailer()},3)}", HandCutPrefixStripTrailer{3},
             RegexCapture{Pattern(("^[\\s\\S]{3}([\\s\\S]*?)" + controls + "*$").c_str())});
    sink.Add(CaseName{"field_between_markers", "industrial"}, Industrial(),
             "{Extract({DecodedData()},{EscapeCharacter(1D)},{EscapeCharacter(1D)})}", HandBetween{'\x1d'},
             RegexCapture{Pattern("\\x1d([\\s\\S]*)\\x1d")});
    sink.Add(CaseName{"find_and_cut", "industrial"}, Industrial(),
             "{TruncateBeforeIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,{EscapeCharacter(1D)},1)},0)}",
             HandAfterFirst{"\x1d", false}, RegexSuffix{Pattern("\\x1d"), false});
    sink.Add(CaseName{"replace_controls", "industrial"}, Industrial(),
             "{ReplaceNonPrintableCharacters({DecodedData()},|)}", HandReplaceControls{'|'},
             RegexReplace{Pattern(kControls), "|", false});
    sink.Add(CaseName{"upper_case", "industrial"}, Industrial(), "{MakeUpperCase({DecodedData()})}", HandUpperCase{},
             RegexUpperCase{Pattern("[a-z]+")});

    sink.Add(CaseName{"strip_trailer", "idcard"}, IdentityCard(), "{DecodedDataWithoutTrailer()}", HandStripTrailer{},
             RegexReplace{Pattern((controls + "+$").c_str()), "", true});
    sink.Add(CaseName{"field_between_markers", "idcard"}, IdentityCard(),
             "{Substring({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,DCS,3)},"
             "{FindFirstFromIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,DCS,0)},"
             "{EscapeCharacter(0A)},0)})}",
             HandField{"DCS"}, RegexCapture{Pattern("DCS([^\\n]*)")});
    sink.Add(CaseName{"replace_controls", "idcard"}, IdentityCard(),
             "{ReplaceNonPrintableCharacters({DecodedData()},|)}", HandReplaceControls{'|'},
             RegexReplace{Pattern(kControls), "|", false});
    sink.Add(CaseName{"upper_case", "idcard"}, IdentityCard(), "{MakeUpperCase({DecodedData()})}", HandUpperCase{},
             RegexUpperCase{Pattern("[a-z]+")});

    sink.Add(CaseName{"find_and_cut", "qr"}, QrPayload(),
             "{TruncateBeforeIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},-1,CHAPTER,0)},0)}",
             HandAfterFirst{"CHAPTER", true}, RegexSuffix{Pattern("CHAPTER"), true});
    sink.Add(CaseName{"replace_controls", "qr"}, QrPayload(), "{ReplaceNonPrintableCharacters({DecodedData()},|)}",
             HandReplaceControls{'|'}, RegexReplace{Pattern(kControls), "|", false});
    sink.Add(CaseName{"upper_case", "qr"}, QrPayload(), "{MakeUpperCase({DecodedData()})}", HandUpperCase{},
             RegexUpperCase{Pattern("[a-z]+")});
}

// Expressions whose parse time is measured: one per command family, then a
// nest of five commands.
struct ParseCase {
    const char* pszName;
    const char* pszExpression;
};

inline std::vector<ParseCase> ParseCases()
{
    return {
        {"decoded_data", "{DecodedDataWithoutTrailer()}"},
        {"truncate", "{TruncateFromBeginning({DecodedData()},3)}"},
        {"case", "{MakeUpperCase({DecodedData()})}"},
        {"replace", "{Replace({DecodedData()},-,_)}"},
        {"escape", "{EscapeCharacter(0D0A)}"},
        {"insert", "{InsertAfterIndex({DecodedData()},3,-)}"},
        {"find", "{FindFirstFromIndex({DecodedData()},-1,-,1)}"},
        {"truncate_at_index", "{TruncateAfterIndex({DecodedData()},5,0)}"},
        {"substring", "{Substring({DecodedData()},2,5)}"},
        {"nest_of_five",
         "{InsertAfterIndex({MakeUpperCase({TruncateFromEnd({TruncateFromBeginning({DecodedDataWithoutTrailer()},3)},"
         "1)})},-1,;)}"},
    };
}

// One expression per command of the command table for the growth curves,
// each over the growth scan of the size measured. A command listed in
// kWorstCases is measured in its worst case (searched texts, '~' and '^',
// never occur in the scan, so every search runs to its end); any other with
// its sample call over the scan.
struct GrowthCase {
    std::string command;
    std::string expression;
    bool bHexScan;        // EscapeCharacter reads hexadecimal digits
    size_t nMinimumSize;  // the smallest scan the command accepts
    bool bGs1Scan = false;  // a GS1 command reads a GS1 message (GrowthGs1Scan)
};

inline std::vector<GrowthCase> GrowthCases()
{
    static const GrowthCase kWorstCases[] = {
        {"DecodedData", "{DecodedData()}", false, 1},
        {"DecodedDataWithoutTrailer", "{DecodedDataWithoutTrailer()}", false, 1},
        {"TruncateFromBeginning", "{TruncateFromBeginning({DecodedData()},0)}", false, 1},
        {"TruncateFromEnd", "{TruncateFromEnd({DecodedData()},0)}", false, 1},
        {"MakeUpperCase", "{MakeUpperCase({DecodedData()})}", false, 1},
        {"MakeLowerCase", "{MakeLowerCase({DecodedData()})}", false, 1},
        {"ReplaceNonPrintableCharacters", "{ReplaceNonPrintableCharacters({DecodedData()},|)}", false, 1},
        {"Replace", "{Replace({DecodedData()},~,_)}", false, 2},
        {"Substitute", "{Substitute({DecodedData()},-/,_)}", false, 1},
        {"EscapeCharacter", "{EscapeCharacter({DecodedData()})}", true, 1},
        {"InsertAfterIndex", "{InsertAfterIndex({DecodedData()},-1,!)}", false, 1},
        {"InsertBeforeIndex", "{InsertBeforeIndex({DecodedData()},0,!)}", false, 1},
        {"FindFirstFromIndex", "{FindFirstFromIndex({DecodedData()},-1,~,0)}", false, 1},
        {"FindLastFromIndex", "{FindLastFromIndex({DecodedData()},-1,~,0)}", false, 1},
        {"TruncateAfterIndex", "{TruncateAfterIndex({DecodedData()},100000,0)}", false, 1},
        {"TruncateBeforeIndex", "{TruncateBeforeIndex({DecodedData()},0,0)}", false, 1},
        {"Substring", "{Substring({DecodedData()},0,-1)}", false, 1},
        {"Extract", "{Extract({DecodedData()},~,^)}", false, 1},
        {"GS1Element", "{GS1Element({DecodedData()},21)}", false, 3, true},
        {"GS1HumanReadable", "{GS1HumanReadable({DecodedData()})}", false, 3, true},
    };
    std::vector<GrowthCase> cases;
    size_t nCount = 0;
    const TNrvCommandInfo* pTable = NrvGetCommandTable(&nCount);
    for (size_t i = 0; i < nCount; ++i) {
        const TNrvCommandInfo& row = pTable[i];
        const GrowthCase* pWorst = nullptr;
        for (const GrowthCase& worst : kWorstCases)
            pWorst = worst.command == row.pszName ? &worst : pWorst;
        if (pWorst != nullptr) {
            cases.push_back(*pWorst);
            continue;
        }
        // The sample edits any scan at least as long as its own sample scan
        // (8 bytes); it reads the scan where its first text does.
        cases.push_back({row.pszName, row.pszSample, false, 64});
    }
    return cases;
}

}  // namespace nrvbench

#endif  // NRV_BENCH_CASES_H
