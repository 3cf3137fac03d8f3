#include "NrvRuntimeLib.h"

#include <cstdarg>
#include <cstdio>

NRVRESULT CNrvRuntimeLib::Sprintf(char* pszBuffer, size_t nBufferSize, const char* pszFormat, ...)
{
    if (pszBuffer == nullptr || nBufferSize == 0 || pszFormat == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    va_list args;
    va_start(args, pszFormat);
    const int nWritten = vsnprintf(pszBuffer, nBufferSize, pszFormat, args);
    va_end(args);
    pszBuffer[nBufferSize - 1] = '\0';
    if (nWritten < 0 || static_cast<size_t>(nWritten) >= nBufferSize)
        return NRV_ERR_INVALID_PARAMETER;
    return nWritten;
}
