#include "NrvOperationBase.h"

#include <cstring>

CNrvOperation::CNrvOperation(CNrvDataEditingProfile* pDataEditing) : m_pDataEditing(pDataEditing) {}

CNrvOperation::~CNrvOperation()
{
    while (m_OperationsList.GetCount() > 0) {
        void* pData = nullptr;
        if (m_OperationsList.RemoveHead(&pData) >= 0)
            delete static_cast<CNrvOperation*>(pData);
    }
}

bool CNrvOperation::CanResultBeAString() const
{
    const int nType = GetResultType();
    return nType == CNrvOperationResult::typeString || nType == CNrvOperationResult::typeStringOrInt;
}

bool CNrvOperation::CanResultBeAnInteger() const
{
    const int nType = GetResultType();
    return nType == CNrvOperationResult::typeInt || nType == CNrvOperationResult::typeStringOrInt;
}

NRVRESULT CNrvOperation::CheckParametersCount(CNrvOperation* pOperation, CNrvParsingString* pOperationParameter,
                                              char cOpen, char cClose)
{
    if (pOperation == nullptr || pOperationParameter == nullptr)
        return NRV_ERR_INVALID_PARAMETER;
    const size_t nCount = CountWrittenParameters(*pOperationParameter, cOpen, cClose);
    return pOperation->GetParameterCount() == nCount ? NRV_OK : NRV_ERR_PARAMETER_COUNT;
}

size_t CNrvOperation::CountWrittenParameters(const CNrvParsingString& Parameters, char cOpen, char cClose)
{
    size_t nCount = 0;
    size_t nOpen = 0;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(Parameters.GetString());
    const unsigned char* const pEnd = p + Parameters.GetLength();
    for (; p < pEnd; ++p) {
        const unsigned char c = *p;
        if (nOpen == 0 && c == ',') {
            ++nCount;
        } else if (c == static_cast<unsigned char>(cOpen)) {
            if (nCount == 0)
                nCount = 1;
            ++nOpen;
        } else if (c == static_cast<unsigned char>(cClose)) {
            if (nCount == 0)
                nCount = 1;
            if (nOpen > 0)
                --nOpen;
        } else if (c != ' ' && nCount == 0 && nOpen == 0) {
            nCount = 1;
        }
    }
    return nCount;
}

const char* CNrvOperation::TextOf(CNrvOperationResult& Value)
{
    const char* pszText = Value.GetResultString();
    return pszText != nullptr ? pszText : "";
}

size_t CNrvOperation::SearchWork(size_t nText, size_t nSearch)
{
    // At most the whole search text compared at every byte of the text, a
    // bound of a byte-by-byte search and of a test of set membership alike;
    // saturated, so that an absurd case is charged everything. A search text
    // is held in memory, so nSearch + 1 does not wrap.
    const size_t nMax = static_cast<size_t>(-1);
    return nText > nMax / (nSearch + 1) ? nMax : nText * (nSearch + 1);
}
