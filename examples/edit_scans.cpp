// Configures a profile with an expression and a trigger, edits a few scans
// and prints what each edit returned.
#include <cstdio>
#include <cstring>

#include "NrvDataEditingProfile.h"

int main()
{
    CNrvDataEditingProfile profile;
    const char* pszExpression = "Code: {TruncateFromBeginning({DecodedData()},2)}";
    NRVRESULT result = profile.Parse(pszExpression);
    if (result < 0) {
        fprintf(stderr, "cannot parse %s: %lld\n", pszExpression, static_cast<long long>(result));
        return 1;
    }
    profile.WriteTriggerStartsBy("AB");  // only scans starting with AB are edited

    const char* const scans[] = {"AB1234", "XY5678", "AB"};
    for (const char* pszScan : scans) {
        char szData[64];
        strcpy(szData, pszScan);
        TNrvScanDecodedData record = {kNrvScanSymbologyCode128, {0, nullptr}, {strlen(szData), szData}};
        result = profile.Edit(&record);
        printf("%-8s -> %.*s (code %lld)\n", pszScan, static_cast<int>(record.String.nLength), record.String.pValue,
               static_cast<long long>(result));
    }
    return 0;
}
