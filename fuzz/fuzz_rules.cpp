// Any bytes as a rules file. Reading must either fill the set with at least
// one rule and report nothing, or leave the set and the tests as they were
// and report at least one error, each at a line and column of the text;
// every error can be formatted. The rules read then edit a few fixed scans
// under the engine's usual guarantees, and the file's own tests run: each
// outcome agrees with a plain edit of its scan and can be shown.
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "NrvRulesFile.h"

namespace {

void EditCopy(CNrvRuleSet& set, const std::string& scan, ENrvScanSymbologyID id)
{
    std::vector<char> copy(scan.begin(), scan.end());
    copy.push_back('\0');
    TNrvScanDecodedData record = {id, {0, nullptr}, {scan.size(), copy.data()}};
    size_t nRule = 0;
    NRVRESULT result = NRV_OK;
    try {
        result = set.Edit(&record, &nRule);
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(record.String.pValue == copy.data() && record.String.nLength == scan.size());
        return;
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(result));
    NRV_FUZZ_CHECK((nRule == CNrvRuleSet::kNoRule) == (result == NRV_OK_NOT_TRIGGERED));
    NRV_FUZZ_CHECK(nRule == CNrvRuleSet::kNoRule || nRule < set.GetRuleCount());
    if (result != NRV_OK) {
        NRV_FUZZ_CHECK(record.String.pValue == copy.data() && record.String.nLength == scan.size());
        NRV_FUZZ_CHECK(std::memcmp(copy.data(), scan.data(), scan.size()) == 0);
    } else {
        NRV_FUZZ_CHECK(record.String.pValue != nullptr && record.String.pValue[record.String.nLength] == '\0');
    }
}

// A test's outcome is the set's Edit of its scan; whether it passed follows
// from the outcome alone.
void RunTest(CNrvRuleSet& set, const TNrvRuleTest& test, size_t nTest)
{
    NRV_FUZZ_CHECK(test.nLine >= 1);
    NRV_FUZZ_CHECK(test.expect != TNrvRuleTest::kRule || test.nRule < set.GetRuleCount());
    NRV_FUZZ_CHECK(test.expect != TNrvRuleTest::kFails || test.nCode < 0);
    TNrvRuleTestOutcome outcome;
    try {
        outcome = NrvRunRuleTest(&set, test);
    } catch (const std::bad_alloc&) {
        return;
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(outcome.nCode));
    NRV_FUZZ_CHECK((outcome.nRule == CNrvRuleSet::kNoRule) == (outcome.nCode == NRV_OK_NOT_TRIGGERED));
    if (outcome.nCode != NRV_OK)
        NRV_FUZZ_CHECK(outcome.output == test.scan);
    if (test.expect == TNrvRuleTest::kOutput)
        NRV_FUZZ_CHECK(outcome.bPassed == (outcome.nCode >= 0 && outcome.output == test.output));
    if (test.expect == TNrvRuleTest::kRule)
        NRV_FUZZ_CHECK(outcome.bPassed == (outcome.nCode >= 0 && outcome.nRule == test.nRule));
    if (test.expect == TNrvRuleTest::kUntouched)
        NRV_FUZZ_CHECK(outcome.bPassed == (outcome.nCode == NRV_OK_NOT_TRIGGERED));
    if (test.expect == TNrvRuleTest::kFails)
        NRV_FUZZ_CHECK(outcome.bPassed == (outcome.nCode == test.nCode));
    try {
        const std::string shown = NrvFormatRuleTestFailure("fuzz.toml", nTest, test, outcome, set);
        NRV_FUZZ_CHECK(shown.compare(0, 10, "fuzz.toml:") == 0 && shown.back() == '\n');
        std::string json;
        NrvAppendRuleTestJson(nTest, test, outcome, set, &json);
        NRV_FUZZ_CHECK(json.front() == '{' && json.back() == '}');
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CNrvFuzzAllocationLimit limit;
    CNrvRuleSet set;
    NRV_FUZZ_CHECK(set.AddRule("kept", "before", nullptr) == NRV_OK);
    std::vector<TNrvRulesError> errors;
    std::vector<TNrvRuleTest> tests(1);
    tests[0].scan = "before";
    bool bRead = false;
    try {
        bRead = NrvReadRules(reinterpret_cast<const char*>(pData), nSize, &set, &tests, &errors);
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(set.GetRuleCount() == 1 && std::strcmp(set.GetRuleName(0), "before") == 0);
        NRV_FUZZ_CHECK(tests.size() == 1 && tests[0].scan == "before");
        return 0;
    }
    if (!bRead) {
        NRV_FUZZ_CHECK(!errors.empty());
        NRV_FUZZ_CHECK(set.GetRuleCount() == 1 && std::strcmp(set.GetRuleName(0), "before") == 0);
        NRV_FUZZ_CHECK(tests.size() == 1 && tests[0].scan == "before");
        for (const TNrvRulesError& error : errors) {
            NRV_FUZZ_CHECK(error.nLine >= 1 && error.nColumn >= 1 && error.nWidth >= 1 && !error.message.empty());
            const std::string shown = NrvFormatRulesError("fuzz.toml", error);
            NRV_FUZZ_CHECK(shown.compare(0, 10, "fuzz.toml:") == 0 && shown.back() == '\n');
        }
        return 0;
    }
    NRV_FUZZ_CHECK(errors.empty() && set.GetRuleCount() >= 1);
    static const std::string kScans[] = {
        std::string("PN1234"),
        std::string("]C101034531200000111719112510ABCD1234\x1D" "2110"),
        std::string("\x00\x01\x7f\x80\xff{x,y}", 10),
        std::string(),
    };
    static const ENrvScanSymbologyID kIds[] = {kNrvScanSymbologyCode128, kNrvScanSymbologyQRCode,
                                               kNrvScanSymbologyNotSpecified};
    for (const std::string& scan : kScans)
        for (ENrvScanSymbologyID id : kIds)
            EditCopy(set, scan, id);
    // A file of many small tests costs one edit each: a few are enough here.
    for (size_t i = 0; i < tests.size() && i < 16; ++i)
        RunTest(set, tests[i], i + 1);
    return 0;
}
