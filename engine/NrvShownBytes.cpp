#include "NrvShownBytes.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "NrvEscapes.h"

namespace {

// The widest an expression is shown, and how much of it before the culprit
// when it must be cut.
const size_t kShownWidth = 100;
const size_t kContextBefore = 30;

// The bytes [*pnFirst, *pnLast) of an expression to show around the byte at
// nOffset: all of them when they fit, otherwise some context before it and
// as much after as fits.
void ShownWindow(const std::vector<std::string>& shown, size_t nOffset, size_t* pnFirst, size_t* pnLast)
{
    size_t nFirst = nOffset, nWidth = 0;
    while (nFirst > 0 && nWidth + shown[nFirst - 1].size() <= kContextBefore)
        nWidth += shown[--nFirst].size();
    size_t nTotal = 0;
    for (const std::string& piece : shown)
        nTotal += piece.size();
    if (nTotal <= kShownWidth)
        nFirst = 0;
    size_t nLast = nFirst;
    for (size_t nUsed = 0;
         nLast < shown.size() && (nTotal <= kShownWidth || nUsed + shown[nLast].size() <= kShownWidth); ++nLast)
        nUsed += shown[nLast].size();
    *pnFirst = nFirst;
    *pnLast = nLast;
}

void AppendHexByte(unsigned char c, std::string* pOut)
{
    static const char kHex[] = "0123456789ABCDEF";
    const char szEscape[4] = {'\\', 'x', kHex[c >> 4], kHex[c & 0x0F]};
    pOut->append(szEscape, 4);
}

// U+0000..U+FFFF as UTF-8.
void AppendCodePoint(unsigned nCode, std::string* pOut)
{
    if (nCode < 0x80) {
        pOut->push_back(static_cast<char>(nCode));
    } else if (nCode < 0x800) {
        pOut->push_back(static_cast<char>(0xC0 | (nCode >> 6)));
        pOut->push_back(static_cast<char>(0x80 | (nCode & 0x3F)));
    } else {
        pOut->push_back(static_cast<char>(0xE0 | (nCode >> 12)));
        pOut->push_back(static_cast<char>(0x80 | ((nCode >> 6) & 0x3F)));
        pOut->push_back(static_cast<char>(0x80 | (nCode & 0x3F)));
    }
}

// A control byte (below 0x20, or 0x7F) in a message.
void AppendControlEscaped(unsigned char c, std::string* pOut)
{
    switch (c) {
    case '\t': pOut->append("\\t", 2); break;
    case '\r': pOut->append("\\r", 2); break;
    case '\n': pOut->append("\\n", 2); break;
    default: AppendHexByte(c, pOut);
    }
}

// kNrvBytesDisplay and kNrvBytesMessage: text where it is text.
void AppendText(const unsigned char* p, size_t nLength, bool bMessage, std::string* pOut)
{
    for (size_t i = 0; i < nLength;) {
        const unsigned char c = p[i];
        if (c < 0x20 || c == 0x7F) {
            if (bMessage)
                AppendControlEscaped(c, pOut);
            else
                AppendCodePoint(c == 0x7F ? 0x2421 : 0x2400 + c, pOut);
            ++i;
        } else if (c < 0x80) {
            pOut->push_back(static_cast<char>(c));
            ++i;
        } else if (const size_t n = NrvUtf8SequenceLength(p + i, nLength - i)) {
            // U+0080..U+009F are C2 80..C2 9F.
            const bool bC1 = c == 0xC2 && p[i + 1] < 0xA0;
            if (bMessage && bC1) {
                AppendHexByte(c, pOut);
                AppendHexByte(p[i + 1], pOut);
            } else {
                pOut->append(reinterpret_cast<const char*>(p + i), n);
            }
            i += n;
        } else {
            AppendHexByte(c, pOut);
            ++i;
        }
    }
}

}  // namespace

size_t NrvUtf8SequenceLength(const unsigned char* p, size_t n)
{
    size_t nLength;
    unsigned nMinimum;
    if (n == 0)
        return 0;
    if (p[0] >= 0xC2 && p[0] <= 0xDF) {
        nLength = 2;
        nMinimum = 0x80;
    } else if (p[0] >= 0xE0 && p[0] <= 0xEF) {
        nLength = 3;
        nMinimum = 0x800;
    } else if (p[0] >= 0xF0 && p[0] <= 0xF4) {
        nLength = 4;
        nMinimum = 0x10000;
    } else {
        return 0;
    }
    if (n < nLength)
        return 0;
    unsigned nCode = p[0] & (0x7F >> nLength);
    for (size_t i = 1; i < nLength; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        nCode = (nCode << 6) | (p[i] & 0x3F);
    }
    const bool bSurrogate = nCode >= 0xD800 && nCode <= 0xDFFF;
    return nCode >= nMinimum && nCode <= 0x10FFFF && !bSurrogate ? nLength : 0;
}

void NrvAppendShown(const char* pData, size_t nLength, ENrvByteForm form, std::string* pOut)
{
    const unsigned char* p = reinterpret_cast<const unsigned char*>(pData);
    switch (form) {
    case kNrvBytesCodePoints:
        for (size_t i = 0; i < nLength; ++i)
            AppendCodePoint(p[i], pOut);
        break;
    case kNrvBytesEscaped: NrvAppendEscaped(pData, nLength, pOut); break;
    case kNrvBytesDisplay: AppendText(p, nLength, false, pOut); break;
    case kNrvBytesMessage: AppendText(p, nLength, true, pOut); break;
    }
}

std::string NrvShown(std::string_view bytes, ENrvByteForm form)
{
    std::string shown;
    NrvAppendShown(bytes.data(), bytes.size(), form, &shown);
    return shown;
}

void NrvShowCulprit(const char* pszExpression, size_t nOffset, size_t nLength, std::string* pLine,
                    std::string* pCarets)
{
    // Each byte as shown, so that the carets fall under what is shown.
    const size_t nExpression = strlen(pszExpression);
    std::vector<std::string> shown(nExpression);
    for (size_t i = 0; i < nExpression; ++i)
        NrvAppendEscaped(pszExpression + i, 1, &shown[i]);
    nOffset = std::min(nOffset, nExpression);
    const size_t nEnd = nLength > nExpression - nOffset ? nExpression : nOffset + nLength;
    size_t nFirst = 0, nLast = 0;
    ShownWindow(shown, nOffset, &nFirst, &nLast);

    std::string& line = *pLine;
    std::string& carets = *pCarets;
    line.clear();
    carets.clear();
    if (nFirst > 0) {
        line += "...";
        carets += "   ";
    }
    for (size_t i = nFirst; i < nLast; ++i) {
        line += shown[i];
        if (i == nOffset)
            carets += '^';  // also for an empty range, where it lies
        carets.append(shown[i].size() - (i == nOffset ? 1 : 0), i >= nOffset && i < nEnd ? '~' : ' ');
    }
    if (nOffset == nLast)  // an empty range at the end of what is shown
        carets += '^';
    if (nLast < nExpression)
        line += "...";
    while (!carets.empty() && carets.back() == ' ')
        carets.pop_back();
}
