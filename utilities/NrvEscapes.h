// C-style escapes for scans and results typed or shown as one line of text:
// \\ \r \n \t and \xHH, so that any byte can be typed and seen.
#ifndef NRV_ESCAPES_H
#define NRV_ESCAPES_H

#include <cstddef>
#include <string>

// The value of a hexadecimal digit of either case, or -1 for any other byte.
inline int NrvHexDigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Decodes pText[0..nLength) into *pOut (replacing its content). On a
// malformed escape returns false and describes it in *pError.
bool NrvUnescape(const char* pText, size_t nLength, std::string* pOut, std::string* pError);

// Appends the escaped form of pData[0..nLength) to *pOut. Printable ASCII
// other than the backslash passes as is; everything else is escaped, so the
// result is one line that NrvUnescape turns back into the same bytes.
void NrvAppendEscaped(const char* pData, size_t nLength, std::string* pOut);

#endif  // NRV_ESCAPES_H
