// "Did you mean ...?": the known name a mistyped one most likely meant.
#ifndef NRV_SUGGEST_H
#define NRV_SUGGEST_H

#include <cstddef>
#include <string_view>

// The candidate equal to name but for letter case (ASCII), else the one
// nearest to it within nMaxDistance edits (inserting, deleting or changing a
// byte, or swapping two neighbours, each count one), the first in the list
// on a tie; null when none is that close. A candidate whose length differs
// from the name's by more than nMaxDistance is not compared at all, so one
// call costs at most nCount times the square of (the longest candidate +
// nMaxDistance) steps and three rows of that length, however long the name.
const char* NrvSuggest(std::string_view name, const char* const* ppCandidates, size_t nCount,
                       size_t nMaxDistance = 2);

#endif  // NRV_SUGGEST_H
