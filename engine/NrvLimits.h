// The limits one edit runs under, as a profile's WriteLimitMaximumTextSize
// and WriteLimitWorkBudget set them; 0 is none.
#ifndef NRV_LIMITS_H
#define NRV_LIMITS_H

#include <cstddef>

struct TNrvLimits {
    size_t nMaximumTextSize = 0;  // the largest text a command may build
    size_t nWorkBase = 0;         // the work budget: nWorkBase + nWorkPerScanByte
    size_t nWorkPerScanByte = 0;  // times the scan's length
};

#endif  // NRV_LIMITS_H
