#include "NrvTruncateCommands.h"

// A find command that found nothing yields kNrvIndexNotFound, which removes
// nothing; every other negative count reads as a size beyond any text and is
// refused, as is removing every byte (rather than giving an empty text).
NRVRESULT CNrvOperationTruncate::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                         CNrvOperationResult& Count) const
{
    size_t nCount = Count.GetResultInteger();
    if (nCount == kNrvSizeIndexNotFound)
        nCount = 0;
    const size_t nLength = Text.GetResultStringLength();
    if (nLength <= nCount)
        return NRV_ERR_OUT_OF_RANGE;
    const char* pszText = Text.GetResultString();
    return Result.WriteResult(Variant() == kFromBeginning ? pszText + nCount : pszText, nLength - nCount);
}

std::string CNrvOperationTruncate::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    const int nCount = NrvIntegerOf(pParameters[1]);
    if (nCount == kNrvIndexNotFound)
        return "count -2 (nothing found) removes nothing, and the text is empty";
    return NrvDescribePositionFailure("count", nCount, pParameters[0].GetResultStringLength());
}
