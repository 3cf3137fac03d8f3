#include "NrvParsingString.h"

#include <cctype>
#include <climits>
#include <cstring>
#include <string>

#include "NrvOperationBase.h"

namespace {

bool IsSpace(char c)
{
    return isspace(static_cast<unsigned char>(c)) != 0;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

}  // namespace

CNrvParsingString::CNrvParsingString()
    : m_bToDelete(false), m_pszString(nullptr), m_nStartIndex(0), m_nStopIndex(0), m_nFlag(0)
{
}

CNrvParsingString::CNrvParsingString(char const* pszString)
    : m_bToDelete(false),
      m_pszString(const_cast<char*>(pszString)),  // never written through
      m_nStartIndex(0),
      m_nStopIndex(pszString != nullptr ? strlen(pszString) : 0),
      m_nFlag(0)
{
}

CNrvParsingString::CNrvParsingString(CNrvParsingString const& source)
    : m_bToDelete(false), m_pszString(nullptr), m_nStartIndex(0), m_nStopIndex(0), m_nFlag(0)
{
    *this = source;
}

CNrvParsingString::~CNrvParsingString()
{
    Release();
}

void CNrvParsingString::Release()
{
    if (m_bToDelete)
        delete[] m_pszString;
    m_bToDelete = false;
    m_pszString = nullptr;
    m_nStartIndex = m_nStopIndex = 0;
}

CNrvParsingString CNrvParsingString::Piece(size_t nStart, size_t nStop, int nFlag) const
{
    CNrvParsingString piece;
    piece.m_nFlag = nFlag;
    if (!m_bToDelete) {
        piece.m_pszString = m_pszString;
        piece.m_nStartIndex = nStart;
        piece.m_nStopIndex = nStop;
        return piece;
    }
    const size_t nLength = nStop - nStart;
    piece.m_pszString = new char[nLength + 1];
    piece.m_bToDelete = true;
    memcpy(piece.m_pszString, m_pszString + nStart, nLength);
    piece.m_pszString[nLength] = '\0';
    piece.m_nStopIndex = nLength;
    return piece;
}

CNrvParsingString& CNrvParsingString::operator=(CNrvParsingString const& source)
{
    if (this != &source) {
        CNrvParsingString copy = source.Piece(source.m_nStartIndex, source.m_nStopIndex, source.m_nFlag);
        Release();
        m_bToDelete = copy.m_bToDelete;
        m_pszString = copy.m_pszString;
        m_nStartIndex = copy.m_nStartIndex;
        m_nStopIndex = copy.m_nStopIndex;
        m_nFlag = copy.m_nFlag;
        copy.m_bToDelete = false;  // ownership moved to this window
    }
    return *this;
}

CNrvParsingString CNrvParsingString::Extract(char cStart, char cEnd)
{
    if (IsEmpty() || m_pszString[m_nStartIndex] != cStart)
        return CNrvParsingString();
    const size_t nInside = m_nStartIndex + 1;
    size_t nLevel = 1;
    for (size_t i = nInside; i < m_nStopIndex; ++i) {
        const char c = m_pszString[i];
        if (c == cStart) {
            ++nLevel;
        } else if (c == cEnd && --nLevel == 0) {
            CNrvParsingString piece = Piece(nInside, i, 0);
            m_nStartIndex = i;
            return piece;
        }
    }
    // Unterminated: the rest is the piece, still meant as a command.
    CNrvParsingString piece = Piece(nInside, m_nStopIndex, CNrvOperation::kFlagCommand);
    m_nStartIndex = m_nStopIndex;
    return piece;
}

CNrvParsingString CNrvParsingString::ExtractBefore(char c)
{
    const void* pFound = IsEmpty() ? nullptr : memchr(GetString(), c, GetLength());
    const size_t nCut = pFound != nullptr ? static_cast<const char*>(pFound) - m_pszString : m_nStopIndex;
    CNrvParsingString piece = Piece(m_nStartIndex, nCut, 0);
    m_nStartIndex = nCut;
    return piece;
}

CNrvParsingString CNrvParsingString::ExtractBeforeIndex(size_t nIndex)
{
    const size_t nCut = m_nStartIndex + (nIndex < GetLength() ? nIndex : GetLength());
    CNrvParsingString piece = Piece(m_nStartIndex, nCut, 0);
    m_nStartIndex = nCut;
    return piece;
}

NRVRESULT CNrvParsingString::Remove(CNrvParsingString* pString)
{
    if (IsEmpty())
        return NRV_OK;
    if (pString == nullptr || pString->IsEmpty() ||
        memchr(pString->GetString(), m_pszString[m_nStartIndex], pString->GetLength()) == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    ++m_nStartIndex;
    return NRV_OK;
}

bool CNrvParsingString::IsNumber() const
{
    const char* p = GetString();
    const char* const pEnd = p + GetLength();
    while (p < pEnd && IsSpace(*p))
        ++p;
    bool bNegative = false;
    if (p < pEnd && (*p == '+' || *p == '-'))
        bNegative = *p++ == '-';
    if (p == pEnd || !IsDigit(*p))
        return false;
    // Magnitude limit: 2147483647, or 2147483648 for a negative value.
    const unsigned long long nLimit = bNegative ? 2147483648ULL : 2147483647ULL;
    unsigned long long nValue = 0;
    for (; p < pEnd && IsDigit(*p); ++p) {
        nValue = nValue * 10 + static_cast<unsigned>(*p - '0');
        if (nValue > nLimit)
            return false;
    }
    while (p < pEnd && IsSpace(*p))
        ++p;
    return p == pEnd;
}

NRVRESULT CNrvParsingString::WriteString(const char* pszString)
{
    if (pszString == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    const size_t nLength = strlen(pszString);
    char* pszCopy = new char[nLength + 1];
    memcpy(pszCopy, pszString, nLength + 1);
    Release();
    m_bToDelete = true;
    m_pszString = pszCopy;
    m_nStopIndex = nLength;
    return NRV_OK;
}

int CNrvParsingString::Find(char c) const
{
    if (IsEmpty())
        return -1;
    const void* pFound = memchr(GetString(), c, GetLength());
    if (pFound == nullptr)
        return -1;
    const size_t nAt = static_cast<const char*>(pFound) - GetString();
    return nAt < static_cast<size_t>(INT_MAX) ? static_cast<int>(nAt) : INT_MAX;
}

void CNrvParsingString::Trace(bool bError, const char* pszFormat) const
{
    const PFNNRVTRACE pfnTrace = s_pfnTrace;
    if (pszFormat == nullptr)
        return;
    // The window is inserted as data, so a '%' in an expression is never a format.
    std::string line(pszFormat);
    const size_t nAt = line.find("%s");
    if (nAt != std::string::npos)
        line.replace(nAt, 2, IsEmpty() ? "" : GetString(), GetLength());
    pfnTrace(bError, line.c_str(), s_pTraceContext);
}

void CNrvParsingString::SetTraceCallback(PFNNRVTRACE pfnTrace, void* pContext)
{
    s_pTraceContext = pContext;
    s_pfnTrace = pfnTrace;
}

void NrvSetTraceCallback(PFNNRVTRACE pfnTrace, void* pContext)
{
    CNrvParsingString::SetTraceCallback(pfnTrace, pContext);
}
