#include "NrvEscapes.h"

bool NrvUnescape(const char* pText, size_t nLength, std::string* pOut, std::string* pError)
{
    pOut->clear();
    for (size_t i = 0; i < nLength; ++i) {
        const char c = pText[i];
        if (c != '\\') {
            pOut->push_back(c);
            continue;
        }
        if (i + 1 == nLength) {
            *pError = "a backslash ends the text (write \\\\ for a backslash)";
            return false;
        }
        const char e = pText[++i];
        switch (e) {
        case '\\': pOut->push_back('\\'); break;
        case 'r': pOut->push_back('\r'); break;
        case 'n': pOut->push_back('\n'); break;
        case 't': pOut->push_back('\t'); break;
        case 'x': {
            const int nHigh = i + 1 < nLength ? NrvHexDigitValue(pText[i + 1]) : -1;
            const int nLow = i + 2 < nLength ? NrvHexDigitValue(pText[i + 2]) : -1;
            if (nHigh < 0 || nLow < 0) {
                *pError = "\\x must be followed by two hexadecimal digits";
                return false;
            }
            pOut->push_back(static_cast<char>(nHigh * 16 + nLow));
            i += 2;
            break;
        }
        default:
            *pError = std::string("unknown escape \\") + e + " (known: \\\\ \\r \\n \\t \\xHH)";
            return false;
        }
    }
    return true;
}

void NrvAppendEscaped(const char* pData, size_t nLength, std::string* pOut)
{
    static const char kHex[] = "0123456789ABCDEF";
    for (size_t i = 0; i < nLength; ++i) {
        const unsigned char c = static_cast<unsigned char>(pData[i]);
        switch (c) {
        case '\\': pOut->append("\\\\", 2); break;
        case '\r': pOut->append("\\r", 2); break;
        case '\n': pOut->append("\\n", 2); break;
        case '\t': pOut->append("\\t", 2); break;
        default:
            if (c >= 0x20 && c < 0x7F) {
                pOut->push_back(static_cast<char>(c));
            } else {
                const char szEscape[4] = {'\\', 'x', kHex[c >> 4], kHex[c & 0x0F]};
                pOut->append(szEscape, 4);
            }
        }
    }
}
