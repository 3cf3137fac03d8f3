// The playground's portable part, natively: lines, dropped files, and the
// replies the page reads, zero bytes and refused settings included.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "NrvPlayground.h"

namespace {

using namespace std::string_literals;

TEST(Playground, LinesAsTheToolReadsAFile)
{
    struct Row {
        std::string text;
        std::vector<std::string> lines;
    } rows[] = {
        {"", {}},
        {"a", {"a"}},
        {"a\n", {"a"}},
        {"\n", {""}},
        {"a\n\nb", {"a", "", "b"}},
        {"a\n\n", {"a", ""}},
        {"A\nB\0C\nD"s, {"A", "B\0C"s, "D"}},  // a zero byte is a byte of its line
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const std::vector<std::string_view> lines = NrvSplitLines(row.text);
        EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.end()), row.lines);
    }
}

TEST(Playground, ADroppedFileAsTheScansBoxShowsIt)
{
    struct Row {
        const char* pszName;
        std::string bytes;
        bool bEscapesOn;
        std::string text;
        bool bEscapes;
    } rows[] = {
        {"plain text stays", "AB12\n\tCD\xc3\xa9\n", false, "AB12\n\tCD\xc3\xa9\n", false},
        {"a CR switches the escapes on", "AB12\r\n\x1d" "01\xff\r\n\n", false, "AB12\\r\n\\x1D01\\xFF\\r\n\n", true},
        {"a last line without newline", "a\x7f", false, "a\\x7F\n", true},
        {"a zero byte", "a\0b"s, false, "a\\x00b\n", true},
        {"a byte that is not UTF-8", "\xc3(", false, "\\xC3(\n", true},
        {"escapes already on", "ab\n", true, "ab\n", true},
        {"an empty file", "", false, "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        bool bEscapes = !row.bEscapes;
        EXPECT_EQ(NrvScansOfFile(row.bytes, row.bEscapesOn, &bEscapes), row.text);
        EXPECT_EQ(bEscapes, row.bEscapes);
    }
}

// The page's trigger fields as typed, and the reply; a refused trigger
// leaves every scan unedited with NRV_ERR_INVALID_PARAMETER.
TEST(Playground, TriggersAsThePageGivesThem)
{
    const std::string kPastLargest = std::to_string(SIZE_MAX) + "0";
    struct Row {
        const char* pszName;
        std::string minimum, maximum, symbologies, startsWith;
        bool bEscapes;
        std::string reply;
        std::string rows;  // the edits of "AB12" and "XY" with the triggers
    } rows[] = {
        {"none", "", "", "", "", false, "{\"ok\":true}", "[[0,\"<AB12>\"],[0,\"<XY>\"]]"},
        {"sizes", "3", "4", "", "", false, "{\"ok\":true}", "[[0,\"<AB12>\"],[1,\"XY\"]]"},
        {"symbologies by number and name", "", "", "38,code128", "", false, "{\"ok\":true}",
         "[[0,\"<AB12>\"],[0,\"<XY>\"]]"},
        {"an escaped text", "", "", "", "\\x41B", true, "{\"ok\":true}", "[[0,\"<AB12>\"],[1,\"XY\"]]"},
        {"a zero byte", "", "", "", "A\0X"s, false,
         "{\"ok\":false,\"setting\":\"starts with\",\"message\":\"starts with 'A\\\\x00X': a trigger text cannot hold "
         "a zero byte\"}",
         "[[-18,\"AB12\"],[-18,\"XY\"]]"},
        {"a size that does not fit", kPastLargest, "", "", "", false,
         "{\"ok\":false,\"setting\":\"minimum size\",\"message\":\"invalid size '" + kPastLargest +
             "' for minimum size (at most " + std::to_string(SIZE_MAX) + ")\"}",
         "[[-18,\"AB12\"],[-18,\"XY\"]]"},
        {"a negative size", "-1", "", "", "", false,
         "{\"ok\":false,\"setting\":\"minimum size\",\"message\":\"invalid size '-1' for minimum size (a decimal byte "
         "count)\"}",
         "[[-18,\"AB12\"],[-18,\"XY\"]]"},
        {"minimum above maximum", "5", "2", "", "", false,
         "{\"ok\":false,\"setting\":\"minimum size\",\"message\":\"minimum size 5 is above maximum size 2: no scan "
         "could be edited\"}",
         "[[-18,\"AB12\"],[-18,\"XY\"]]"},
        {"an unknown symbology", "", "", "15,99", "", false,
         "{\"ok\":false,\"setting\":\"only symbologies\",\"message\":\"unknown symbology '99'\"}",
         "[[-18,\"AB12\"],[-18,\"XY\"]]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvPlayground playground;
        ASSERT_EQ(playground.Parse("<{DecodedData()}>"), "{\"ok\":true}");
        ASSERT_EQ(playground.SetScans("AB12\nXY", false), "2");
        EXPECT_EQ(playground.SetTriggers(row.minimum, row.maximum, row.symbologies, "", row.startsWith, "", row.bEscapes),
                  row.reply);
        EXPECT_EQ(playground.EditScans(kNrvScanSymbologyCode128, 0, 2), "{\"rows\":" + row.rows + "}");
    }
}

// Diagnostics, failures and explanations in the library's schema, bytes in
// the page's forms; an expression with a zero byte is refused, not cut.
TEST(Playground, RepliesThatCarryDiagnostics)
{
    struct Row {
        const char* pszName;
        std::string expression;
        std::string scans;
        bool bEscapes;
        std::string parsed, edited, explained;  // the last explains the first scan
    } rows[] = {
        {"a zero byte in the expression", "{DecodedData()}\0{Frobnicate()}"s, "A\nB\0C"s, false,
         "{\"ok\":false,\"code\":-18,\"name\":\"NRV_ERR_INVALID_PARAMETER\",\"offset\":15,\"length\":1,\"command\":null,"
         "\"message\":\"the expression cannot hold a zero byte\"}",
         "{\"rows\":[[-18,\"A\"],[-18,\"B\xe2\x90\x80" "C\"]]}",
         "{\"scan\":1,\"code\":-18,\"output\":\"A\",\"nodes\":[],\"failure\":{\"code\":-18,\"name\":"
         "\"NRV_ERR_INVALID_PARAMETER\",\"offset\":15,\"length\":1,\"command\":null,\"message\":\"the expression "
         "cannot hold a zero byte\"}}"},
        {"a failed edit, escaped bytes, a line not read", "{TruncateFromEnd({DecodedData()},1)}", "A\\t\n\\q\nA", true,
         "{\"ok\":true}",
         "{\"rows\":[[0,\"A\"],[null,\"\\\\q\",\"unknown escape \\\\q (known: \\\\\\\\ \\\\r \\\\n \\\\t \\\\xHH)\"],"
         "[-43,\"A\",{\"code\":-43,\"name\":\"NRV_ERR_OUT_OF_RANGE\",\"offset\":1,\"length\":15,\"command\":"
         "\"TruncateFromEnd\",\"message\":\"count 1 is not less than the length 1 of the text\"}]]}",
         "{\"scan\":1,\"code\":0,\"output\":\"A\",\"nodes\":[{\"kind\":\"command\",\"name\":\"TruncateFromEnd\","
         "\"offset\":0,\"length\":36,\"code\":0,\"value\":\"A\",\"params\":[{\"kind\":\"command\",\"name\":"
         "\"DecodedData\",\"offset\":17,\"length\":15,\"code\":0,\"value\":\"A\\\\t\",\"params\":[]},{\"kind\":"
         "\"integer\",\"name\":\"1\",\"offset\":33,\"length\":1,\"code\":0,\"value\":1,\"params\":[]}]}]}"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvPlayground playground;
        EXPECT_EQ(playground.Parse(row.expression), row.parsed);
        playground.SetScans(row.scans, row.bEscapes);
        EXPECT_EQ(playground.EditScans(0, 0, 10), row.edited);
        const std::string firstLine = row.scans.substr(0, row.scans.find('\n'));
        EXPECT_EQ(playground.Explain(row.expression, firstLine, row.bEscapes, 1), row.explained);
    }
}

// The switch that keeps the seed commands: the GS1 commands are unknown
// while it is on, in the parse and the edits, and the triggers do not turn
// it off; the reference names each extension command's set.
TEST(Playground, TheSeedOnlySwitch)
{
    CNrvPlayground playground;
    ASSERT_EQ(playground.Parse("{GS1Element({DecodedData()},10)}"), "{\"ok\":true}");
    playground.SetScans("10AB", false);
    EXPECT_EQ(playground.EditScans(0, 0, 1), "{\"rows\":[[0,\"AB\"]]}");
    EXPECT_NE(playground.SetSeedOnly(true).find("\"code\":-83"), std::string::npos);
    EXPECT_EQ(playground.SetTriggers("", "", "", "", "", "", false), "{\"ok\":true}");
    EXPECT_EQ(playground.EditScans(0, 0, 1), "{\"rows\":[[-83,\"10AB\"]]}");
    EXPECT_EQ(playground.SetSeedOnly(false), "{\"ok\":true}");
    EXPECT_NE(CNrvPlayground::Commands().find("\"name\":\"GS1Element\",\"summary\""), std::string::npos);
    EXPECT_NE(CNrvPlayground::Commands().find("\"set\":\"GS1\""), std::string::npos);
    EXPECT_NE(CNrvPlayground::Commands().find("\"result\":\"text\",\"set\":null"), std::string::npos);
}

}  // namespace
