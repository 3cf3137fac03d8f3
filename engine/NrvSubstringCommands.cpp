#include "NrvSubstringCommands.h"

#include <cstring>

namespace {

// Both reserved index values stand for "not given" here.
bool IsReservedIndex(size_t nIndex)
{
    return nIndex == kNrvSizeIndexNone || nIndex == kNrvSizeIndexNotFound;
}

// Stores the piece [nStart, nStop) of pszText, nStart <= nStop. WriteResult
// makes the one buffer of the piece's exact size.
NRVRESULT WritePiece(const char* pszText, size_t nStart, size_t nStop, CNrvOperationResult& Result)
{
    return Result.WriteResult(pszText + nStart, nStop - nStart);
}

// The place after the first occurrence of pszSearch (m bytes) in pszInput
// (n bytes), or where its last occurrence begins; kNrvIndexNotFound if none.
int FindMarker(const char* pszInput, size_t n, const char* pszSearch, size_t m, bool bFirst)
{
    int index = kNrvIndexNotFound;
    // A marker as long as the text or longer is never looked for, so a
    // marker equal to the whole text is not found.
    if (m >= n)
        return index;
    if (bFirst) {
        // Candidates are found by their first byte.
        const char* p = pszInput;
        const char* const pLast = pszInput + (n - m);
        while (p <= pLast) {
            p = static_cast<const char*>(memchr(p, pszSearch[0], static_cast<size_t>(pLast - p) + 1));
            if (p == nullptr)
                break;
            if (memcmp(p, pszSearch, m) == 0)
                return static_cast<int>(p - pszInput + m);
            ++p;
        }
        return index;
    }
    // The last occurrence is the first one met walking back from the end.
    for (size_t i = n - m + 1; i-- > 0;) {
        if (pszInput[i] == pszSearch[0] && memcmp(pszInput + i, pszSearch, m) == 0)
            return static_cast<int>(i);
    }
    return index;
}

}  // namespace

NRVRESULT CNrvOperationSubstring::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                          CNrvOperationResult& Start, CNrvOperationResult& Stop) const
{
    const char* pszText = TextOf(Text);
    const size_t nLength = Text.GetResultStringLength();

    // Indexes compare as sizes: a negative index other than the reserved
    // ones lies beyond the end and is clamped like any other.
    size_t nStart = Start.GetResultInteger();
    if (IsReservedIndex(nStart))
        nStart = 0;
    size_t nStop = Stop.GetResultInteger();
    if (IsReservedIndex(nStop))
        nStop = nLength;
    if (nStart > nLength)
        nStart = nLength;
    if (nStop > nLength)
        nStop = nLength;
    if (nStart > nStop)
        nStart = nStop;
    const NRVRESULT limits = CheckLimits(nStop - nStart, nStop - nStart);
    if (limits < 0)
        return limits;
    return WritePiece(pszText, nStart, nStop, Result);
}

NRVRESULT CNrvOperationExtract::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                        CNrvOperationResult& StartMarker, CNrvOperationResult& StopMarker) const
{
    const char* pszText = TextOf(Text);
    const size_t nLength = Text.GetResultStringLength();
    if (nLength == 0 || StartMarker.GetResultStringLength() == 0 || StopMarker.GetResultStringLength() == 0)
        return NRV_ERR_OUT_OF_RANGE;
    NRVRESULT limits = CheckPositionsFit(nLength);
    if (limits >= 0)
        limits = CheckSearchLimits(Text, StartMarker);
    if (limits >= 0)
        limits = CheckSearchLimits(Text, StopMarker);
    if (limits < 0)
        return limits;

    // The markers are looked for up to the first zero byte of the text and
    // of each marker; those lengths are measured once for both searches.
    const size_t nText = strlen(pszText);
    const char* pszStartMarker = TextOf(StartMarker);
    const char* pszStopMarker = TextOf(StopMarker);
    // A missing start marker means from the beginning, a missing stop marker
    // to the end.
    const int nAfterStart = FindMarker(pszText, nText, pszStartMarker, strlen(pszStartMarker), true);
    size_t nStart = nAfterStart >= 0 ? static_cast<size_t>(nAfterStart) : 0;
    const int nStopMarker = FindMarker(pszText, nText, pszStopMarker, strlen(pszStopMarker), false);
    size_t nStop = nStopMarker >= 0 ? static_cast<size_t>(nStopMarker) : nLength;
    if (nStop > nLength)
        nStop = nLength;
    // The last stop marker begins before the first start marker ends.
    if (nStart > nStop)
        nStart = nStop;
    return WritePiece(pszText, nStart, nStop, Result);
}

std::string CNrvOperationExtract::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    // Tested in the order Run tests them.
    if (pParameters[0].GetResultStringLength() == 0)
        return "the text is empty";
    return pParameters[1].GetResultStringLength() == 0 ? "startMarker is empty" : "stopMarker is empty";
}
