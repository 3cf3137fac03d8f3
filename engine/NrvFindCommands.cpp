#include "NrvFindCommands.h"

#include <cstdint>
#include <cstring>

namespace {

// Positions travel as signed 32-bit integers. Sums wrap the way 32-bit
// arithmetic does instead of overflowing.
int32_t AddAsInt32(int32_t nLeft, size_t nRight)
{
    return static_cast<int32_t>(static_cast<uint32_t>(nLeft) + static_cast<uint32_t>(nRight));
}

int32_t SubtractAsInt32(int32_t nLeft, int32_t nRight)
{
    return static_cast<int32_t>(static_cast<uint32_t>(nLeft) - static_cast<uint32_t>(nRight));
}

int32_t AsInt32(size_t nValue)
{
    return static_cast<int32_t>(static_cast<uint32_t>(nValue));
}

}  // namespace

NRVRESULT CNrvOperationFindFirstFromIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[4];
    const NRVRESULT result = RunParameters(parameters, 4);
    if (result < 0)
        return result;

    const size_t nStart = parameters[1].GetResultInteger();
    // A failed search upstream is handed on as it is, offset and all ignored.
    if (nStart == kNrvSizeIndexNotFound) {
        Result.SetResult(kNrvIndexNotFound);
        return result;
    }
    const char* pszText = TextOf(parameters[0]);
    const char* pszSearchFrom = pszText;
    if (nStart != kNrvSizeIndexNone) {
        // Tested against the recorded length, which may run past a zero byte.
        if (nStart >= parameters[0].GetResultStringLength())
            return NRV_ERR_OUT_OF_RANGE;
        pszSearchFrom = pszText + nStart;
    }
    NRVRESULT limits = CheckPositionsFit(parameters[0].GetResultStringLength());
    if (limits >= 0)
        limits = CheckSearchLimits(parameters[0], parameters[2]);
    if (limits < 0)
        return limits;
    const char* pszFound = strstr(pszSearchFrom, TextOf(parameters[2]));
    const int32_t nPosition = pszFound != nullptr ? static_cast<int32_t>(pszFound - pszText) : kNrvIndexNotFound;
    // The offset applies to "not found" too: -2 + k.
    Result.SetResult(AddAsInt32(nPosition, parameters[3].GetResultInteger()));
    return result;
}

std::string CNrvOperationFindFirstFromIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("start", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}

NRVRESULT CNrvOperationFindLastFromIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[4];
    const NRVRESULT result = RunParameters(parameters, 4);
    if (result < 0)
        return result;

    const size_t nStart = parameters[1].GetResultInteger();
    if (nStart != kNrvSizeIndexNotFound) {
        NRVRESULT limits = CheckPositionsFit(parameters[0].GetResultStringLength());
        if (limits >= 0)
            limits = CheckSearchLimits(parameters[0], parameters[2]);
        if (limits < 0)
            return limits;
    }
    if (nStart == kNrvSizeIndexNone) {
        // The last occurrence in the whole text; the offset is not applied.
        Result.SetResult(FindIndex(parameters[0], kNrvSizeIndexNone, parameters[2]));
        return result;
    }
    if (nStart == kNrvSizeIndexNotFound) {
        Result.SetResult(kNrvIndexNotFound);
        return result;
    }
    if (nStart >= parameters[0].GetResultStringLength())
        return NRV_ERR_OUT_OF_RANGE;
    // Applied even when nothing was found.
    Result.SetResult(AddAsInt32(FindIndex(parameters[0], nStart, parameters[2]), parameters[3].GetResultInteger()));
    return result;
}

std::string CNrvOperationFindLastFromIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("start", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}

// Steps back one byte at a time from the start, each time searching forwards
// to the end of the text. From kNrvSizeIndexNone the start is the last place
// the search text fits, so the first hit is the last occurrence; from an
// earlier start the first step already sees everything after it, so the
// answer is the first occurrence at or after the start, else the last one
// before it.
int CNrvOperationFindLastFromIndex::FindIndex(CNrvOperationResult& OriginalString, size_t fromIndex,
                                              CNrvOperationResult& SearchString) const
{
    const size_t nLength = OriginalString.GetResultStringLength();
    const int32_t nLastFit = SubtractAsInt32(AsInt32(nLength), AsInt32(SearchString.GetResultStringLength()));
    // A search text as long as the text, or longer, is never found.
    if (nLastFit <= 0)
        return kNrvIndexNotFound;
    if (nLength > 0x7FFFFFFE)
        return kNrvIndexNotFound;
    int32_t nFrom = nLastFit;
    if (fromIndex != kNrvSizeIndexNone && AsInt32(fromIndex) < nFrom)
        nFrom = AsInt32(fromIndex);
    if (nFrom < 0)
        return kNrvIndexNotFound;

    const char* pszText = TextOf(OriginalString);
    const char* pszSearch = TextOf(SearchString);
    const char* pszFound = strstr(pszText + nFrom, pszSearch);
    if (pszFound != nullptr)
        return static_cast<int>(pszFound - pszText);
    // Nothing at or after the start, so a forward search from any earlier i
    // can only succeed exactly at i: testing each i for a match there gives
    // the same answer in time proportional to the text times the search text,
    // instead of the square of the text. strncmp stops at a zero byte of the
    // text, as strstr would.
    const size_t nSearch = strlen(pszSearch);
    // The search text is not empty here (strstr finds an empty one at once),
    // so a first byte that differs rules a place out without a call.
    for (int32_t i = nFrom - 1; i >= 0; --i) {
        if (pszText[i] == pszSearch[0] && strncmp(pszText + i, pszSearch, nSearch) == 0)
            return i;
    }
    return kNrvIndexNotFound;
}
