// The rules file: what it reads into a rule set, every error at its line
// and column, and the way from a byte of a string value back to the file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvRulesFile.h"
#include "NrvTomlPositions.h"

namespace {

bool Read(const std::string& text, CNrvRuleSet* pSet, std::vector<TNrvRulesError>* pErrors)
{
    return NrvReadRules(text.data(), text.size(), pSet, pErrors);
}

std::string EditWith(CNrvRuleSet& set, const std::string& scan, ENrvScanSymbologyID id, size_t* pnRule)
{
    std::vector<char> input(scan.begin(), scan.end());
    TNrvScanDecodedData record = {id, {0, nullptr}, {input.size(), input.data()}};
    const NRVRESULT result = set.Edit(&record, pnRule);
    return result < 0 ? "error " + std::to_string(result)
                      : std::string(record.String.pValue, record.String.nLength);
}

TEST(RulesFile, ReadsRulesInOrderWithTheirTriggers)
{
    const std::string text =
        "# first match wins\n"
        "[[rule]]\n"
        "name = \"GS1\"\n"
        "symbologies = [\"code128\", 16, \"QRCODE\"]\n"
        "starts-with = ']C1'\n"
        "min-size = 4\n"
        "expression = '{TruncateFromBeginning({DecodedData()},3)}'\n"
        "\n"
        "[[rule]]\n"
        "ends-with = '\\x1D'\n"          // the tool's escapes, in a literal string
        "contains = \"\\\\x1E\"\n"       // and in a basic string
        "expression = \"{DecodedDataWithoutTrailer()}\"\n"
        "[[rule]]\n"
        "name = \"short\"\n"
        "max-size = 2\n"
        "min-size = 2\n"
        "expression = '''\n<{DecodedData()}>'''\n";
    CNrvRuleSet set;
    std::vector<TNrvRulesError> errors;
    ASSERT_TRUE(Read(text, &set, &errors)) << (errors.empty() ? "" : NrvFormatRulesError("f", errors[0]));
    ASSERT_EQ(set.GetRuleCount(), 3u);
    EXPECT_STREQ(set.GetRuleName(0), "GS1");
    EXPECT_STREQ(set.GetRuleName(1), "");
    struct Row {
        std::string scan;
        ENrvScanSymbologyID id;
        size_t nRule;
        std::string text;
    } rows[] = {
        {"]C1010", kNrvScanSymbologyCode128, 0, "010"},
        {"]C1010", kNrvScanSymbologyDataMatrix, 0, "010"},
        {"]C1", kNrvScanSymbologyCode128, CNrvRuleSet::kNoRule, "]C1"},  // below min-size
        {"]C1010", kNrvScanSymbologyAztec, CNrvRuleSet::kNoRule, "]C1010"},
        {"a\x1E" "b\x1D", kNrvScanSymbologyAztec, 1, "a\x1E" "b"},
        {"ab\x1D", kNrvScanSymbologyAztec, CNrvRuleSet::kNoRule, "ab\x1D"},  // no 0x1E
        {"xy", kNrvScanSymbologyAztec, 2, "<xy>"},  // the newline after ''' is not in the value
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.scan);
        size_t nRule = 0;
        EXPECT_EQ(EditWith(set, row.scan, row.id, &nRule), row.text);
        EXPECT_EQ(nRule, row.nRule);
    }
}

TEST(RulesFile, EveryErrorAtItsLineAndColumn)
{
    const std::string kGood = "expression = '{DecodedData()}'\n";
    struct Row {
        const char* pszName;
        std::string text;
        size_t nLine, nColumn;
        const char* pszMessage;  // a piece of the message
    } rows[] = {
        {"TOML syntax", "[[rule]]\nexpression = \n", 2, 14, "expected value"},
        {"TOML has no \\x escape", "[[rule]]\nends-with = \"\\x1D\"\n" + kGood, 2, 15, "escape sequence"},
        {"misspelt key", "[[rule]]\n  start-with = 'PN'\n" + kGood, 2, 3,
         "rule 1: unknown key 'start-with' (did you mean 'starts-with'?)"},
        {"unknown key, no hint", "[[rule]]\n" + kGood + "colour = 'red'\n", 3, 1, "unknown key 'colour'"},
        {"top-level key", "version = 2\n[[rule]]\n" + kGood, 1, 1, "unknown key 'version'"},
        {"[rule] instead of [[rule]]", "[rule]\n" + kGood, 1, 1, "'rule' must be tables written [[rule]], not a table"},
        {"no rule at all", "# nothing\n", 1, 1, "no rule"},
        {"wrong type of text", "[[rule]]\n" + kGood + "contains = 12\n", 3, 12, "'contains' must be a string, not an integer"},
        {"wrong type of size", "[[rule]]\n" + kGood + "min-size = '4'\n", 3, 12, "'min-size' must be a byte count"},
        {"negative size", "[[rule]]\n" + kGood + "max-size = -1\n", 3, 12, "invalid size -1 for 'max-size'"},
        {"wrong type of name", "[[rule]]\nname = 1.5\n" + kGood, 2, 8, "'name' must be a string, not a floating-point number"},
        {"wrong type of expression", "[[rule]]\nexpression = true\n", 2, 14, "'expression' must be a string, not a boolean"},
        {"symbologies not an array", "[[rule]]\n" + kGood + "symbologies = 'QRCode'\n", 3, 15, "must be an array"},
        {"empty symbologies", "[[rule]]\n" + kGood + "symbologies = []\n", 3, 15, "'symbologies' is empty"},
        {"no expression", "\n[[rule]]\nname = 'x'\n", 2, 1, "rule 1 has no 'expression'"},
        {"second rule without expression", "[[rule]]\n" + kGood + "[[rule]]\nname = 'x'\n", 3, 1,
         "rule 2 has no 'expression'"},
        {"min-size above max-size", "[[rule]]\n" + kGood + "max-size = 4\nmin-size = 5\n", 4, 12,
         "rule 1 can never match: 'min-size' 5 is above 'max-size' 4"},
        {"trigger longer than max-size", "[[rule]]\n" + kGood + "max-size = 2\nstarts-with = 'ABC'\n", 4, 15,
         "can never match: 'starts-with' holds 3 bytes, more than 'max-size' 2"},
        // A text whose escape is malformed is refused alone: what it decoded before the escape is not a trigger.
        {"malformed escape in a text longer than max-size", "[[rule]]\nexpression = \"x\"\nmax-size = 3\nends-with = 'abcdef\\'\n",
         4, 13, "rule 1: 'ends-with' 'abcdef\\': a backslash ends the text"},
        {"ESC in a key", "[[rule]]\n" + kGood + "\"k\\u001b\" = 1\n", 3, 1, "unknown key 'k\\x1B'"},
        {"BEL in a symbology", "[[rule]]\n" + kGood + "symbologies = [\"a\\u0007\"]\n", 3, 16,
         "unknown symbology 'a\\x07'"},
        {"zero byte in a trigger", "[[rule]]\n" + kGood + "contains = '\\x00'\n", 3, 12, "cannot hold a zero byte"},
        {"zero byte in an expression", "[[rule]]\nexpression = \"a\\u0000b\"\n", 2, 14, "cannot hold a zero byte"},
        {"rule not a table", "rule = [1]\n", 1, 9, "rule 1 must be a table, not an integer"},
        {"gs1 not a boolean", "[[rule]]\n" + kGood + "gs1 = 'yes'\n", 3, 7, "'gs1' must be true or false, not a string"},
        {"seed-only not a boolean", "[[rule]]\n" + kGood + "seed-only = 1\n", 3, 13, "'seed-only' must be true or false"},
        {"ai not a list", "[[rule]]\n" + kGood + "ai = '10'\n", 3, 6, "'ai' must be a list of AIs such as"},
        {"empty ai", "[[rule]]\n" + kGood + "ai = []\n", 3, 6, "not an empty one"},
        {"an AI as a number loses its zero", "[[rule]]\n" + kGood + "ai = ['10', 1]\n", 3, 13,
         "an AI is written as a string of digits such as \"01\", not an integer"},
        {"an AI GS1 lacks", "[[rule]]\n" + kGood + "ai = ['10', '23']\n", 3, 13, "rule 1: no AI 23 exists in GS1's table"},
        {"gs1 false with ai", "[[rule]]\n" + kGood + "ai = ['10']\ngs1 = false\n", 4, 7,
         "rule 1 can never match: 'gs1' is false, and only a GS1 message holds the AIs of 'ai'"},
        {"misspelt gs1 key", "[[rule]]\n" + kGood + "seedonly = true\n", 3, 1, "(did you mean 'seed-only'?)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvRuleSet set;
        ASSERT_EQ(set.AddRule("kept", "old", nullptr), NRV_OK);
        std::vector<TNrvRulesError> errors;
        EXPECT_FALSE(Read(row.text, &set, &errors));
        ASSERT_EQ(errors.size(), 1u) << NrvFormatRulesError("f", errors.at(1));
        EXPECT_EQ(errors[0].nLine, row.nLine);
        EXPECT_EQ(errors[0].nColumn, row.nColumn);
        EXPECT_NE(errors[0].message.find(row.pszMessage), std::string::npos) << errors[0].message;
        // A file with errors changes nothing.
        EXPECT_EQ(set.GetRuleCount(), 1u);
        EXPECT_STREQ(set.GetRuleName(0), "old");
    }
}

// An expression that does not parse is reported at its culprit: the column
// where the expression starts in the file plus the culprit's offset in it
// (these expressions are ASCII on one line), underlined over its length.
TEST(RulesFile, ExpressionErrorsAtTheirCulprit)
{
    struct Row {
        const char* pszName;
        std::string text;
        std::string expression;
        size_t nLine, nStartColumn;
        const char* pszMessage;
    } rows[] = {
        {"literal string", "[[rule]]\nexpression = 'x{Frobnicate()}'\n", "x{Frobnicate()}", 2, 15,
         "rule 1: the expression does not parse: "},
        {"basic string", "[[rule]]\nexpression = \"{TruncateFromEnd({DecodedData()})}\"\n",
         "{TruncateFromEnd({DecodedData()})}", 2, 15, "(NRV_ERR_PARAMETER_COUNT, -84)"},
        {"multi-line string, second rule", "[[rule]]\nexpression = 'ok'\n[[rule]]\nexpression = '''\n  {Nope()}'''\n",
         "  {Nope()}", 5, 1, "rule 2: the expression does not parse: "},
        {"unbalanced, in an inline table", "rule = [{ expression = \"ab{{DecodedData()}\" }]\n", "ab{{DecodedData()}",
         1, 25, "(NRV_ERR_SYNTAX, -52)"},
        {"a GS1 command in a seed-only rule", "[[rule]]\nseed-only = true\nexpression = '{GS1Element(10A,10)}'\n",
         "{GS1Element(10A,10)}", 3, 15, "extension set"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        const TNrvDiagnostic diagnostic = NrvDiagnoseParse(row.expression.c_str());
        ASSERT_LT(diagnostic.nCode, 0);
        CNrvRuleSet set;
        std::vector<TNrvRulesError> errors;
        EXPECT_FALSE(Read(row.text, &set, &errors));
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].nLine, row.nLine);
        EXPECT_EQ(errors[0].nColumn, row.nStartColumn + diagnostic.nOffset);
        EXPECT_EQ(errors[0].nWidth, diagnostic.nLength != 0 ? diagnostic.nLength : 1);
        EXPECT_NE(errors[0].message.find(row.pszMessage), std::string::npos) << errors[0].message;
        EXPECT_NE(errors[0].message.find(diagnostic.message), std::string::npos) << errors[0].message;
    }
}

TEST(RulesFile, EveryErrorOfAFileInFileOrderAndShown)
{
    const std::string text =
        "[[rule]]\n"
        "starts-with = 'PN'\n"
        "expression = 12\n"
        "ends-wth = 'x'\n"
        "[[rule]]\n"
        "\tsymbologies = ['Aztec', \"qr\"]\n";
    CNrvRuleSet set;
    std::vector<TNrvRulesError> errors;
    ASSERT_FALSE(Read(text, &set, &errors));
    ASSERT_EQ(errors.size(), 4u);
    const size_t expected[][2] = {{3, 14}, {4, 1}, {5, 1}, {6, 26}};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(errors[i].nLine, expected[i][0]) << i;
        EXPECT_EQ(errors[i].nColumn, expected[i][1]) << i;
    }
    EXPECT_EQ(NrvFormatRulesError("r.toml", errors[3]),
              "r.toml:6:26: rule 2: unknown symbology 'qr' (see nrv-edit --help for the names)\n"
              "    \tsymbologies = ['Aztec', \"qr\"]\n"
              "    \t                        ^~~~\n");
    TNrvRulesError unreadable;
    unreadable.message = "cannot read the file: No such file or directory";
    EXPECT_EQ(NrvFormatRulesError("r.toml", unreadable), "r.toml: cannot read the file: No such file or directory\n");
    errors.clear();
    EXPECT_FALSE(NrvReadRulesFile("/nonexistent/rules.toml", &set, &errors));
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].nLine, 0u);
}

TEST(TomlPositions, LinesAndColumnsCountCharacters)
{
    const std::string text = "ab\n\xC3\xA9t\xC3\xA9\n\n";  // "ab", "été", ""
    struct Row {
        size_t nOffset, nLine, nColumn;
    } rows[] = {{0, 1, 1}, {2, 1, 3}, {3, 2, 1}, {5, 2, 2}, {6, 2, 3}, {8, 2, 4}, {9, 3, 1}, {10, 4, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.nOffset);
        const TNrvTextPosition position = NrvTomlPosition(text, row.nOffset);
        EXPECT_EQ(position.nLine, row.nLine);
        EXPECT_EQ(position.nColumn, row.nColumn);
        EXPECT_EQ(NrvTomlByteOffset(text, {row.nLine, row.nColumn}), row.nOffset);
    }
    EXPECT_EQ(NrvTomlByteOffset(text, {1, 5}), std::string_view::npos);
    EXPECT_EQ(NrvTomlByteOffset(text, {5, 1}), std::string_view::npos);
    // A byte-order mark is not a column.
    EXPECT_EQ(NrvTomlByteOffset("\xEF\xBB\xBFx = 1", {1, 1}), 3u);
    EXPECT_EQ(NrvTomlPosition("\xEF\xBB\xBFx = 1", 4).nColumn, 2u);
}

TEST(TomlPositions, FromAByteOfAStringValueToTheFile)
{
    struct Row {
        const char* pszName;
        std::string text;  // the string starts at byte 2
        std::string value;
        size_t nOffset;
        bool bFound;
        size_t nByte;
    } rows[] = {
        {"literal", "x='a{b}'", "a{b}", 1, true, 4},
        {"literal, the end is the closing quote", "x='a{b}'", "a{b}", 4, true, 7},
        {"basic with escapes: each maps to its backslash", "x=\"\\t\\u00e9{\"", "\t\xC3\xA9{", 2, true, 5},
        {"after the escapes", "x=\"\\t\\u00e9{\"", "\t\xC3\xA9{", 3, true, 11},
        {"escaped quote", "x=\"a\\\"b\"", "a\"b", 2, true, 6},
        {"multi-line literal: first newline dropped", "x='''\nab\ncd'''", "ab\ncd", 3, true, 9},
        {"multi-line basic: line-ending backslash", "x=\"\"\"ab\\\n   cd\"\"\"", "abcd", 2, true, 12},
        {"quotes before the closing ones", "x='''a'''''", "a''", 2, true, 7},
        {"CR LF in a multi-line string reads as LF", "x='''a\r\nb'''", "a\nb", 2, true, 8},
        {"not the value", "x='abc'", "abd", 0, false, 0},
        {"not a string", "x=12", "12", 0, false, 0},
        {"unterminated", "x='abc", "abc", 0, false, 0},
        {"offset past the value", "x='abc'", "abc", 4, false, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        size_t nByte = 0;
        EXPECT_EQ(NrvTomlStringByte(row.text, 2, row.value, row.nOffset, &nByte), row.bFound);
        if (row.bFound) {
            EXPECT_EQ(nByte, row.nByte);
        }
    }
}

}  // namespace
