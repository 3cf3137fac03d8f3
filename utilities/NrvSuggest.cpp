#include "NrvSuggest.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (Lower(a[i]) != Lower(b[i]))
            return false;
    }
    return true;
}

// Edits from a to b, a swap of two neighbours counting as one, computed a
// row at a time: row i needs only rows i - 1 and i - 2.
size_t Distance(std::string_view a, std::string_view b, std::vector<size_t>* pRows)
{
    const size_t nWidth = b.size() + 1;
    pRows->assign(3 * nWidth, 0);
    size_t* pBeforePrevious = pRows->data();
    size_t* pPrevious = pBeforePrevious + nWidth;
    size_t* pCurrent = pPrevious + nWidth;
    for (size_t j = 0; j < nWidth; ++j)
        pPrevious[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        pCurrent[0] = i;
        for (size_t j = 1; j < nWidth; ++j) {
            const size_t nChange = pPrevious[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            size_t nBest = std::min({pPrevious[j] + 1, pCurrent[j - 1] + 1, nChange});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                nBest = std::min(nBest, pBeforePrevious[j - 2] + 1);
            pCurrent[j] = nBest;
        }
        std::swap(pBeforePrevious, pPrevious);  // the oldest row is overwritten next
        std::swap(pPrevious, pCurrent);
    }
    return pPrevious[b.size()];
}

}  // namespace

const char* NrvSuggest(std::string_view name, const char* const* ppCandidates, size_t nCount, size_t nMaxDistance)
{
    for (size_t i = 0; i < nCount; ++i) {
        if (EqualIgnoringCase(name, ppCandidates[i]))
            return ppCandidates[i];
    }
    const char* pszBest = nullptr;
    size_t nBest = nMaxDistance + 1;
    std::vector<size_t> rows;
    for (size_t i = 0; i < nCount; ++i) {
        const std::string_view candidate = ppCandidates[i];
        // The length difference alone is at least that many edits.
        const size_t nApart = name.size() > candidate.size() ? name.size() - candidate.size()
                                                             : candidate.size() - name.size();
        if (nApart >= nBest)
            continue;
        const size_t nDistance = Distance(name, candidate, &rows);
        if (nDistance < nBest) {
            nBest = nDistance;
            pszBest = ppCandidates[i];
        }
    }
    return pszBest;
}
