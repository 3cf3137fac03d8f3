#include "NrvLiteralOperations.h"

#include <cctype>
#include <cstring>

CNrvOperationString::CNrvOperationString(CNrvDataEditingProfile* pDataEditing, CNrvParsingString* pString)
    : CNrvOperation(pDataEditing), m_pszString(nullptr), m_nStringLength(0)
{
    if (pString == nullptr || pString->IsEmpty())
        return;
    const size_t nLength = pString->GetLength();
    m_pszString = new char[nLength + 1];
    memcpy(m_pszString, pString->GetString(), nLength);
    m_pszString[nLength] = '\0';
    m_nStringLength = nLength;
}

CNrvOperationString::~CNrvOperationString()
{
    delete[] m_pszString;
}

NRVRESULT CNrvOperationString::Run(CNrvOperationResult& Result) const
{
    return Result.WriteResult(m_pszString, m_nStringLength);
}

CNrvOperationInteger::CNrvOperationInteger(CNrvDataEditingProfile* pDataEditing, CNrvParsingString* pString)
    : CNrvOperationString(pDataEditing, pString), m_nInteger(0)
{
    // Read from the literal's own bounded copy: white space, one sign, then
    // digits. Accumulated in 64 bits and kept within 32, so an oversized
    // literal (which IsNumber refuses) cannot overflow.
    const char* p = m_pszString;
    const char* const pEnd = p + m_nStringLength;
    while (p < pEnd && isspace(static_cast<unsigned char>(*p)))
        ++p;
    bool bNegative = false;
    if (p < pEnd && (*p == '+' || *p == '-'))
        bNegative = *p++ == '-';
    long long nValue = 0;
    for (; p < pEnd && *p >= '0' && *p <= '9'; ++p) {
        nValue = nValue * 10 + (*p - '0');
        if (nValue > 2147483648LL)
            nValue = 2147483648LL;
    }
    if (bNegative)
        nValue = -nValue;
    if (nValue > 2147483647LL)
        nValue = 2147483647LL;
    m_nInteger = static_cast<int>(nValue);
}

NRVRESULT CNrvOperationInteger::Run(CNrvOperationResult& Result) const
{
    const NRVRESULT result = CNrvOperationString::Run(Result);
    Result.SetResult(m_nInteger);
    return result;
}
