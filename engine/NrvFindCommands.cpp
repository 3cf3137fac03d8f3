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

NRVRESULT CNrvOperationFindFromIndex::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                              CNrvOperationResult& Start, CNrvOperationResult& Search,
                                              CNrvOperationResult& Offset) const
{
    const size_t nStart = Start.GetResultInteger();
    // A failed search upstream is handed on as it is, unsearched and
    // uncharged, the offset ignored.
    if (nStart == kNrvSizeIndexNotFound) {
        Result.SetResult(kNrvIndexNotFound);
        return NRV_OK;
    }
    return Variant() == kLast ? Find<true>(Result, Text, nStart, Search, Offset)
                              : Find<false>(Result, Text, nStart, Search, Offset);
}

template <bool bLast>
NRVRESULT CNrvOperationFindFromIndex::Find(CNrvOperationResult& Result, CNrvOperationResult& Text, size_t nStart,
                                           CNrvOperationResult& Search, CNrvOperationResult& Offset) const
{
    // The start is tested against the recorded length, which may run past
    // a zero byte. The forward search refuses a start outside the text
    // before it charges the search, the backward one after.
    const size_t nLength = Text.GetResultStringLength();
    const bool bStartInText = nStart == kNrvSizeIndexNone || nStart < nLength;
    if constexpr (!bLast) {
        if (!bStartInText)
            return NRV_ERR_OUT_OF_RANGE;
    }
    NRVRESULT limits = CheckPositionsFit(nLength);
    if (limits >= 0)
        limits = CheckSearchLimits(Text, Search);
    if (limits < 0)
        return limits;
    if constexpr (bLast) {
        if (!bStartInText)
            return NRV_ERR_OUT_OF_RANGE;
    }

    int32_t nFound = kNrvIndexNotFound;
    if constexpr (bLast) {
        nFound = FindLast(Text, nStart, Search);
        if (nStart == kNrvSizeIndexNone) {  // the last occurrence in the text, without the offset
            Result.SetResult(nFound);
            return NRV_OK;
        }
    } else {
        const char* pszText = TextOf(Text);
        const char* pszFound = strstr(nStart == kNrvSizeIndexNone ? pszText : pszText + nStart, TextOf(Search));
        if (pszFound != nullptr)
            nFound = static_cast<int32_t>(pszFound - pszText);
    }
    // The offset applies to "not found" too: -2 + k.
    Result.SetResult(AddAsInt32(nFound, Offset.GetResultInteger()));
    return NRV_OK;
}

std::string CNrvOperationFindFromIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("start", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}

// Steps back one byte at a time from the start, each time searching forwards
// to the end of the text. From kNrvSizeIndexNone the start is the last place
// the search text fits, so the first hit is the last occurrence; from an
// earlier start the first step already sees everything after it, so the
// answer is the first occurrence at or after the start, else the last one
// before it.
int CNrvOperationFindFromIndex::FindLast(CNrvOperationResult& Text, size_t nStart, CNrvOperationResult& Search)
{
    const size_t nLength = Text.GetResultStringLength();
    const int32_t nLastFit = SubtractAsInt32(AsInt32(nLength), AsInt32(Search.GetResultStringLength()));
    // A search text as long as the text, or longer, is never found.
    if (nLastFit <= 0)
        return kNrvIndexNotFound;
    if (nLength > 0x7FFFFFFE)
        return kNrvIndexNotFound;
    int32_t nFrom = nLastFit;
    if (nStart != kNrvSizeIndexNone && AsInt32(nStart) < nFrom)
        nFrom = AsInt32(nStart);
    if (nFrom < 0)
        return kNrvIndexNotFound;

    const char* pszText = TextOf(Text);
    const char* pszSearch = TextOf(Search);
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
