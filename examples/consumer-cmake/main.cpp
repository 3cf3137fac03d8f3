// Sets up a profile that upper-cases Code 128 scans of at least four bytes
// and strips the scanner's trailer, runs it over a few scans, and prints what
// each edit produced and returned. Also shows the code of a bad expression.
#include <cstdio>
#include <cstring>

#include "NrvDataEditingProfile.h"

namespace {

struct TScan {
    ENrvScanSymbologyID nSymbology;
    const char* pszData;
    bool bTriggers;  // whether the profile's triggers accept the scan
};

// Prints bytes below 0x20 and from 0x7F up as \xNN so the trailer shows.
void PrintBytes(const char* pData, size_t nLength)
{
    for (size_t i = 0; i < nLength; ++i) {
        unsigned char c = static_cast<unsigned char>(pData[i]);
        if (c < 0x20 || c >= 0x7F)
            printf("\\x%02X", c);
        else
            putchar(c);
    }
}

}  // namespace

int main()
{
    CNrvDataEditingProfile profile;
    const char* pszExpression = "{MakeUpperCase({DecodedDataWithoutTrailer()})}";
    NRVRESULT result = profile.Parse(pszExpression);
    if (result < 0) {
        fprintf(stderr, "cannot parse %s: code %lld\n", pszExpression, static_cast<long long>(result));
        return 1;
    }
    profile.AddTriggerSymbology(kNrvScanSymbologyCode128);
    profile.WriteTriggerMinimumSize(4);

    const TScan scans[] = {
        {kNrvScanSymbologyCode128, "ab-1234\r\n", true},
        {kNrvScanSymbologyCode128, "xy9", false},          // too short
        {kNrvScanSymbologyQRCode, "qr-5678\r\n", false},  // other symbology
    };
    int nFailures = 0;
    for (const TScan& scan : scans) {
        char szData[64];
        size_t nLength = strlen(scan.pszData);
        memcpy(szData, scan.pszData, nLength + 1);
        TNrvScanDecodedData record = {scan.nSymbology, {0, nullptr}, {nLength, szData}};
        result = profile.Edit(&record);
        PrintBytes(scan.pszData, nLength);
        printf(" -> ");
        PrintBytes(record.String.pValue, record.String.nLength);
        printf("  (code %lld)\n", static_cast<long long>(result));
        // A scan the triggers reject must come back untouched.
        if (!scan.bTriggers && (result != NRV_OK_NOT_TRIGGERED || record.String.pValue != szData))
            ++nFailures;
    }

    // A parse failure is reported by Parse and then by every Edit.
    CNrvDataEditingProfile broken;
    NRVRESULT parseResult = broken.Parse("{Frobnicate({DecodedData()})}");
    char szData[] = "AB1234";
    TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {6, szData}};
    result = broken.Edit(&record);
    printf("unknown command: Parse code %lld, Edit code %lld\n", static_cast<long long>(parseResult),
           static_cast<long long>(result));
    if (parseResult != NRV_ERR_UNKNOWN_COMMAND || result != parseResult)
        ++nFailures;
    return nFailures == 0 ? 0 : 1;
}
