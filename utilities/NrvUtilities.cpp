#include "NrvUtilities.h"

#include <cstring>

NRVRESULT CNrvUtilities::AllocateAndCopy(char** ppszDestination, const char* pszSource, size_t nLength)
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
