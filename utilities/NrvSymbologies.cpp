#include "NrvSymbologies.h"

#include <cstring>
#include <strings.h>

namespace {

// Indexed by identifier; kept in the enumeration's order.
const char* const kNames[] = {
    "NotSpecified", "AustraliaPost", "Aztec", "BooklandEan", "BritishPost", "CanadaPost", "Chinese2of5",
    "Codabar", "CodablockA", "CodablockF", "Code11", "Code39", "Code39Extended", "Code39Trioptic", "Code93",
    "Code128", "DataMatrix", "DutchPost", "Ean8", "Ean13", "Ean128", "Ean128Irregular", "EanUccCompositeAB",
    "EanUccCompositeC", "Gs1Databar", "Gs1DatabarLimited", "Gs1DatabarExpanded", "Interleaved2of5", "Isbt128",
    "JapanPost", "Matrix2of5", "Maxicode", "Msi", "Pdf417", "Pdf417Micro", "Planet", "Plessey", "Postnet",
    "QRCode", "Standard2of5", "Telepen", "Tlc39", "UpcA", "UpcE0", "UpcE1", "UspsIntelligentMail",
    "DirectPartMarking", "HanXin",
};
static_assert(sizeof(kNames) / sizeof(kNames[0]) == kNrvScanSymbologyLastSymbologyID,
              "one name per symbology identifier");

}  // namespace

const char* NrvSymbologyName(int nId)
{
    return nId >= 0 && nId < kNrvScanSymbologyLastSymbologyID ? kNames[nId] : nullptr;
}

bool NrvParseSymbology(const char* pszText, ENrvScanSymbologyID* pId)
{
    if (pszText[0] >= '0' && pszText[0] <= '9') {
        int nId = 0;
        for (const char* p = pszText; *p != '\0'; ++p) {
            if (*p < '0' || *p > '9')
                return false;
            nId = nId * 10 + (*p - '0');
            if (nId >= kNrvScanSymbologyLastSymbologyID)
                return false;
        }
        *pId = static_cast<ENrvScanSymbologyID>(nId);
        return true;
    }
    for (int nId = 0; nId < kNrvScanSymbologyLastSymbologyID; ++nId) {
        if (strcasecmp(pszText, kNames[nId]) == 0) {
            *pId = static_cast<ENrvScanSymbologyID>(nId);
            return true;
        }
    }
    return false;
}
