#ifndef NRV_OPERATION_RESULT_H
#define NRV_OPERATION_RESULT_H

#include <cstddef>

#include "NrvScanTypes.h"

// The value every Run produces: a text with its length (zero bytes allowed)
// or a signed 32-bit integer whose decimal text is made when first asked for.
class CNrvOperationResult {
public:
    enum type { typeString = 0, typeInt = 1, typeStringOrInt = 2 };

    CNrvOperationResult();
    CNrvOperationResult(const CNrvOperationResult& result);
    virtual ~CNrvOperationResult();
    CNrvOperationResult& operator=(const CNrvOperationResult& source);

    // Copies nResultLength bytes and makes the record a text.
    NRVRESULT WriteResult(const char* pszResult, size_t nResultLength);
    void SetResult(int nResult);
    void SetError(NRVRESULT result) { m_Result = result; }
    int GetType() const { return m_nType; }
    const char* GetResultString();
    size_t GetResultStringLength();
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
