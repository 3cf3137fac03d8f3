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

}  // namespace

bool CNrvOperationTruncateAfterIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SII");
}

NRVRESULT CNrvOperationTruncateAfterIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;

    const size_t nIndex = parameters[1].GetResultInteger();
    const char* pszText = parameters[0].GetResultString();
    const size_t nLength = parameters[0].GetResultStringLength();
    if (IsReservedIndex(nIndex))
        return Result.WriteResult(pszText, nLength);
    if (IsNegativeIndex(nIndex))
        return NRV_ERR_OUT_OF_RANGE;

    // Unsigned sum of the sign-widened values: a negative position reads as
    // beyond the end and keeps the whole text.
    size_t nPosition = nIndex + parameters[2].GetResultInteger();
    if (nPosition > nLength)
        nPosition = nLength;
    return Result.WriteResult(pszText, nPosition);
}

bool CNrvOperationTruncateBeforeIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SII");
}

NRVRESULT CNrvOperationTruncateBeforeIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;

    const size_t nIndex = parameters[1].GetResultInteger();
    const char* pszText = parameters[0].GetResultString();
    const size_t nLength = parameters[0].GetResultStringLength();
    if (IsReservedIndex(nIndex))
        return Result.WriteResult(pszText, nLength);
    if (IsNegativeIndex(nIndex))
        return NRV_ERR_OUT_OF_RANGE;

    // A position beyond the end, a negative one included, keeps nothing.
    const size_t nPosition = nIndex + parameters[2].GetResultInteger();
    if (nPosition > nLength)
        return Result.WriteResult(pszText, 0);
    return Result.WriteResult(pszText + nPosition, nLength - nPosition);
}
