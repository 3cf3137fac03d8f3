#ifndef NRV_RUNTIME_LIB_H
#define NRV_RUNTIME_LIB_H

#include "NrvScanTypes.h"

class CNrvRuntimeLib {
public:
    // Bounded printf: writes at most nBufferSize bytes, the terminating zero
    // included, and always terminates. Returns the number of characters
    // written, or NRV_ERR_INVALID_PARAMETER for a null or empty buffer, a null
    // format, a formatting error or output that did not fit.
    static NRVRESULT Sprintf(char* pszBuffer, size_t nBufferSize, const char* pszFormat, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 3, 4)))
#endif
        ;
};

#endif  // NRV_RUNTIME_LIB_H
