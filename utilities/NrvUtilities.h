#ifndef NRV_UTILITIES_H
#define NRV_UTILITIES_H

#include "NrvScanTypes.h"

class CNrvUtilities {
public:
    // Copies nLength bytes of pszSource (zero bytes included) into a new
    // buffer of nLength + 1 bytes allocated with new[], ends it with a zero
    // byte and stores it in *ppszDestination. With nLength 0 the source is
    // not read and may be null. Allocation failure throws std::bad_alloc.
    static NRVRESULT AllocateAndCopy(char** ppszDestination, const char* pszSource, size_t nLength);
};

#endif  // NRV_UTILITIES_H
