#include "NrvTruncateCommands.h"

namespace {

// The count both truncations remove. A find command that found nothing
// yields kNrvIndexNotFound, which removes nothing; every other negative
// value reads as a size beyond any text and is refused below.
size_t ReadCount(const CNrvOperationResult& CountParameter)
{
    const size_t nCount = CountParameter.GetResultInteger();
    return nCount == kNrvSizeIndexNotFound ? 0 : nCount;
}

// Removes the count of bytes from the front (bFromBeginning) or the end.
// Removing every byte is refused rather than giving an empty text.
NRVRESULT WriteTruncated(CNrvOperationResult* pParameters, bool bFromBeginning, CNrvOperationResult& Result)
{
    const size_t nCount = ReadCount(pParameters[1]);
    const size_t nLength = pParameters[0].GetResultStringLength();
    if (nLength <= nCount)
        return NRV_ERR_OUT_OF_RANGE;
    const char* pszText = pParameters[0].GetResultString();
    return Result.WriteResult(bFromBeginning ? pszText + nCount : pszText, nLength - nCount);
}

// Why WriteTruncated refused, read the same way.
std::string DescribeTruncateFailure(CNrvOperationResult* pParameters)
{
    const int nCount = NrvIntegerOf(pParameters[1]);
    const size_t nLength = pParameters[0].GetResultStringLength();
    if (nCount == kNrvIndexNotFound)
        return "count -2 (nothing found) removes nothing, and the text is empty";
    return NrvDescribePositionFailure("count", nCount, nLength);
}

}  // namespace

NRVRESULT CNrvOperationTruncateFromBeginning::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[2];
    const NRVRESULT result = RunParameters(parameters, 2);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0]);
    if (limits < 0)
        return limits;
    return WriteTruncated(parameters, true, Result);
}

std::string CNrvOperationTruncateFromBeginning::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return DescribeTruncateFailure(pParameters);
}

NRVRESULT CNrvOperationTruncateFromEnd::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[2];
    const NRVRESULT result = RunParameters(parameters, 2);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0]);
    if (limits < 0)
        return limits;
    return WriteTruncated(parameters, false, Result);
}

std::string CNrvOperationTruncateFromEnd::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return DescribeTruncateFailure(pParameters);
}
