#ifndef NRV_UTILITIES_H
#define NRV_UTILITIES_H

#include <cstdint>
#include <cstring>

#include "NrvScanTypes.h"

class CNrvUtilities {
public:
    // Copies nLength bytes of pszSource (zero bytes included) into a new
    // buffer of nLength + 1 bytes allocated with new[], ends it with a zero
    // byte and stores it in *ppszDestination. With nLength 0 the source is
    // not read and may be null. Allocation failure throws std::bad_alloc.
    // Every value record's text is made here, several times per edit, so it
    // is inline.
    static NRVRESULT AllocateAndCopy(char** ppszDestination, const char* pszSource, size_t nLength)
    {
        if (ppszDestination == nullptr || (pszSource == nullptr && nLength != 0))
            return NRV_ERR_INVALID_PARAMETER;
        char* pszCopy = new char[nLength + 1];
        CopyBytes(pszCopy, pszSource, nLength);
        pszCopy[nLength] = '\0';
        *ppszDestination = pszCopy;
        return NRV_OK;
    }

    // memcpy, with copies of up to 16 bytes (literals, markers, found
    // pieces) done in place: for those the call costs more than the copy.
    // Two overlapping moves cover every length of a size class.
    static void CopyBytes(char* pDestination, const char* pSource, size_t nLength)
    {
        if (nLength > 16) {
            memcpy(pDestination, pSource, nLength);
        } else if (nLength >= 8) {
            uint64_t nFirst, nLast;
            memcpy(&nFirst, pSource, 8);
            memcpy(&nLast, pSource + nLength - 8, 8);
            memcpy(pDestination, &nFirst, 8);
            memcpy(pDestination + nLength - 8, &nLast, 8);
        } else if (nLength >= 4) {
            uint32_t nFirst, nLast;
            memcpy(&nFirst, pSource, 4);
            memcpy(&nLast, pSource + nLength - 4, 4);
            memcpy(pDestination, &nFirst, 4);
            memcpy(pDestination + nLength - 4, &nLast, 4);
        } else if (nLength != 0) {
            const char cFirst = pSource[0], cMiddle = pSource[nLength / 2], cLast = pSource[nLength - 1];
            pDestination[0] = cFirst;
            pDestination[nLength / 2] = cMiddle;
            pDestination[nLength - 1] = cLast;
        }
    }
};

#endif  // NRV_UTILITIES_H
