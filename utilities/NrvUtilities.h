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
            CopyEnds<uint64_t>(pDestination, pSource, nLength);
        } else if (nLength >= 4) {
            CopyEnds<uint32_t>(pDestination, pSource, nLength);
        } else if (nLength != 0) {
            const char cFirst = pSource[0], cMiddle = pSource[nLength / 2], cLast = pSource[nLength - 1];
            pDestination[0] = cFirst;
            pDestination[nLength / 2] = cMiddle;
            pDestination[nLength - 1] = cLast;
        }
    }

private:
    // The first and the last sizeof(T) bytes, which overlap when nLength is
    // below twice that: nLength must be at least sizeof(T).
    template <class T>
    static void CopyEnds(char* pDestination, const char* pSource, size_t nLength)
    {
        T nFirst, nLast;
        memcpy(&nFirst, pSource, sizeof nFirst);
        memcpy(&nLast, pSource + nLength - sizeof nLast, sizeof nLast);
        memcpy(pDestination, &nFirst, sizeof nFirst);
        memcpy(pDestination + nLength - sizeof nLast, &nLast, sizeof nLast);
    }
};

#endif  // NRV_UTILITIES_H
