// Tests kept in a rules file: what the reader makes of [[test]] tables,
// every mistake in them at its line and column, the outcome of each run
// and the ways it is reported.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "NrvDiagnostics.h"
#include "NrvRulesFile.h"

namespace {

// Rule 1 cuts two bytes from scans that start with PN (and fails on "PN"
// itself); rule 2 brackets QR codes; rule 3, unnamed, takes scans that end
// with 0x1D and puts the scan in place of each x in place of the 0x1D: n
// bytes of x make about n * n.
const std::string kRules =
    "[[rule]]\n"
    "name = \"Part numbers\"\n"
    "starts-with = 'PN'\n"
    "expression = 'Part: {TruncateFromBeginning({DecodedData()},2)}'\n"
    "[[rule]]\n"
    "name = \"QR\"\n"
    "symbologies = [\"QRCode\"]\n"
    "expression = '[{DecodedData()}]'\n"
    "[[rule]]\n"
    "ends-with = '\\x1D'\n"
    "expression = '{Substitute({DecodedData()},{EscapeCharacter(1D)},{Substitute({DecodedData()},x,{DecodedData()})})}'\n";
// The line of a [[test]] table right after the rules.
const size_t kTestLine = static_cast<size_t>(std::count(kRules.begin(), kRules.end(), '\n')) + 1;

bool Read(const std::string& text, CNrvRuleSet* pSet, std::vector<TNrvRuleTest>* pTests,
          std::vector<TNrvRulesError>* pErrors)
{
    return NrvReadRules(text.data(), text.size(), pSet, pTests, pErrors);
}

std::string Errors(const std::vector<TNrvRulesError>& errors)
{
    std::string shown;
    for (const TNrvRulesError& error : errors)
        shown += NrvFormatRulesError("t.toml", error);
    return shown;
}

TEST(RuleTests, ReadsEachTestWithItsExpectation)
{
    const std::string text = kRules +
                             "[[test]]\n"
                             "scan = 'PN42'\n"
                             "output = 'Part: 42'\n"
                             "[[test]]\n"                         // keys in any order, symbology in any case
                             "rule = \"QR\"\n"
                             "symbology = 'qrCODE'\n"
                             "scan = '\\x00\\xFF\\r\\n\\t\\\\'\n"  // bytes that are not text
                             "[[test]]\n"
                             "scan = ''\n"
                             "symbology = 47\n"                   // the last symbology number
                             "untouched = true\n"
                             "[[test]]\n"
                             "scan = \"x\\u00e9\"\n"              // TOML's own escape
                             "rule = 3\n"
                             "[[test]]\n"
                             "scan = 'PN'\n"
                             "fails = 'NRV_ERR_OUT_OF_RANGE'\n"
                             "symbology = 0\n"
                             "[[test]]\n"
                             "scan = '\\x1D'\n"
                             "output = \'\'\'\n\\x1D\\x1D\'\'\'\n";  // the newline after the quotes is not in it
    CNrvRuleSet set;
    std::vector<TNrvRuleTest> tests;
    std::vector<TNrvRulesError> errors;
    ASSERT_TRUE(Read(text, &set, &tests, &errors)) << Errors(errors);
    struct Row {
        size_t nLine;
        std::string scan;
        ENrvScanSymbologyID symbology;
        TNrvRuleTest::EExpect expect;
        std::string output;
        size_t nRule;
        NRVRESULT nCode;
    } rows[] = {
        {kTestLine, "PN42", kNrvScanSymbologyNotSpecified, TNrvRuleTest::kOutput, "Part: 42", 0, 0},
        {kTestLine + 3, std::string("\0\xFF\r\n\t\\", 6), kNrvScanSymbologyQRCode, TNrvRuleTest::kRule, "", 1, 0},
        {kTestLine + 7, "", static_cast<ENrvScanSymbologyID>(47), TNrvRuleTest::kUntouched, "", 0, 0},
        {kTestLine + 11, "x\xC3\xA9", kNrvScanSymbologyNotSpecified, TNrvRuleTest::kRule, "", 2, 0},
        {kTestLine + 14, "PN", kNrvScanSymbologyNotSpecified, TNrvRuleTest::kFails, "", 0, NRV_ERR_OUT_OF_RANGE},
        {kTestLine + 18, "\x1D", kNrvScanSymbologyNotSpecified, TNrvRuleTest::kOutput, "\x1D\x1D", 0, 0},
    };
    ASSERT_EQ(tests.size(), std::size(rows));
    for (size_t i = 0; i < tests.size(); ++i) {
        SCOPED_TRACE(i + 1);
        const Row& row = rows[i];
        EXPECT_EQ(tests[i].nLine, row.nLine);
        EXPECT_EQ(tests[i].scan, row.scan);
        EXPECT_EQ(tests[i].symbology, row.symbology);
        EXPECT_EQ(tests[i].expect, row.expect);
        EXPECT_EQ(tests[i].output, row.output);
        if (row.expect == TNrvRuleTest::kRule) {
            EXPECT_EQ(tests[i].nRule, row.nRule);
        }
        if (row.expect == TNrvRuleTest::kFails) {
            EXPECT_EQ(tests[i].nCode, row.nCode);
        }
    }
    // Read for its rules alone, the file's tests are checked, not kept.
    CNrvRuleSet rulesOnly;
    EXPECT_TRUE(NrvReadRules(text.data(), text.size(), &rulesOnly, &errors));
    EXPECT_EQ(rulesOnly.GetRuleCount(), 3u);
    const std::string broken = text + "[[test]]\nscan = 'x'\n";
    EXPECT_FALSE(NrvReadRules(broken.data(), broken.size(), &rulesOnly, &errors));
}

TEST(RuleTests, EveryCodeNameReadsBack)
{
    NRVRESULT code = 0;
    for (size_t i = 0; NrvResultCodeAt(i, &code); ++i) {
        if (code >= 0)
            continue;
        SCOPED_TRACE(NrvResultCodeName(code));
        const std::string text = kRules + "[[test]]\nscan = 'x'\nfails = '" + NrvResultCodeName(code) + "'\n";
        CNrvRuleSet set;
        std::vector<TNrvRuleTest> tests;
        std::vector<TNrvRulesError> errors;
        ASSERT_TRUE(Read(text, &set, &tests, &errors)) << Errors(errors);
        ASSERT_EQ(tests.size(), 1u);
        EXPECT_EQ(tests[0].nCode, code);
    }
}

TEST(RuleTests, EveryMistakeAtItsLineAndColumn)
{
    const size_t L = kTestLine;
    struct Row {
        const char* pszName;
        std::string tests;
        size_t nLine, nColumn;
        const char* pszMessage;  // a piece of the message
        bool bFirst = false;     // tests written before the rules, not after
    } rows[] = {
        {"misspelt key", "[[test]]\nscna = 'x'\nscan = 'x'\nuntouched = true\n", L + 1, 1,
         "test 1: unknown key 'scna' (did you mean 'scan'?)"},
        {"unknown key, no hint", "[[test]]\nscan = 'x'\nuntouched = true\nexpected = 'y'\n", L + 3, 1,
         "unknown key 'expected'"},
        {"two expectations, the later one marked", "[[test]]\nscan = 'x'\nrule = 1\noutput = 'y'\n", L + 3, 10,
         "test 1 has two expectations, 'rule' and 'output': give one"},
        {"no expectation", "[[test]]\nscan = 'x'\nsymbology = 'QRCode'\n", L, 1,
         "test 1 has no expectation: give one of 'output', 'rule', 'untouched = true' or 'fails'"},
        {"no scan", "[[test]]\nuntouched = true\n", L, 1, "test 1 has no 'scan'"},
        {"second test", "[[test]]\nscan = 'x'\nuntouched = true\n[[test]]\nscan = 'y'\n", L + 3, 1,
         "test 2 has no expectation"},
        {"scan not a string", "[[test]]\nscan = 12\nuntouched = true\n", L + 1, 8,
         "test 1: 'scan' must be a string, not an integer"},
        {"bad escape in the scan", "[[test]]\nscan = 'ab\\x1'\nuntouched = true\n", L + 1, 8,
         "test 1: 'scan' 'ab\\x1': "},
        {"backslash ends the output", "[[test]]\nscan = 'x'\noutput = 'x\\'\n", L + 2, 10,
         "test 1: 'output' 'x\\': a backslash ends the text"},
        {"unknown symbology", "[[test]]\nscan = 'x'\nsymbology = 'QR'\nuntouched = true\n", L + 2, 13,
         "test 1: unknown symbology 'QR' (see nrv-edit --help for the names)"},
        {"symbology number past the last", "[[test]]\nscan = 'x'\nsymbology = 48\nuntouched = true\n", L + 2, 13,
         "unknown symbology 48 (numbers run from 0 to 47)"},
        {"negative symbology number", "[[test]]\nscan = 'x'\nsymbology = -1\nuntouched = true\n", L + 2, 13,
         "unknown symbology -1"},
        {"symbology of the wrong type", "[[test]]\nscan = 'x'\nsymbology = ['QRCode']\nuntouched = true\n", L + 2,
         13, "'symbology' is a name or a number, not an array"},
        {"unknown rule name: the rules are listed", "[[test]]\nscan = 'x'\nrule = 'Part number'\n", L + 2, 8,
         "test 1: no rule is named 'Part number'; the rules are 1 'Part numbers', 2 'QR', 3 (unnamed)"},
        {"an empty name is no rule's", "[[test]]\nscan = 'x'\nrule = ''\n", L + 2, 8, "no rule is named ''"},
        {"rule 0", "[[test]]\nscan = 'x'\nrule = 0\n", L + 2, 8, "there is no rule 0; the file has 3 rules"},
        {"rule past the last", "[[test]]\nscan = 'x'\nrule = 4\n", L + 2, 8, "there is no rule 4; the file has 3 rules"},
        {"rule of the wrong type", "[[test]]\nscan = 'x'\nrule = true\n", L + 2, 8,
         "'rule' is a rule's name or its number, not a boolean"},
        {"unknown code name", "[[test]]\nscan = 'x'\nfails = 'NRV_ERR_RANGE'\n", L + 2, 9,
         "test 1: unknown result code 'NRV_ERR_RANGE' (the error codes are NRV_ERR_INVALID_PARAMETER, "},
        {"a success is no failure", "[[test]]\nscan = 'x'\nfails = 'NRV_OK_NOT_TRIGGERED'\n", L + 2, 9,
         "'fails' takes an error code, and NRV_OK_NOT_TRIGGERED is not one"},
        {"a code's number", "[[test]]\nscan = 'x'\nfails = -43\n", L + 2, 9,
         "'fails' is a code's name such as \"NRV_ERR_OUT_OF_RANGE\", not an integer"},
        {"untouched = false", "[[test]]\nscan = 'x'\nuntouched = false\n", L + 2, 13,
         "'untouched' can only be true (give another expectation instead), not false"},
        {"untouched = 1", "[[test]]\nscan = 'x'\nuntouched = 1\n", L + 2, 13, "can only be true"},
        {"[test] instead of [[test]]", "[test]\nscan = 'x'\nuntouched = true\n", L, 1,
         "'test' must be tables written [[test]], not a table"},
        {"a test that is not a table", "test = ['x']\n", 1, 9, "test 1 must be a table, not a string", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvRuleSet set;
        ASSERT_EQ(set.AddRule("kept", "old", nullptr), NRV_OK);
        std::vector<TNrvRuleTest> tests(1);
        tests[0].scan = "old";
        std::vector<TNrvRulesError> errors;
        EXPECT_FALSE(Read(row.bFirst ? row.tests + kRules : kRules + row.tests, &set, &tests, &errors));
        ASSERT_EQ(errors.size(), 1u) << Errors(errors);
        EXPECT_EQ(errors[0].nLine, row.nLine);
        EXPECT_EQ(errors[0].nColumn, row.nColumn);
        EXPECT_NE(errors[0].message.find(row.pszMessage), std::string::npos) << errors[0].message;
        // A file with errors changes nothing.
        EXPECT_EQ(set.GetRuleCount(), 1u);
        ASSERT_EQ(tests.size(), 1u);
        EXPECT_EQ(tests[0].scan, "old");
    }
}

TEST(RuleTests, NamesThatTwoRulesShareOrThatNoRuleHas)
{
    std::string twelveRules;
    for (int i = 1; i <= 12; ++i)
        twelveRules += "[[rule]]\nname='r" + std::to_string(i) + "'\nexpression='a'\n";
    struct Row {
        const char* pszName;
        std::string text;
        const char* pszMessage;
    } rows[] = {
        {"two rules of one name",
         "[[rule]]\nname='A'\nexpression='a'\n[[rule]]\nname='B'\nexpression='b'\n[[rule]]\nname='A'\nexpression='c'\n"
         "[[test]]\nscan='x'\nrule='A'\n",
         "rules 1 and 3 are both named 'A': give the rule's number instead"},
        {"a name that holds control bytes is shown escaped",
         "[[rule]]\nname=\"a\\u001b[2J\"\nexpression='a'\n[[test]]\nscan='x'\nrule=\"b\\u0007\"\n",
         "no rule is named 'b\\x07'; the rules are 1 'a\\x1B[2J'"},
        {"no more than ten rules listed", twelveRules + "[[test]]\nscan='x'\nrule='r13'\n",
         "9 'r9', 10 'r10' and 2 more"},
        {"no rule at all", "[[test]]\nscan='x'\nrule='A'\n", "no rule is named 'A'; the file has no rules"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvRuleSet set;
        std::vector<TNrvRuleTest> tests;
        std::vector<TNrvRulesError> errors;
        EXPECT_FALSE(Read(row.text, &set, &tests, &errors));
        bool bFound = false;
        for (const TNrvRulesError& error : errors)
            bFound = bFound || error.message.find(row.pszMessage) != std::string::npos;
        EXPECT_TRUE(bFound) << Errors(errors);
    }
}

// One test run, with what the set did to its scan; the outcome is compared
// with a plain Edit of a fresh copy of the scan.
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
        {"scan='PN42'\noutput='Part: 4'", false, NRV_OK, 0, "Part: 42"},
        {"scan='PN42'\noutput='Part: 42 '", false, NRV_OK, 0, "Part: 42"},
        // No rule takes it: the output is the scan as it was.
        {"scan='AB'\noutput='AB'", true, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "AB"},
        {"scan='AB'\nuntouched=true", true, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "AB"},
        {"scan='PN1'\nuntouched=true", false, NRV_OK, 0, "Part: 1"},
        // A failed edit leaves the scan as it was, yet is no output.
        {"scan='PN'\noutput='PN'", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nrule=1", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nfails='NRV_ERR_OUT_OF_RANGE'", true, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN'\nfails='NRV_ERR_SYNTAX'", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        {"scan='PN9'\nfails='NRV_ERR_OUT_OF_RANGE'", false, NRV_OK, 0, "Part: 9"},
        {"scan='PN'\nuntouched=true", false, NRV_ERR_OUT_OF_RANGE, 0, "PN"},
        // The symbology is the test's: the QR rule takes only QR codes.
        {"scan='PN5'\nsymbology='QRCode'\nrule='QR'", false, NRV_OK, 0, "Part: 5"},
        {"scan='ab'\nsymbology='QRCode'\nrule='QR'", true, NRV_OK, 1, "[ab]"},
        {"scan='ab'\nrule='QR'", false, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule, "ab"},
        {"scan='\\x00\\xFF'\nsymbology=16\noutput='\\x00\\xFF'", true, NRV_OK_NOT_TRIGGERED, CNrvRuleSet::kNoRule,
         std::string("\0\xFF", 2)},
        {"scan='\\x00\\xFF'\nsymbology='qrcode'\noutput='[\\x00\\xFF]'", true, NRV_OK, 1,
         std::string("[\0\xFF]", 4)},
        {"scan='x\\x1D'\noutput='xx\\x1D\\x1D'", true, NRV_OK, 2, "xx\x1D\x1D"},
        {"scan='x\\x1D'\noutput='xx\\x1D'", false, NRV_OK, 2, "xx\x1D\x1D"},
    };
    CNrvRuleSet set;
    std::vector<TNrvRuleTest> tests;
    std::vector<TNrvRulesError> errors;
    std::string text = kRules;
    for (const Row& row : rows)
        text += std::string("[[test]]\n") + row.pszTest + "\n";
    ASSERT_TRUE(Read(text, &set, &tests, &errors)) << Errors(errors);
    ASSERT_EQ(tests.size(), std::size(rows));
    for (size_t i = 0; i < tests.size(); ++i) {
        const Row& row = rows[i];
        SCOPED_TRACE(row.pszTest);
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&set, tests[i]);
        EXPECT_EQ(outcome.bPassed, row.bPassed);
        EXPECT_EQ(outcome.nCode, row.nCode);
        EXPECT_EQ(outcome.nRule, row.nRule);
        EXPECT_EQ(outcome.output, row.output);
    }
}

// 4200 bytes of x and a 0x1D make rule 3 build 4200 * 4201 bytes, more
// than the reader's largest text (16 MiB): the run says so as the edit
// would, and succeeds once the rule's profile has no limit.
TEST(RuleTests, RunsUnderTheLimitsOfTheRules)
{
    const std::string scan = std::string(4200, 'x') + "\\x1D";
    const std::string text = kRules + "[[test]]\nscan='" + scan + "'\nfails='NRV_ERR_TEXT_LIMIT'\n";
    CNrvRuleSet set;
    std::vector<TNrvRuleTest> tests;
    std::vector<TNrvRulesError> errors;
    ASSERT_TRUE(Read(text, &set, &tests, &errors)) << Errors(errors);
    ASSERT_EQ(tests.size(), 1u);
    const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&set, tests[0]);
    EXPECT_TRUE(outcome.bPassed) << outcome.nCode;
    EXPECT_EQ(outcome.nRule, 2u);
    EXPECT_EQ(outcome.output, tests[0].scan);  // left as it was
    // Without a limit on the profile, the same edit succeeds.
    set.GetRuleProfile(2)->WriteLimitMaximumTextSize(0);
    EXPECT_EQ(NrvRunRuleTest(&set, tests[0]).nCode, NRV_OK);
}

// A failure in one line, and under it a caret at the first byte of the
// text got that differs from the one expected.
TEST(RuleTests, FailureMarksTheFirstDifference)
{
    ASSERT_EQ(kTestLine, 12u);  // the line the rows name
    struct Row {
        const char* pszName;
        const char* pszFile;
        std::string test;
        std::string line;    // the first line, whole
        std::string marked;  // what the caret points at in that line, and on
    } rows[] = {
        {"differs inside", "r.toml", "scan='PN42'\noutput='Part: 43'",
         "r.toml:12: test 1: expected \"Part: 43\" got \"Part: 42\" from rule 1 (Part numbers)",
         "2\" from rule 1 (Part numbers)"},
        {"differs at the first byte", "r.toml", "scan='PN42'\noutput='part: 42'",
         "r.toml:12: test 1: expected \"part: 42\" got \"Part: 42\" from rule 1 (Part numbers)",
         "Part: 42\" from rule 1 (Part numbers)"},
        {"got is shorter: the closing quote", "r.toml", "scan='PN42'\noutput='Part: 42!'",
         "r.toml:12: test 1: expected \"Part: 42!\" got \"Part: 42\" from rule 1 (Part numbers)",
         "\" from rule 1 (Part numbers)"},
        {"got is longer: the first byte past", "r.toml", "scan='PN42'\noutput='Part: 4'",
         "r.toml:12: test 1: expected \"Part: 4\" got \"Part: 42\" from rule 1 (Part numbers)",
         "2\" from rule 1 (Part numbers)"},
        {"an escaped byte: its backslash", "r.toml", "scan='a\\x01b'\noutput='a\\x02b'",
         "r.toml:12: test 1: expected \"a\\x02b\" got \"a\\x01b\" untouched", "\\x01b\" untouched"},
        {"after escaped bytes", "r.toml", "scan='\\t\\\\ab'\noutput='\\t\\\\aB'",
         "r.toml:12: test 1: expected \"\\t\\\\aB\" got \"\\t\\\\ab\" untouched", "b\" untouched"},
        {"a file name of UTF-8 and control bytes", "\xC3\xA9t\xC3\xA9\x1B.toml", "scan='ab'\noutput='ac'",
         "\xC3\xA9t\xC3\xA9\\x1B.toml:12: test 1: expected \"ac\" got \"ab\" untouched", "b\" untouched"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszName);
        CNrvRuleSet set;
        std::vector<TNrvRuleTest> tests;
        std::vector<TNrvRulesError> errors;
        ASSERT_TRUE(Read(kRules + "[[test]]\n" + row.test + "\n", &set, &tests, &errors)) << Errors(errors);
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&set, tests.at(0));
        ASSERT_FALSE(outcome.bPassed);
        const std::string shown = NrvFormatRuleTestFailure(row.pszFile, 1, tests[0], outcome, set);
        const size_t nEnd = shown.find('\n');
        ASSERT_NE(nEnd, std::string::npos);
        EXPECT_EQ(shown.substr(0, nEnd), row.line);
        const std::string caret = shown.substr(nEnd + 1);
        ASSERT_EQ(caret.find_first_not_of(' '), caret.size() - 2) << caret;
        ASSERT_EQ(caret.substr(caret.size() - 2), "^\n");
        // Columns are characters: count them in the first line.
        size_t nColumn = 0, i = 0;
        for (; i < nEnd && nColumn < caret.size() - 2; ++i)
            nColumn += (static_cast<unsigned char>(shown[i]) & 0xC0) != 0x80 ? 1 : 0;
        while (i < nEnd && (static_cast<unsigned char>(shown[i]) & 0xC0) == 0x80)
            ++i;
        EXPECT_EQ(shown.substr(i, nEnd - i), row.marked);
    }
}

// Sides that are not both texts get no caret line.
TEST(RuleTests, FailureOfOtherExpectationsIsOneLine)
{
    ASSERT_EQ(kTestLine, 12u);  // the line the rows name
    struct Row {
        std::string test;
        std::string shown;
    } rows[] = {
        {"scan='PN'\noutput='x'", "f:12: test 1: expected \"x\" got NRV_ERR_OUT_OF_RANGE (-43) from rule 1 (Part numbers)\n"},
        {"scan='ab'\nrule=3", "f:12: test 1: expected rule 3 got \"ab\" untouched\n"},
        {"scan='ab'\nsymbology='QRCode'\nrule=1",
         "f:12: test 1: expected rule 1 (Part numbers) got \"[ab]\" from rule 2 (QR)\n"},
        {"scan='PN1'\nuntouched=true", "f:12: test 1: expected untouched got \"Part: 1\" from rule 1 (Part numbers)\n"},
        {"scan='ab'\nfails='NRV_ERR_SYNTAX'", "f:12: test 1: expected NRV_ERR_SYNTAX got \"ab\" untouched\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.test);
        CNrvRuleSet set;
        std::vector<TNrvRuleTest> tests;
        std::vector<TNrvRulesError> errors;
        ASSERT_TRUE(Read(kRules + "[[test]]\n" + row.test + "\n", &set, &tests, &errors)) << Errors(errors);
        const TNrvRuleTestOutcome outcome = NrvRunRuleTest(&set, tests.at(0));
        EXPECT_FALSE(outcome.bPassed);
        EXPECT_EQ(NrvFormatRuleTestFailure("f", 1, tests[0], outcome, set), row.shown);
    }
}

TEST(RuleTests, JsonOfEachExpectationAndOutcome)
{
    ASSERT_EQ(kTestLine, 12u);  // the line the rows name
    struct Row {
        std::string test;
        std::string json;
    } rows[] = {
        {"scan='PN42'\noutput='Part: 42'",
         "{\"test\":1,\"line\":12,\"passed\":true,\"scan\":\"PN42\",\"symbology\":\"NotSpecified\","
         "\"expected\":{\"output\":\"Part: 42\"},"
         "\"got\":{\"code\":0,\"name\":\"NRV_OK\",\"rule\":{\"index\":1,\"name\":\"Part numbers\"},"
         "\"output\":\"Part: 42\"}}"},
        {"scan='\\x00\"\\xFF'\nsymbology=16\nrule='QR'",
         "{\"test\":1,\"line\":12,\"passed\":false,\"scan\":\"\\u0000\\\"\\u00ff\",\"symbology\":\"DataMatrix\","
         "\"expected\":{\"rule\":{\"index\":2,\"name\":\"QR\"}},"
         "\"got\":{\"code\":1,\"name\":\"NRV_OK_NOT_TRIGGERED\",\"rule\":null,\"output\":\"\\u0000\\\"\\u00ff\"}}"},
        {"scan='ab'\nuntouched=true",
         "{\"test\":1,\"line\":12,\"passed\":true,\"scan\":\"ab\",\"symbology\":\"NotSpecified\","
         "\"expected\":{\"untouched\":true},"
         "\"got\":{\"code\":1,\"name\":\"NRV_OK_NOT_TRIGGERED\",\"rule\":null,\"output\":\"ab\"}}"},
        {"scan='PN'\nfails='NRV_ERR_OUT_OF_RANGE'",
         "{\"test\":1,\"line\":12,\"passed\":true,\"scan\":\"PN\",\"symbology\":\"NotSpecified\","
         "\"expected\":{\"fails\":\"NRV_ERR_OUT_OF_RANGE\"},"
         "\"got\":{\"code\":-43,\"name\":\"NRV_ERR_OUT_OF_RANGE\",\"rule\":{\"index\":1,\"name\":\"Part numbers\"},"
         "\"output\":\"PN\"}}"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.test);
        CNrvRuleSet set;
        std::vector<TNrvRuleTest> tests;
        std::vector<TNrvRulesError> errors;
        ASSERT_TRUE(Read(kRules + "[[test]]\n" + row.test + "\n", &set, &tests, &errors)) << Errors(errors);
        std::string json;
        NrvAppendRuleTestJson(1, tests.at(0), NrvRunRuleTest(&set, tests[0]), set, &json);
        EXPECT_EQ(json, row.json);
    }
}

}  // namespace
