// Tests kept in a rules file beside the rules they check, and their runs.
//
//   [[test]]
//   scan = '0036602301467'        # the scan: the escapes \\ \r \n \t \xHH
//   symbology = "UpcA"            # optional: a name in any case, or a number
//   output = '036602301467'       # and exactly one expectation:
//                                 #   output = '...'   what the set makes of the scan
//                                 #   rule = "name"    the rule that takes it (or its number)
//                                 #   untouched = true no rule takes it
//                                 #   fails = "NRV_ERR_OUT_OF_RANGE"  the edit fails so
//
// NrvReadRules (NrvRulesFile.h) reads them with the rules and reports their
// mistakes as it reports every other. A run edits the scan with the set as
// it stands, under the limits its rules' profiles carry, so every front end
// that reads the same file with the same limits gets the same outcomes.
#ifndef NRV_RULE_TESTS_H
#define NRV_RULE_TESTS_H

#include <cstddef>
#include <string>

#include "NrvRuleSet.h"
#include "NrvScanTypes.h"

struct TNrvRuleTest {
    enum EExpect {
        kOutput,     // the set makes output of the scan (the scan itself when no rule takes it)
        kRule,       // rule nRule takes the scan and its edit succeeds
        kUntouched,  // no rule takes the scan
        kFails,      // the edit fails with nCode
    };
    size_t nLine = 0;  // the line of the test's table in the file, from 1
    std::string scan;  // bytes, the escapes decoded
    ENrvScanSymbologyID symbology = kNrvScanSymbologyNotSpecified;
    EExpect expect = kUntouched;
    std::string output;   // kOutput: bytes, the escapes decoded
    size_t nRule = 0;     // kRule: the rule, from 0
    NRVRESULT nCode = 0;  // kFails: a negative code
};

struct TNrvRuleTestOutcome {
    bool bPassed = false;
    NRVRESULT nCode = NRV_OK;             // what the set's Edit returned
    size_t nRule = CNrvRuleSet::kNoRule;  // the rule that took the scan
    std::string output;                   // the scan as the set left it: edited, or as it was
};

// Edits the test's scan, as its symbology, with the set and says whether
// the outcome is the one expected. std::bad_alloc passes through.
TNrvRuleTestOutcome NrvRunRuleTest(CNrvRuleSet* pSet, const TNrvRuleTest& test);

// "rule 2 (Part numbers)", the name escaped as -e writes, or "rule 2".
std::string NrvRuleLabel(const CNrvRuleSet& set, size_t nRule);

// The two sides of a test for a person, texts quoted and escaped as -e
// writes them:
//   expected  "036602301467" | rule 2 (GS1) | untouched | NRV_ERR_OUT_OF_RANGE
//   got       "036602301467" from rule 1 (UPC-A) | "abc" untouched |
//             NRV_ERR_OUT_OF_RANGE (-43) from rule 1 (Part numbers)
std::string NrvDescribeExpected(const TNrvRuleTest& test, const CNrvRuleSet& set);
std::string NrvDescribeOutcome(const TNrvRuleTestOutcome& outcome, const CNrvRuleSet& set);

// "FILE:LINE: test N: expected ... got ...\n" (nTest from 1). When both
// sides are texts, a second line puts a caret under the first byte of the
// one got that differs from the one expected (or under its closing quote
// when it is the shorter).
std::string NrvFormatRuleTestFailure(const char* pszFileName, size_t nTest, const TNrvRuleTest& test,
                                     const TNrvRuleTestOutcome& outcome, const CNrvRuleSet& set);

// One JSON object for a test and its outcome, appended without a newline:
//   {"test":N,"line":L,"passed":true|false,"scan":"...","symbology":"UpcA",
//    "expected":{"output":"..."}|{"rule":R}|{"untouched":true}|{"fails":"NRV_ERR_..."},
//    "got":{"code":C,"name":"NRV_..."|null,"rule":R|null,"output":"..."}}
//   R  {"index":I,"name":"..."}, I from 1
// Strings map each byte to the code point of the same value (NrvJson.h).
void NrvAppendRuleTestJson(size_t nTest, const TNrvRuleTest& test, const TNrvRuleTestOutcome& outcome,
                           const CNrvRuleSet& set, std::string* pOut);

#endif  // NRV_RULE_TESTS_H
