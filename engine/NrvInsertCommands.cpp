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

// -2 leaves the text as it is; -1 stands for the last byte, with the insert
// going behind it or in front of it; any other index must lie in the text.
// An empty text with -1 yields the insert for both commands: there is no
// byte to read in front of its start.
NRVRESULT CNrvOperationInsertAtIndex::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                              CNrvOperationResult& Index, CNrvOperationResult& Insert) const
{
    const bool bAfter = Variant() == kAfter;
    const size_t nIndex = Index.GetResultInteger();
    const char* pszText = Text.GetResultString();
    const size_t nLength = Text.GetResultStringLength();
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
    return WriteWithInsert(Result, pszText, nLength, nInFront, Insert.GetResultString(),
                           Insert.GetResultStringLength());
}

std::string CNrvOperationInsertAtIndex::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return NrvDescribePositionFailure("index", NrvIntegerOf(pParameters[1]), pParameters[0].GetResultStringLength());
}
