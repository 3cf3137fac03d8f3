#include "NrvTruncateAtIndexCommands.h"

#include <cstdint>

namespace {

// Index values as both commands read them. Both reserved values leave the
// text whole; any other negative index is an error, while an index past the
// end of the text is not.
bool IsReservedIndex(size_t nIndex)
{
    return nIndex >= kNrvSizeIndexNotFound;
}

bool IsNegativeIndex(size_t nIndex)
{
    return nIndex > static_cast<size_t>(INT64_MAX);
}

// What both commands share once their parameters are evaluated: the reserved
// index values keep the whole text, another negative index is refused, and
// the cut lies at index + offset, added as sign-widened sizes so that a
// negative position reads as beyond the end. bKeepFront chooses the side kept.
NRVRESULT WriteCut(CNrvOperationResult* pParameters, bool bKeepFront, CNrvOperationResult& Result)
{
    const size_t nIndex = pParameters[1].GetResultInteger();
    const char* pszText = pParameters[0].GetResultString();
    const size_t nLength = pParameters[0].GetResultStringLength();
    if (IsReservedIndex(nIndex))
        return Result.WriteResult(pszText, nLength);
    if (IsNegativeIndex(nIndex))
        return NRV_ERR_OUT_OF_RANGE;

    const size_t nPosition = nIndex + pParameters[2].GetResultInteger();
    if (bKeepFront)  // a position beyond the end keeps the whole text
        return Result.WriteResult(pszText, nPosition < nLength ? nPosition : nLength);
    if (nPosition > nLength)  // ... and keeps nothing behind it
        return Result.WriteResult(pszText, 0);
    return Result.WriteResult(pszText + nPosition, nLength - nPosition);
}

}  // namespace

NRVRESULT CNrvOperationTruncateAfterIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0]);
    if (limits < 0)
        return limits;
    return WriteCut(parameters, true, Result);
}

std::string CNrvOperationTruncateAfterIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}

NRVRESULT CNrvOperationTruncateBeforeIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0]);
    if (limits < 0)
        return limits;
    return WriteCut(parameters, false, Result);
}

std::string CNrvOperationTruncateBeforeIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}
