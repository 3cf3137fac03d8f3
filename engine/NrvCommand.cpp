#include "NrvCommand.h"

#include <cstdint>

#include "NrvResultCodes.h"

bool CNrvCommandOperation::CheckIfParametersAreCorrect() const
{
    const size_t nCount = m_pRow->nParameterCount;
    if (static_cast<size_t>(m_OperationsList.GetCount()) != nCount)
        return false;
    TNrvPosition position = m_OperationsList.GetHeadPosition();
    for (size_t i = 0; i < nCount; ++i) {
        void* pData = nullptr;
        if (m_OperationsList.GetNext(&position, &pData) < 0)
            return false;
        const CNrvOperation* pParameter = static_cast<const CNrvOperation*>(pData);
        const bool bFits = m_pRow->pParameters[i].nKind == kNrvKindNumber ? pParameter->CanResultBeAnInteger()
                                                                          : pParameter->CanResultBeAString();
        if (!bFits)
            return false;
    }
    return true;
}

NRVRESULT CNrvCommandOperation::ChargeCopiedParameters(CNrvOperationResult* pParameters) const
{
    const unsigned nCopied = m_pRow->nCopiedParameters;
    size_t nSize = 0;
    for (unsigned i = 0; (nCopied >> i) != 0; ++i) {
        if (((nCopied >> i) & 1u) != 0)
            nSize += pParameters[i].GetResultStringLength();
    }
    return m_pDataEditing->ChargeWork(nSize, nSize);
}

std::string CNrvCommandOperation::DescribeFailure(NRVRESULT nCode, CNrvOperationResult*) const
{
    return NrvDescribeCode(nCode);
}

int NrvIntegerOf(const CNrvOperationResult& Value)
{
    return static_cast<int>(static_cast<int64_t>(Value.GetResultInteger()));
}

std::string NrvDescribePositionFailure(const char* pszName, int nValue, size_t nTextLength)
{
    const std::string value = std::string(pszName) + " " + std::to_string(nValue);
    if (nValue < 0)
        return value + " is negative";
    return value + " is not less than the length " + std::to_string(nTextLength) + " of the text";
}
