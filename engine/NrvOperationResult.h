#ifndef NRV_OPERATION_RESULT_H
#define NRV_OPERATION_RESULT_H

#include <cstddef>

#include "NrvScanTypes.h"
#include "NrvUtilities.h"

// The value every Run produces: a text with its length (zero bytes allowed)
// or a signed 32-bit integer whose decimal text is made when first asked for.
// Every operation of every edit makes, fills and drops records, so making,
// writing and dropping one are inline.
class CNrvOperationResult {
public:
    enum type { typeString = 0, typeInt = 1, typeStringOrInt = 2 };

    CNrvOperationResult()
        : m_nType(typeInt), m_nResult(0), m_pszResult(nullptr), m_nResultStringLength(0), m_Result(NRV_OK)
    {
    }
    CNrvOperationResult(const CNrvOperationResult& result);
    virtual ~CNrvOperationResult() { delete[] m_pszResult; }
    CNrvOperationResult& operator=(const CNrvOperationResult& source);

    // Copies nResultLength bytes and makes the record a text.
    NRVRESULT WriteResult(const char* pszResult, size_t nResultLength)
    {
        // Copy before releasing, so that a record can be given its own text,
        // and so that a second write does not leak the first.
        char* pszCopy = nullptr;
        const NRVRESULT result = CNrvUtilities::AllocateAndCopy(&pszCopy, pszResult, nResultLength);
        delete[] m_pszResult;
        m_pszResult = pszCopy;
        m_nResultStringLength = nResultLength;
        m_nType = typeString;
        return result;
    }
    void SetResult(int nResult)
    {
        m_nResult = nResult;
        m_nType = typeInt;
    }
    void SetError(NRVRESULT result) { m_Result = result; }
    int GetType() const { return m_nType; }
    const char* GetResultString()
    {
        if (m_pszResult == nullptr && m_nType == typeInt)
            CreateStringFromInteger();
        return m_pszResult;
    }
    size_t GetResultStringLength()
    {
        if (m_pszResult == nullptr && m_nType == typeInt)
            CreateStringFromInteger();
        return m_nResultStringLength;
    }
    // The integer widened with its sign: -1 reads as SIZE_MAX.
    size_t GetResultInteger() const { return static_cast<size_t>(static_cast<int64_t>(m_nResult)); }
    NRVRESULT GetError() const { return m_Result; }

protected:
    NRVRESULT CreateStringFromInteger();

private:
    void CopyTextFrom(const CNrvOperationResult& source);

    int m_nType;
    int m_nResult;
    char* m_pszResult;
    size_t m_nResultStringLength;
    NRVRESULT m_Result;
};

#endif  // NRV_OPERATION_RESULT_H
