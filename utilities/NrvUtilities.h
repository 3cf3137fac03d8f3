#ifndef NRV_UTILITIES_H
#define NRV_UTILITIES_H

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
        if (nLength != 0)
            memcpy(pszCopy, pszSource, nLength);
        pszCopy[nLength] = '\0';
        *ppszDestination = pszCopy;
        return NRV_OK;
    }
};

#endif  // NRV_UTILITIES_H
