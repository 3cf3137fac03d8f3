#include "NrvReplaceCommands.h"

#include <cstring>
#include <memory>

NRVRESULT CNrvOperationReplace::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                        CNrvOperationResult& Search, CNrvOperationResult& Replacement) const
{
    const char* pszText = TextOf(Text);
    const size_t nText = Text.GetResultStringLength();
    const char* pszSearch = TextOf(Search);
    const size_t nSearch = Search.GetResultStringLength();
    const char* pszReplacement = TextOf(Replacement);
    const size_t nReplacement = Replacement.GetResultStringLength();

    // The text must be strictly longer than what is searched for.
    if (nText <= nSearch)
        return NRV_ERR_OUT_OF_RANGE;
    NRVRESULT limits = CheckSearchLimits(nText, nSearch);
    if (limits < 0)
        return limits;

    // Both texts are zero-terminated, so the search stops at the first zero
    // byte of either; an empty search text is found at 0.
    const char* pszFound = strstr(pszText, pszSearch);
    if (pszFound == nullptr)
        return Result.WriteResult(pszText, nText);
    const size_t indexStart = static_cast<size_t>(pszFound - pszText);
    const size_t indexStop = indexStart + nSearch;
    // A search text with a zero byte is matched only up to that byte, yet cuts
    // out its whole length: when that would run past the end, the occurrence
    // does not fit and the text stays as it is.
    if (indexStop > nText)
        return Result.WriteResult(pszText, nText);

    const size_t newSize = nText - nSearch + nReplacement;
    limits = CheckLimits(newSize, newSize);
    if (limits < 0)
        return limits;
    std::unique_ptr<char[]> pszResult(new char[newSize + 1]);
    char* pOut = pszResult.get();
    memcpy(pOut, pszText, indexStart);
    pOut += indexStart;
    if (nReplacement != 0) {
        memcpy(pOut, pszReplacement, nReplacement);
        pOut += nReplacement;
    }
    memcpy(pOut, pszText + indexStop, nText - indexStop);
    pszResult[newSize] = '\0';
    return Result.WriteResult(pszResult.get(), newSize);
}

std::string CNrvOperationReplace::DescribeFailure(NRVRESULT, CNrvOperationResult* pParameters) const
{
    return "the text (length " + std::to_string(pParameters[0].GetResultStringLength()) +
           ") is not longer than search (length " + std::to_string(pParameters[1].GetResultStringLength()) + ")";
}

NRVRESULT CNrvOperationSubstitute::Compute(CNrvOperationResult& Result, CNrvOperationResult& Text,
                                           CNrvOperationResult& Set, CNrvOperationResult& Replacement) const
{
    const char* pszInput = TextOf(Text);
    const size_t sizeInput = Text.GetResultStringLength();
    const char* pszSearch = TextOf(Set);
    const size_t sizeSearch = Set.GetResultStringLength();
    const char* pszReplacement = TextOf(Replacement);
    const size_t sizeReplacement = Replacement.GetResultStringLength();

    if (sizeSearch == 0)
        return NRV_ERR_OUT_OF_RANGE;
    NRVRESULT limits = CheckSearchLimits(sizeInput, sizeSearch);
    if (limits < 0)
        return limits;

    if (sizeSearch == 1 && sizeReplacement == 1) {
        // One byte for another, the usual case (a separator made visible):
        // the size stays; the text is copied whole, then each occurrence
        // found by memchr is overwritten.
        std::unique_ptr<char[]> pszResult(new char[sizeInput + 1]);
        const char cMember = pszSearch[0];
        const char cReplacement = pszReplacement[0];
        if (sizeInput != 0)
            memcpy(pszResult.get(), pszInput, sizeInput);
        char* p = pszResult.get();
        char* const pEnd = p + sizeInput;
        while (p < pEnd && (p = static_cast<char*>(memchr(p, cMember, static_cast<size_t>(pEnd - p)))) != nullptr)
            *p++ = cReplacement;
        pszResult[sizeInput] = '\0';
        return Result.WriteResult(pszResult.get(), sizeInput);
    }

    // The set's bytes marked in a table once per run, so each byte of the
    // text costs one look-up. Membership runs over the recorded length: a
    // zero byte in the set is a member like any other byte.
    bool abInSet[256] = {};
    for (size_t i = 0; i < sizeSearch; ++i)
        abInSet[static_cast<unsigned char>(pszSearch[i])] = true;
    const unsigned char* const pInput = reinterpret_cast<const unsigned char*>(pszInput);

    // A one-byte replacement keeps the size, so only other replacements need
    // the members counted first.
    size_t nCount = 0;
    if (sizeReplacement != 1) {
        for (size_t i = 0; i < sizeInput; ++i)
            nCount += abInSet[pInput[i]];
    }
    const size_t newSize = sizeInput - nCount + nCount * sizeReplacement;
    limits = CheckLimits(newSize, newSize);
    if (limits < 0)
        return limits;
    std::unique_ptr<char[]> pszResult(new char[newSize + 1]);
    if (sizeReplacement == 1) {
        const char cReplacement = pszReplacement[0];
        for (size_t i = 0; i < sizeInput; ++i)
            pszResult[i] = abInSet[pInput[i]] ? cReplacement : pszInput[i];
    } else {
        size_t index = 0;
        for (size_t i = 0; i < sizeInput; ++i) {
            if (!abInSet[pInput[i]]) {
                pszResult[index++] = pszInput[i];
            } else if (sizeReplacement != 0) {
                memcpy(pszResult.get() + index, pszReplacement, sizeReplacement);
                index += sizeReplacement;
            }
        }
    }
    pszResult[newSize] = '\0';
    return Result.WriteResult(pszResult.get(), newSize);
}

std::string CNrvOperationSubstitute::DescribeFailure(NRVRESULT, CNrvOperationResult*) const
{
    return "set is empty: there is no byte to replace";
}
