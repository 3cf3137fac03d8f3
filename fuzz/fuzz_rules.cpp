// Any bytes as a rules file. Reading must either fill the set with at least
// one rule and report nothing, or leave the set as it was and report at
// least one error, each at a line and column of the text; every error can
// be formatted. The rules read then edit a few fixed scans under the
// engine's usual guarantees.
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CNrvFuzzAllocationLimit limit;
    CNrvRuleSet set;
    NRV_FUZZ_CHECK(set.AddRule("kept", "before", nullptr) == NRV_OK);
    std::vector<TNrvRulesError> errors;
    bool bRead = false;
    try {
        bRead = NrvReadRules(reinterpret_cast<const char*>(pData), nSize, &set, &errors);
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(set.GetRuleCount() == 1 && std::strcmp(set.GetRuleName(0), "before") == 0);
        return 0;
    }
    if (!bRead) {
        NRV_FUZZ_CHECK(!errors.empty());
        NRV_FUZZ_CHECK(set.GetRuleCount() == 1 && std::strcmp(set.GetRuleName(0), "before") == 0);
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
    return 0;
}
