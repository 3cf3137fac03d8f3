#include "NrvInsertCommands.h"

#include <cstring>
#include <memory>

namespace {

// Writes the text's first nInFront bytes, the insert, then the rest of the
// text, built in one buffer of the final size.
NRVRESULT WriteWithInsert(CNrvOperationResult& Result, const char* pszText, size_t nTextLength, size_t nInFront,
                          const char* pszInsert, size_t nInsertLength)
{
    const size_t nSize = nTextLength + nInsertLength;
    std::unique_ptr<char[]> pszResult(new char[nSize + 1]);
    // Lengths may be 0 with a text pointer that is null.
    if (nInFront != 0)
        memcpy(pszResult.get(), pszText, nInFront);
    if (nInsertLength != 0)
        memcpy(pszResult.get() + nInFront, pszInsert, nInsertLength);
    if (nTextLength != nInFront)
        memcpy(pszResult.get() + nInFront + nInsertLength, pszText + nInFront, nTextLength - nInFront);
    pszResult[nSize] = '\0';
    return Result.WriteResult(pszResult.get(), nSize);
}

// What both commands share once their parameters are evaluated. -2 leaves
// the text as it is; -1 stands for the last byte, with the insert going
// behind it (bAfter) or in front of it; any other index must lie in the
// text. An empty text with -1 yields the insert, for both commands: there is
// no byte to read in front of its start.
NRVRESULT WriteInserted(CNrvOperationResult* pParameters, bool bAfter, CNrvOperationResult& Result)
{
    const size_t nIndex = pParameters[1].GetResultInteger();
    const char* pszText = pParameters[0].GetResultString();
    const size_t nLength = pParameters[0].GetResultStringLength();
    if (nIndex == kNrvSizeIndexNotFound)
        return Result.WriteResult(pszText, nLength);

    size_t nInFront = 0;
    if (nIndex == kNrvSizeIndexNone) {
        nInFront = bAfter ? nLength : (nLength != 0 ? nLength - 1 : 0);
    } else {
        if (nIndex >= nLength)
            return NRV_ERR_OUT_OF_RANGE;
        nInFront = bAfter ? nIndex + 1 : nIndex;
    }
    return WriteWithInsert(Result, pszText, nLength, nInFront, pParameters[2].GetResultString(),
                           pParameters[2].GetResultStringLength());
}

}  // namespace

NRVRESULT CNrvOperationInsertAfterIndex::Run(CNrvOperationResult& Result) const
{
    // All three run before the index is looked at: a failing insert fails
    // the command even when the index says to leave the text alone.
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0], parameters[2]);
    if (limits < 0)
        return limits;
    return WriteInserted(parameters, true, Result);
}

std::string CNrvOperationInsertAfterIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}

NRVRESULT CNrvOperationInsertBeforeIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;
    const NRVRESULT limits = CheckCopyLimits(parameters[0], parameters[2]);
    if (limits < 0)
        return limits;
    return WriteInserted(parameters, false, Result);
}

std::string CNrvOperationInsertBeforeIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}
