// Tests kept in a rules file: what the reader makes of [[test]] tables,
// every mistake in them at its line and column, the outcome of each run
// and the ways it is reported.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "NrvRulesFile.h"

namespace {

// Rule 1 cuts two bytes from scans that start with PN (and fails on "PN"
// itself); rule 2 brackets QR codes; rule 3, unnamed, takes scans that end
// with 0x1D and puts the scan in place of each x in place of the 0x1D: n
// bytes of x make about n * n.
const std::string kRules =
    "[[rule]]\nname = \"Part numbers\"\nstarts-with = 'PN'\n"
    "expression = 'Part: {TruncateFromBeginning({DecodedData()},2)}'\n"
    "[[rule]]\nname = \"QR\"\nsymbologies = [\"QRCode\"]\nexpression = '[{DecodedData()}]'\n"
    "[[rule]]\nends-with = '\\x1D'\n"
    "expression = '{Substitute({DecodedData()},{EscapeCharacter(1D)},{Substitute({DecodedData()},x,{DecodedData()})})}'\n";
// The line of a [[test]] table right after the rules.
const size_t kTestLine = static_cast<size_t>(std::count(kRules.begin(), kRules.end(), '\n')) + 1;

struct SFile {
    bool bRead = false;
    CNrvRuleSet set;
    std::vector<TNrvRuleTest> tests;
    std::vector<TNrvRulesError> errors;
    std::string Errors() const
    {
        std::string shown;
        for (const TNrvRulesError& error : errors)
            shown += NrvFormatRulesError("t.toml", error);
        return shown;
    }
};

SFile Read(const std::string& text)
{
    SFile file;
    file.bRead = NrvReadRules(text.data(), text.size(), &file.set, &file.tests, &file.errors);
    return file;
}

TEST(RuleTests, ReadsEachTestWithItsExpectation)
{
    const std::string tests =
        "[[test]]\nscan = 'PN42'\noutput = 'Part: 42'\n"
        // keys in any order, a symbology in any case, bytes that are not text
        "[[test]]\nrule = \"QR\"\nsymbology = 'qrCODE'\nscan = '\\x00\\xFF\\r\\n\\t\\\\'\n"
        "[[test]]\nscan = ''\nsymbology = 47\nuntouched = true\n"  // the last symbology number
        "[[test]]\nscan = \"x\\u00e9\"\nrule = 3\n"                 // TOML's own escape
        "[[test]]\nscan = 'PN'\nfails = 'NRV_ERR_TEXT_TOO_LONG'\nsymbology = 0\n"
        "[[test]]\nscan = '\\x1D'\noutput = '''\n\\x1D\\x1D'''\n";  // the newline after ''' is not in it
    const SFile file = Read(kRules + tests);
    ASSERT_TRUE(file.bRead) << file.Errors();
    struct Row {
        size_t nLine;
        std::string scan;
        int nSymbology;
        TNrvRuleTest::EExpect expect;
        std::string output;
        size_t nRule;
        NRVRESULT nCode;
    } rows[] = {
        {kTestLine, "PN42", 0, TNrvRuleTest::kOutput, "Part: 42", 0, 0},
        {kTestLine + 3, std::string("\0\xFF\r\n\t\\", 6), kNrvScanSymbologyQRCode, TNrvRuleTest::kRule, "", 1, 0},
        {kTestLine + 7, "", 47, TNrvRuleTest::kUntouched, "", 0, 0},
        {kTestLine + 11, "x\xC3\xA9", 0, TNrvRuleTest::kRule, "", 2, 0},
        {kTestLine + 14, "PN", 0, TNrvRuleTest::kFails, "", 0, NRV_ERR_TEXT_TOO_LONG},
        {kTestLine + 18, "\x1D", 0, TNrvRuleTest::kOutput, "\x1D\x1D", 0, 0},
    };
    ASSERT_EQ(file.tests.size(), std::size(rows));
    for (size_t i = 0; i < file.tests.size(); ++i) {
        SCOPED_TRACE(i + 1);
        const TNrvRuleTest& test = file.tests[i];
        EXPECT_EQ(test.nLine, rows[i].nLine);
        EXPECT_EQ(test.scan, rows[i].scan);
        EXPECT_EQ(test.symbology, rows[i].nSymbology);
        EXPECT_EQ(test.expect, rows[i].expect);
        EXPECT_EQ(test.output, rows[i].output);
        EXPECT_EQ(test.expect == TNrvRuleTest::kRule ? test.nRule : 0, rows[i].nRule);
        EXPECT_EQ(test.expect == TNrvRuleTest::kFails ? test.nCode : 0, rows[i].nCode);
    }
    // Read for its rules alone, the file's tests are still checked.
    CNrvRuleSet set;
    std::vector<TNrvRulesError> errors;
    const std::string broken = kRules + tests + "[[test]]\nscan = 'x'\n";
    EXPECT_FALSE(NrvReadRules(broken.data(), broken.size(), &set, &errors));
}

TEST(RuleTests, EveryMistakeAtItsLineAndColumn)
{
    const size_t L = kTestLine;
    std::string twelve;  // rules r1 to r12, 3 lines each
    for (int i = 1; i <= 12; ++i)
        twelve += "[[rule]]\nname='r" + std::to_string(i) + "'\nexpression='a'\n";
    struct Row {
        const char* pszName;
        std::string text;
        size_t nLine, nColumn;
        const char* pszMessage;  // a piece of the message
    } rows[] = {
        {"two expectations, the later one marked", kRules + "[[test]]\nscan = 'x'\nrule = 1\noutput = 'y'\n", L + 3,
         10, "test 1 has two expectations, 'rule' and 'output': give one"},
        {"no expectation", kRules + "[[test]]\nscan = 'x'\n", L, 1,
         "test 1 has no expectation: give one of 'output', 'rule', 'untouched = true' or 'fails'"},
        {"no scan", kRules + "[[test]]\nuntouched = true\n", L, 1, "test 1 has no 'scan'"},
        {"second test", kRules + "[[test]]\nscan = 'x'\nuntouched = true\n[[test]]\nscan = 'y'\n", L + 3, 1,
         "test 2 has no expectation"},
        {"bad escape", kRules + "[[test]]\nscan = 'x'\noutput = 'x\\'\n", L + 2, 10,
         "test 1: 'output' 'x\\': a backslash ends the text"},
        {"unknown symbology", kRules + "[[test]]\nscan = 'x'\nsymbology = 'QR'\nuntouched = true\n", L + 2, 13,
         "test 1: unknown symbology 'QR' (see nrv-edit --help for the names)"},
        {"symbology past the last", kRules + "[[test]]\nscan = 'x'\nsymbology = 48\nuntouched = true\n", L + 2, 13,
         "unknown symbology 48 (numbers run from 0 to 47)"},
        {"symbology below 0", kRules + "[[test]]\nscan = 'x'\nsymbology = -1\nuntouched = true\n", L + 2, 13,
         "unknown symbology -1"},
        {"unknown rule name", kRules + "[[test]]\nscan = 'x'\nrule = 'Part number'\n", L + 2, 8,
         "test 1: no rule is named 'Part number'; the rules are 1 'Part numbers', 2 'QR', 3 (unnamed)"},
        {"an empty name is no rule's", kRules + "[[test]]\nscan = 'x'\nrule = ''\n", L + 2, 8, "no rule is named ''"},
        {"ten rules listed at most", twelve + "[[test]]\nscan='x'\nrule='r13'\n", 39, 6,
         "9 'r9', 10 'r10' and 2 more"},
        {"a name two rules share", twelve + "[[rule]]\nname='r2'\nexpression='a'\n[[test]]\nscan=''\nrule='r2'\n", 42,
         6, "rules 2 and 13 are both named 'r2': give the rule's number instead"},
        {"a name shown escaped", "[[rule]]\nname=\"a\\u001b\"\nexpression='a'\n[[test]]\nscan='x'\nrule=\"\\u0007\"\n",
         6, 6, "no rule is named '\\x07'; the rules are 1 'a\\x1B'"},
        {"rule 0", kRules + "[[test]]\nscan = 'x'\nrule = 0\n", L + 2, 8, "there is no rule 0; the file has 3 rules"},
        {"rule past the last", kRules + "[[test]]\nscan = 'x'\nrule = 4\n", L + 2, 8, "there is no rule 4"},
        {"unknown code name", kRules + "[[test]]\nscan = 'x'\nfails = 'NRV_ERR_RANGE'\n", L + 2, 9,
         "test 1: unknown result code 'NRV_ERR_RANGE' (the error codes are NRV_ERR_INVALID_PARAMETER, "},
        {"a success is no failure", kRules + "[[test]]\nscan = 'x'\nfails = 'NRV_OK_NOT_TRIGGERED'\n", L + 2, 9,
         "'fails' takes an error code, and NRV_OK_NOT_TRIGGERED is not one"},
        {"untouched = false", kRules + "[[test]]\nscan = 'x'\nuntouched = false\n", L + 2, 13,
         "'untouched' can only be true (give another expectation instead), not false"},
        {"[test] instead of [[test]]", kRules + "[test]\nscan = 'x'\nuntouched = true\n", L, 1,
         "'test' must be tables written [[test]], not a table"},
        {"a test that is not a table", "test = ['x']\n" + kRules, 1, 9, "test 1 must be a table, not a string"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        SFile file;
        ASSERT_EQ(file.set.AddRule("kept", "old", nullptr), NRV_OK);
        file.tests.resize(1);
        file.tests[0].scan = "old";
        file.bRead = NrvReadRules(row.text.data(), row.text.size(), &file.set, &file.tests, &file.errors);
        EXPECT_FALSE(file.bRead);
        ASSERT_EQ(file.errors.size(), 1u) << file.Errors();
        EXPECT_EQ(file.errors[0].nLine, row.nLine);
        EXPECT_EQ(file.errors[0].nColumn, row.nColumn);
        EXPECT_NE(file.errors[0].message.find(row.pszMessage), std::string::npos) << file.errors[0].message;
        // A file with errors changes nothing.
        EXPECT_STREQ(file.set.GetRuleName(0), "old");
        ASSERT_EQ(file.tests.size(), 1u);
        EXPECT_EQ(file.tests[0].scan, "old");
    }
}

TEST(RuleTests, EachRunPassesOrFailsOnItsOutcome)
{
    struct Row {
        const char* pszTest;  // the [[test]] table's keys
        bool bPassed;
        NRVRESULT nCode;
        size_t nRule;
        std::string output;
    } rows[] = {
        {"scan='PN42'\noutput='Part: 42'", true, NRV_OK, 0, "Part: 42"},
        {"scan='PN42'\noutput='Part: 42 '", false, NRV_OK, 0, "Part: 42"},
        // No rule takes it: the output is the scan as it was.
        {"scan='AB'\noutput='AB'", true, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "AB"},
        {"scan='PN1'\nuntouched=true", false, NRV_OK, 0, "Part: 1"},
        // A failed edit leaves the scan as it was, yet is neither an output nor a rule that applied.
        {"scan='PN'\noutput='PN'", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nrule=1", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nuntouched=true", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nfails='NRV_ERR_OUT_OF_RANGE'", true, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nfails='NRV_ERR_SYNTAX'", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        // The symbology is the test's.
        {"scan='PN5'\nsymbology='QRCode'\nrule='QR'", false, NRV_OK, 0, "Part: 5"},
        {"scan='ab'\nrule='QR'", false, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "ab"},
        {"scan='\\x00\\xFF'\nsymbology='qrcode'\noutput='[\\x00\\xFF]'", true, NRV_OK, 1, std::string("[\0\xFF]", 4)},
        {"scan='x\\x1D'\noutput='xx\\x1D\\x1D'", true, NRV_OK, 2, "xx\x1D\x1D"},
    };
    std::string text = kRules;
    for (const Row& row : rows)
        text += std::string("[[test]]\n") + row.pszTest + "\n";
    SFile file = Read(text);
    ASSERT_TRUE(file.bRead) << file.Errors();
    ASSERT_EQ(file.tests.size(), std::size(rows));
    for (size_t i = 0; i < file.tests.size(); ++i) {
        SCOPED_TRACE(rows[i].pszTest);
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&file.set, file.tests[i]);
        EXPECT_EQ(outcome.bPassed, rows[i].bPassed);
        EXPECT_EQ(outcome.nCode, rows[i].nCode);
        EXPECT_EQ(outcome.nRule, rows[i].nRule);
        EXPECT_EQ(outcome.output, rows[i].output);
    }
}

// 4200 bytes of x and a 0x1D make rule 3 build 4200 * 4201 bytes, more
// than the reader's largest text (16 MiB): the run says so as the edit
// would, and succeeds once the rule's profile has no limit.
TEST(RuleTests, RunsUnderTheLimitsOfTheRules)
{
    SFile file = Read(kRules + "[[test]]\nscan='" + std::string(4200, 'x') + "\\x1D'\nfails='NRV_ERR_TEXT_LIMIT'\n");
    ASSERT_TRUE(file.bRead) << file.Errors();
    const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&file.set, file.tests.at(0));
    EXPECT_TRUE(outcome.bPassed) << outcome.nCode;
    EXPECT_EQ(outcome.nRule, 2u);
    EXPECT_EQ(outcome.output, file.tests[0].scan);
    file.set.GetRuleProfile(2)->WriteLimitMaximumTextSize(0);
    EXPECT_EQ(NrvRunRuleTest(&file.set, file.tests[0]).nCode, NRV_OK);
}

// The failure line, with a caret under the first byte of the text got that
// differs from the one expected.
TEST(RuleTests, FailuresAsShown)
{
    ASSERT_EQ(kTestLine, 12u);  // the line the rows name
    struct Row {
        const char* pszFile;
        std::string test;
        std::string shown;  // '@' marks where the caret of a second line points
    } rows[] = {
        {"r.toml", "scan='PN42'\noutput='Part: 43'",
         "r.toml:12: test 1: expected \"Part: 43\" got \"Part: 4@2\" from rule 1 (Part numbers)"},
        {"r.toml", "scan='PN42'\noutput='Part: 42!'",  // got is the shorter: its closing quote
         "r.toml:12: test 1: expected \"Part: 42!\" got \"Part: 42@\" from rule 1 (Part numbers)"},
        // A differing escaped byte: its backslash; columns are characters, a file name's control bytes escaped.
        {"\xC3\xA9t\xC3\xA9\x1B.toml", "scan='\\t\\\\a\\x01b'\noutput='\\t\\\\a\\x02b'",
         "\xC3\xA9t\xC3\xA9\\x1B.toml:12: test 1: expected \"\\t\\\\a\\x02b\" got \"\\t\\\\a@\\x01b\" untouched"},
        {"f", "scan='PN'\noutput='x'",
         "f:12: test 1: expected \"x\" got NRV_ERR_OUT_OF_RANGE (-43) from rule 1 (Part numbers)"},
        {"f", "scan='\\x00\"\\xFF'\nsymbology=16\nrule='QR'", "f:12: test 1: expected rule 2 (QR) got \"\\x00\"\\xFF\" untouched"},
        {"f", "scan='PN1'\nuntouched=true", "f:12: test 1: expected untouched got \"Part: 1\" from rule 1 (Part numbers)"},
        {"f", "scan='ab'\nfails='NRV_ERR_SYNTAX'", "f:12: test 1: expected NRV_ERR_SYNTAX got \"ab\" untouched"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.test);
        SFile file = Read(kRules + "[[test]]\n" + row.test + "\n");
        ASSERT_TRUE(file.bRead) << file.Errors();
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&file.set, file.tests.at(0));
        EXPECT_FALSE(outcome.bPassed);
        std::string expected = row.shown + "\n";
        const size_t nAt = expected.find('@');
        if (nAt != std::string::npos) {
            expected.erase(nAt, 1);
            const std::string before = expected.substr(0, nAt);
            const auto nColumns = std::count_if(before.begin(), before.end(),
                                                [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
            expected += std::string(static_cast<size_t>(nColumns), ' ') + "^\n";
        }
        EXPECT_EQ(NrvFormatRuleTestFailure(row.pszFile, 1, file.tests[0], outcome, file.set), expected);
    }
}

}  // namespace
