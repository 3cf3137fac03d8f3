// Any bytes as an expression. Parse must answer with a known code and leave
// the profile able to edit: a failed parse makes Edit refuse with that code
// and leave the record alone; a successful one edits a few fixed scans the
// same way every time. The parser's trace is switched on, so every trace
// line is formatted as well.
#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "FuzzSupport.h"
#include "NrvDataEditingProfile.h"
#include "NrvParsingString.h"

namespace {

void CountTrace(bool, const char* pszLine, void* pContext)
{
    *static_cast<size_t*>(pContext) += std::strlen(pszLine);
}

// Edits a private copy of the scan; returns the code and the edited bytes.
NRVRESULT EditCopy(CNrvDataEditingProfile& profile, const std::string& scan, std::string* pEdited)
{
    char* pCopy = new char[scan.size() + 1];
    std::memcpy(pCopy, scan.data(), scan.size());
    TNrvScanDecodedData record = {kNrvScanSymbologyQRCode, {0, nullptr}, {scan.size(), pCopy}};
    NRVRESULT result = NRV_OK;
    try {
        result = profile.Edit(&record);
    } catch (const std::bad_alloc&) {
        NRV_FUZZ_CHECK(record.String.pValue == pCopy && record.String.nLength == scan.size());
        delete[] pCopy;
        throw;
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(result));
    if (result < 0) {
        NRV_FUZZ_CHECK(record.String.pValue == pCopy && record.String.nLength == scan.size());
        NRV_FUZZ_CHECK(std::memcmp(pCopy, scan.data(), scan.size()) == 0);
        pEdited->clear();
    } else {
        NRV_FUZZ_CHECK(record.String.pValue != nullptr);
        NRV_FUZZ_CHECK(record.String.pValue[record.String.nLength] == '\0');
        pEdited->assign(record.String.pValue, record.String.nLength);
    }
    delete[] pCopy;
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    static size_t s_nTraced = 0;
    static const bool s_bTracing = (CNrvParsingString::SetTraceCallback(&CountTrace, &s_nTraced), true);
    (void)s_bTracing;

    // The expression ends at its first zero byte, as a C string does.
    const std::string expression(reinterpret_cast<const char*>(pData), nSize);
    static const std::string kScans[] = {
        std::string("AB-CD-EF\r\n"),
        std::string("\x00\x01\x7f\x80\xff{x,y}(z)", 12),
        std::string(),
    };

    CNrvFuzzAllocationLimit limit;
    CNrvDataEditingProfile profile;
    NRVRESULT parse = NRV_OK;
    try {
        parse = profile.Parse(expression.c_str());
    } catch (const std::bad_alloc&) {
        return 0;  // only a limit-sized request gets here; the profile is checked by the edit target
    }
    NRV_FUZZ_CHECK(NrvFuzzIsKnownResult(parse) && parse != NRV_OK_NOT_TRIGGERED);

    for (const std::string& scan : kScans) {
        std::string first, second;
        try {
            const NRVRESULT edit = EditCopy(profile, scan, &first);
            if (parse < 0)
                NRV_FUZZ_CHECK(edit == parse);
            // A parsed tree is not changed by a run.
            NRV_FUZZ_CHECK(EditCopy(profile, scan, &second) == edit);
            NRV_FUZZ_CHECK(first == second);
        } catch (const std::bad_alloc&) {
            NRV_FUZZ_CHECK(parse >= 0);
        }
    }

    // A later parse starts from nothing.
    NRV_FUZZ_CHECK(profile.Parse("<{DecodedData()}>") == NRV_OK);
    std::string edited;
    NRV_FUZZ_CHECK(EditCopy(profile, "ab", &edited) == NRV_OK && edited == "<ab>");
    return 0;
}
