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

}  // namespace

bool CNrvOperationInsertAfterIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SIS");
}

NRVRESULT CNrvOperationInsertAfterIndex::Run(CNrvOperationResult& Result) const
{
    // All three run before the index is looked at: a failing insert fails
    // the command even when the index says to leave the text alone.
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;

    const size_t nIndex = parameters[1].GetResultInteger();
    const char* pszText = parameters[0].GetResultString();
    const size_t nLength = parameters[0].GetResultStringLength();
    if (nIndex == kNrvSizeIndexNotFound)
        return Result.WriteResult(pszText, nLength);

    size_t nInFront = 0;
    if (nIndex == kNrvSizeIndexNone) {
        nInFront = nLength;  // append, even to an empty text
    } else {
        if (nIndex >= nLength)
            return NRV_ERR_OUT_OF_RANGE;
        nInFront = nIndex + 1;  // behind the byte at the index
    }
    return WriteWithInsert(Result, pszText, nLength, nInFront, parameters[2].GetResultString(),
                           parameters[2].GetResultStringLength());
}

bool CNrvOperationInsertBeforeIndex::CheckIfParametersAreCorrect() const
{
    return CheckParameterKinds("SIS");
}

NRVRESULT CNrvOperationInsertBeforeIndex::Run(CNrvOperationResult& Result) const
{
    CNrvOperationResult parameters[3];
    const NRVRESULT result = RunParameters(parameters, 3);
    if (result < 0)
        return result;

    const size_t nIndex = parameters[1].GetResultInteger();
    const char* pszText = parameters[0].GetResultString();
    const size_t nLength = parameters[0].GetResultStringLength();
    if (nIndex == kNrvSizeIndexNotFound)
        return Result.WriteResult(pszText, nLength);

    size_t nInFront = 0;
    if (nIndex == kNrvSizeIndexNone) {
        // In front of the last byte. An empty text has none, and gives the
        // insert alone, as InsertAfterIndex does.
        nInFront = nLength != 0 ? nLength - 1 : 0;
    } else {
        if (nIndex >= nLength)
            return NRV_ERR_OUT_OF_RANGE;
        nInFront = nIndex;  // in front of the byte at the index
    }
    return WriteWithInsert(Result, pszText, nLength, nInFront, parameters[2].GetResultString(),
                           parameters[2].GetResultStringLength());
}
