#include "NrvOperationResult.h"

#include <cstring>

#include "NrvRuntimeLib.h"
#include "NrvUtilities.h"

CNrvOperationResult::CNrvOperationResult(const CNrvOperationResult& result)
    : m_nType(result.m_nType),
      m_nResult(result.m_nResult),
      m_pszResult(nullptr),
      m_nResultStringLength(result.m_nResultStringLength),
      m_Result(result.m_Result)
{
    CopyTextFrom(result);
}

CNrvOperationResult& CNrvOperationResult::operator=(const CNrvOperationResult& source)
{
    if (this == &source)
        return *this;
    delete[] m_pszResult;
    m_pszResult = nullptr;
    m_nType = source.m_nType;
    m_nResult = source.m_nResult;
    m_nResultStringLength = source.m_nResultStringLength;
    m_Result = source.m_Result;
    CopyTextFrom(source);
    return *this;
}

void CNrvOperationResult::CopyTextFrom(const CNrvOperationResult& source)
{
    if (source.m_pszResult == nullptr || source.m_nResultStringLength == 0)
        return;  // a 0-byte text gives a copy without text
    const NRVRESULT result =
        CNrvUtilities::AllocateAndCopy(&m_pszResult, source.m_pszResult, source.m_nResultStringLength);
    if (result < 0) {
        m_Result = result;
        m_nResultStringLength = 0;
    }
}

NRVRESULT CNrvOperationResult::CreateStringFromInteger()
{
    char szBuffer[64] = {};
    const NRVRESULT result = CNrvRuntimeLib::Sprintf(szBuffer, sizeof szBuffer, "%d", m_nResult);
    if (result < 0)
        return result;
    const size_t nLength = strlen(szBuffer);
    m_pszResult = new char[nLength + 1];
    memcpy(m_pszResult, szBuffer, nLength + 1);
    m_nResultStringLength = nLength;
    return result;
}
