// The GS1 element-string reader: the symbology identifier or leading
// separator, then one element after another, each checked as it is read.

#include "NrvGs1.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "NrvGs1Checks.h"

namespace {

// FNC1 as scanners send it: ends a variable-length element.
constexpr char kSeparator = '\x1D';

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// ]C1 GS1-128, ]e0 GS1 DataBar, ]d2 GS1 DataMatrix, ]Q3 GS1 QR Code,
// ]J1 GS1 DotCode: the identifiers that say the data is GS1 element strings.
bool IsGs1Identifier(const char* p)
{
    static const char kIdentifiers[][2] = {{'C', '1'}, {'e', '0'}, {'d', '2'}, {'Q', '3'}, {'J', '1'}};
    for (const char* pIdentifier : kIdentifiers)
        if (p[0] == pIdentifier[0] && p[1] == pIdentifier[1])
            return true;
    return false;
}

// What a byte is where an AI's digit should stand.
void DescribeNonDigit(char c, char* pszOut, size_t nSize)
{
    if (c == kSeparator)
        std::snprintf(pszOut, nSize, "a separator");
    else
        NrvGs1DescribeByte(static_cast<unsigned char>(c), pszOut, nSize);
}

bool DigitsOnly(const TNrvGs1Entry& entry)
{
    for (const TNrvGs1Component& component : entry.aComponents)
        if (component.cSet != 0 && component.cSet != 'N')
            return false;
    return true;
}

const char* Unit(const TNrvGs1Entry& entry, size_t nCount)
{
    if (DigitsOnly(entry))
        return nCount == 1 ? "digit" : "digits";
    return nCount == 1 ? "character" : "characters";
}

}  // namespace

CNrvGs1Reader::CNrvGs1Reader(const char* pText, size_t nLength)
    : m_pText(pText),
      m_nLength(pText != nullptr ? nLength : 0),
      m_nPos(0),
      m_bStarted(false),
      m_bFailed(false),
      m_Fault()
{
}

bool CNrvGs1Reader::Fail(size_t nOffset, size_t nLength, const char* pszFormat, ...)
{
    m_bFailed = true;
    m_Fault.nOffset = nOffset;
    m_Fault.nLength = nLength;
    va_list args;
    va_start(args, pszFormat);
    std::vsnprintf(m_Fault.szMessage, sizeof m_Fault.szMessage, pszFormat, args);
    va_end(args);
    return false;
}

bool CNrvGs1Reader::Start()
{
    m_bStarted = true;
    if (m_nLength > 0 && m_pText[0] == ']') {
        if (m_nLength < 3)
            return Fail(0, m_nLength, "the text ends inside a symbology identifier");
        if (!IsGs1Identifier(m_pText + 1)) {
            char szShown[16] = "]";
            size_t nShown = 1;
            for (size_t i = 1; i < 3; ++i) {
                const unsigned char c = static_cast<unsigned char>(m_pText[i]);
                nShown += static_cast<size_t>(std::snprintf(szShown + nShown, sizeof szShown - nShown,
                                                            c > 0x20 && c < 0x7F ? "%c" : "\\x%02X", c));
            }
            return Fail(0, 3, "%s is not the symbology identifier of GS1 data (]C1, ]e0, ]d2, ]Q3 or ]J1)", szShown);
        }
        m_nPos = 3;
    }
    if (m_nPos < m_nLength && m_pText[m_nPos] == kSeparator)
        ++m_nPos;
    if (m_nPos == m_nLength)
        return Fail(m_nPos, 0, "the text holds no element string");
    return true;
}

bool CNrvGs1Reader::Next(TNrvGs1Element* pElement)
{
    if (m_bFailed || (!m_bStarted && !Start()) || m_nPos == m_nLength)
        return false;
    const size_t nAiOffset = m_nPos;
    const TNrvGs1Entry* pEntry = nullptr;
    size_t nDigits = 0;
    size_t nDataLength = 0;
    if (!ReadAi(&pEntry, &nDigits) || !ReadData(pEntry, nAiOffset, nDigits, &nDataLength))
        return false;
    pElement->pEntry = pEntry;
    pElement->nAiOffset = nAiOffset;
    pElement->nAiLength = nDigits;
    pElement->nDataOffset = nAiOffset + nDigits;
    pElement->nDataLength = nDataLength;
    m_nPos = nAiOffset + nDigits + nDataLength;
    // Ends a variable-length element; tolerated after a predefined one.
    if (m_nPos < m_nLength && m_pText[m_nPos] == kSeparator)
        ++m_nPos;
    return true;
}

bool CNrvGs1Reader::ReadAi(const TNrvGs1Entry** ppEntry, size_t* pnDigits)
{
    const char* p = m_pText + m_nPos;
    const size_t nLeft = m_nLength - m_nPos;
    // The first two digits say how many digits the AI has.
    size_t nDigits = 2;
    for (size_t i = 0; i < nDigits; ++i) {
        if (i == nLeft)
            return Fail(m_nPos, i, "the text ends inside an AI, after %.*s", static_cast<int>(i), p);
        if (!IsDigit(p[i])) {
            char szShown[16];
            DescribeNonDigit(p[i], szShown, sizeof szShown);
            return Fail(m_nPos + i, 1, "an AI's digit expected, found %s", szShown);
        }
        if (i == 1) {
            nDigits = NrvGs1AiLength(p[0], p[1]);
            if (nDigits == 0)
                return Fail(m_nPos, 2, "no AI %.2s exists", p);
        }
    }
    *ppEntry = NrvGs1LookupAi(p, nDigits);
    if (*ppEntry == nullptr)
        return Fail(m_nPos, nDigits, "no AI %.*s exists", static_cast<int>(nDigits), p);
    *pnDigits = nDigits;
    return true;
}

bool CNrvGs1Reader::ReadData(const TNrvGs1Entry* pEntry, size_t nAiOffset, size_t nAiLength, size_t* pnDataLength)
{
    const char* pAi = m_pText + nAiOffset;
    const int nAi = static_cast<int>(nAiLength);
    const size_t nData = nAiOffset + nAiLength;
    const char* p = m_pText + nData;
    const size_t nLeft = m_nLength - nData;

    // The data runs to the next separator or the text's end; a predefined
    // length stops it sooner.
    size_t nMaximum = 0;
    for (const TNrvGs1Component& component : pEntry->aComponents)
        nMaximum += component.nMax;
    const size_t nWindow = (pEntry->nFlags & kNrvGs1Predefined) != 0 && nMaximum < nLeft ? nMaximum : nLeft;
    const char* pSeparator = static_cast<const char*>(std::memchr(p, kSeparator, nWindow));
    const size_t nAvailable = pSeparator != nullptr ? static_cast<size_t>(pSeparator - p) : nWindow;
    if (nAvailable > nMaximum)
        return Fail(nData, nAvailable, "AI (%.*s): %zu %s, at most %zu", nAi, pAi, nAvailable,
                    Unit(*pEntry, nAvailable), nMaximum);

    // Each component takes its share, the optional ones none once the data
    // is used up.
    size_t aLengths[kNrvGs1MaxComponents] = {};
    size_t nUsed = 0;
    for (size_t i = 0; i < kNrvGs1MaxComponents && pEntry->aComponents[i].cSet != 0; ++i) {
        const TNrvGs1Component& component = pEntry->aComponents[i];
        const size_t nRest = nAvailable - nUsed;
        if (nRest == 0 && component.bOptional)
            break;
        if (nRest < component.nMin) {
            const size_t nNeeded = nUsed + component.nMin;
            const char* pszAtLeast = component.nMin != component.nMax ? "at least " : "";
            const char* pszEnd = pSeparator != nullptr ? "a separator" : "the text ends";
            if (nAvailable == 0)
                return Fail(nAiOffset, nAiLength, "AI (%.*s): %s%zu %s expected, %s right after the AI", nAi, pAi,
                            pszAtLeast, nNeeded, Unit(*pEntry, nNeeded), pszEnd);
            return Fail(nData, nAvailable, "AI (%.*s): %s%zu %s expected, %s after %zu", nAi, pAi, pszAtLeast,
                        nNeeded, Unit(*pEntry, nNeeded), pszEnd, nAvailable);
        }
        aLengths[i] = nRest < component.nMax ? nRest : component.nMax;
        nUsed += aLengths[i];
    }

    // Then each component's characters and checks, in order.
    size_t nOffset = nData;
    TNrvGs1Fault fault;
    for (size_t i = 0; i < kNrvGs1MaxComponents && aLengths[i] != 0; ++i) {
        const TNrvGs1Component& component = pEntry->aComponents[i];
        bool bValid = NrvGs1CheckCharacters(component.cSet, m_pText + nOffset, aLengths[i], &fault);
        for (size_t k = 0; bValid && k < kNrvGs1MaxChecks && component.aChecks[k] != kNrvGs1CheckNone; ++k)
            bValid = NrvGs1RunCheck(component.aChecks[k], m_pText + nOffset, aLengths[i], &fault);
        if (!bValid)
            return Fail(nOffset + fault.nOffset, fault.nLength, "AI (%.*s): %s", nAi, pAi, fault.szMessage);
        nOffset += aLengths[i];
    }
    *pnDataLength = nAvailable;
    return true;
}

bool NrvGs1IsValid(const char* pText, size_t nLength, TNrvGs1Fault* pFault)
{
    CNrvGs1Reader reader(pText, nLength);
    TNrvGs1Element element;
    while (reader.Next(&element)) {
    }
    if (reader.Failed() && pFault != nullptr)
        *pFault = reader.GetFault();
    return !reader.Failed();
}

bool NrvGs1FindElement(const char* pText, size_t nLength, const char* pAi, size_t nAiLength,
                       TNrvGs1Element* pFound, TNrvGs1Fault* pFault)
{
    CNrvGs1Reader reader(pText, nLength);
    TNrvGs1Element element;
    TNrvGs1Element found = {};
    while (reader.Next(&element))
        if (found.pEntry == nullptr && element.nAiLength == nAiLength &&
            std::memcmp(pText + element.nAiOffset, pAi, nAiLength) == 0)
            found = element;
    if (reader.Failed()) {
        if (pFault != nullptr)
            *pFault = reader.GetFault();
        found = {};
    }
    *pFound = found;
    return !reader.Failed();
}

bool NrvGs1WriteHumanReadable(const char* pText, size_t nLength, char* pOut, size_t* pnOutLength,
                              TNrvGs1Fault* pFault)
{
    CNrvGs1Reader reader(pText, nLength);
    TNrvGs1Element element;
    size_t nOut = 0;
    while (reader.Next(&element)) {
        pOut[nOut++] = '(';
        std::memcpy(pOut + nOut, pText + element.nAiOffset, element.nAiLength);
        nOut += element.nAiLength;
        pOut[nOut++] = ')';
        std::memcpy(pOut + nOut, pText + element.nDataOffset, element.nDataLength);
        nOut += element.nDataLength;
    }
    *pnOutLength = nOut;
    if (reader.Failed() && pFault != nullptr)
        *pFault = reader.GetFault();
    return !reader.Failed();
}
