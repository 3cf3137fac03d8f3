#include "NrvTruncateAtIndexCommands.h"

#include <cstdint>

// Both reserved index values keep the whole text; any other negative index
// is an error, while an index past the end of the text is not. The cut lies
// at index + offset, added as sign-widened sizes so that a negative position
// reads as beyond the end.
NRVRESULT CNrvOperationTruncateAtIndex::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                                CNrvOperationResult& Index, CNrvOperationResult& Offset) const
{
    const size_t nIndex = Index.GetResultInteger();
    const char* pszText = Text.GetResultString();
    const size_t nLength = Text.GetResultStringLength();
    if (nIndex >= kNrvSizeIndexNotFound)
        return Result.WriteResult(pszText, nLength);
    if (nIndex > static_cast<size_t>(INT64_MAX))
        return NRV_ERR_OUT_OF_RANGE;

    const size_t nPosition = nIndex + Offset.GetResultInteger();
    if (Variant() == kKeepBefore)  // a position beyond the end keeps the whole text
        return Result.WriteResult(pszText, nPosition < nLength ? nPosition : nLength);
    if (nPosition > nLength)  // ... and keeps nothing from it on
        return Result.WriteResult(pszText, 0);
    return Result.WriteResult(pszText + nPosition, nLength - nPosition);
}

std::string CNrvOperationTruncateAtIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}
