// An expression and a scan, both from the input: the bytes before the first
// zero byte are the expression, the bytes after it the scan (zero bytes
// included). The scan lies in a buffer of exactly its length, so any read
// past it is reported. Every edit must answer with a known code, leave the
// record alone on failure, hand back a zero-terminated buffer of the length
// it reports on success, and do the same again for the same scan. The
// edited data is then edited once more in place: the record then points at
// the profile's own buffer. The diagnostics of the same expression and scan
// must report the very codes and output of Parse and Edit. The profile
// enables every command set, so the GS1 commands are reached too.
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "NrvDataEditingProfile.h"
#include "NrvDiagnostics.h"

namespace {

struct TEdit {
    NRVRESULT result;
    std::string text;
    bool bOutOfMemory;
};

TEdit EditOnce(CNrvDataEditingProfile& profile, const uint8_t* pScan, size_t nScan)
{
    // Exactly nScan bytes; a 0-byte scan comes with a null pointer.
    std::vector<char> scan(pScan, pScan + nScan);
    char* const pValue = nScan != 0 ? scan.data() : nullptr;
    TNrvScanDecodedData record = {kNrvScanSymbologyDataMatrix, {0, nullptr}, {nScan, pValue}};
    TEdit edit = {NRV_OK, std::string(), false};
    try {
        edit.result = profile.Edit(&record);
    } catch (const std::bad_alloc&) {
        edit.bOutOfMemory = true;
        NRV_FUZZ_CHECK(record.String.pValue == pValue && record.String.nLength == nScan);
        return edit;
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(edit.result));
    if (edit.result < 0 || edit.result == NRV_OK_NOT_TRIGGERED) {
        NRV_FUZZ_CHECK(record.String.pValue == pValue && record.String.nLength == nScan);
        NRV_FUZZ_CHECK(nScan == 0 || std::memcmp(scan.data(), pScan, nScan) == 0);
        return edit;
    }
    NRV_FUZZ_CHECK(record.String.pValue != nullptr);
    NRV_FUZZ_CHECK(record.String.pValue[record.String.nLength] == '\0');
    edit.text.assign(record.String.pValue, record.String.nLength);

    // Once more, from the profile's own buffer.
    try {
        const NRVRESULT again = profile.Edit(&record);
        NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(again));
        NRV_FUZZ_CHECK(record.String.pValue != nullptr && record.String.pValue[record.String.nLength] == '\0');
        if (again < 0)
            NRV_FUZZ_CHECK(std::string(record.String.pValue, record.String.nLength) == edit.text);
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(std::string(record.String.pValue, record.String.nLength) == edit.text);
    }
    return edit;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    const uint8_t* const pZero = static_cast<const uint8_t*>(std::memchr(pData, 0, nSize));
    const size_t nExpression = pZero != nullptr ? static_cast<size_t>(pZero - pData) : nSize;
    const std::string expression(reinterpret_cast<const char*>(pData), nExpression);
    const uint8_t* const pScan = pZero != nullptr ? pZero + 1 : pData + nSize;
    const size_t nScan = static_cast<size_t>(pData + nSize - pScan);

    CNrvFuzzAllocationLimit limit;
    CNrvDataEditingProfile profile;
    NRV_FUZZ_CHECK(profile.EnableCommandSets(kNrvCommandSetsAll) == NRV_OK);
    NRVRESULT parse = NRV_OK;
    try {
        parse = profile.Parse(expression.c_str());
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(profile.Parse("{DecodedData()}") == NRV_OK);
        return 0;
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(parse) && parse != NRV_OK_NOT_TRIGGERED);

    const TEdit first = EditOnce(profile, pScan, nScan);
    if (parse < 0)
        NRV_FUZZ_CHECK(!first.bOutOfMemory && first.result == parse);
    const TEdit second = EditOnce(profile, pScan, nScan);
    NRV_FUZZ_CHECK(first.bOutOfMemory == second.bOutOfMemory);
    NRV_FUZZ_CHECK(first.result == second.result && first.text == second.text);

    try {
        NRV_FUZZ_CHECK(NrvDiagnoseParse(expression.c_str(), kNrvCommandSetsAll).nCode == parse);
        if (!first.bOutOfMemory) {
            const TNrvExplanation explanation =
                NrvExplain(expression.c_str(), reinterpret_cast<const char*>(pScan), nScan, TNrvLimits(),
                           kNrvCommandSetsAll);
            NRV_FUZZ_CHECK(explanation.nCode == first.result);
            NRV_FUZZ_CHECK(explanation.nCode < 0 || explanation.output == first.text);
            NRV_FUZZ_CHECK(explanation.nCode >= 0 || explanation.failure.nCode == explanation.nCode);
            const TNrvDiagnostic failure =
                NrvExplainFailure(expression.c_str(), reinterpret_cast<const char*>(pScan), nScan, TNrvLimits(),
                                  kNrvCommandSetsAll);
            NRV_FUZZ_CHECK(failure.nCode == explanation.nCode && failure.message == explanation.failure.message);
        }
    } catch (const std::bad_alloc&) {
        // The explanation grows the output in a string of its own, which may
        // ask for a larger block than the edit's buffer did.
    }

    // Still usable after whatever happened.
    NRV_FUZZ_CHECK(profile.Parse("{TruncateFromEnd({DecodedData()},-2)}") == NRV_OK);
    const uint8_t kScan[] = {'x', 0, 0x80};
    const TEdit plain = EditOnce(profile, kScan, sizeof kScan);
    NRV_FUZZ_CHECK(plain.result == NRV_OK && plain.text == std::string("x\0\x80", 3));
    return 0;
}
