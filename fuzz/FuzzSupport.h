// Shared by the fuzz targets: the invariant check, the allocation limit and
// the result codes the engine may answer with.
#ifndef NRV_FUZZ_SUPPORT_H
#define NRV_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "NrvScanTypes.h"

// A broken invariant stops the run; libFuzzer then keeps the input as a crash.
#define NRV_FUZZ_CHECK(condition)                                                                  \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "invariant broken at %s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                          \
        }                                                                                          \
    } while (0)

// The expression language can grow a text exponentially (Substitute nested
// in Substitute), so a short input could ask for any amount of memory. The
// engine's answer to that is the std::bad_alloc of an exhausted allocator,
// which a sanitized build never throws: it aborts instead. While an object
// of this class lives, a single allocation above the limit throws
// std::bad_alloc, and the targets check that the engine survives it.
constexpr size_t kNrvFuzzAllocationLimit = 16 * 1024 * 1024;

class CNrvFuzzAllocationLimit {
public:
    CNrvFuzzAllocationLimit();
    ~CNrvFuzzAllocationLimit();
    CNrvFuzzAllocationLimit(const CNrvFuzzAllocationLimit&) = delete;
    CNrvFuzzAllocationLimit& operator=(const CNrvFuzzAllocationLimit&) = delete;
};

// The most memory that operator new held at once since this object was
// made, beyond what it held then: the cost of one step of an input, for the
// targets that bound it. One meter at a time.
class CNrvFuzzMemoryMeter {
public:
    CNrvFuzzMemoryMeter();
    CNrvFuzzMemoryMeter(const CNrvFuzzMemoryMeter&) = delete;
    CNrvFuzzMemoryMeter& operator=(const CNrvFuzzMemoryMeter&) = delete;
    size_t PeakBytes() const;

private:
    size_t m_nBase;
};

// True for the codes a parse or an edit may return.
inline bool NrvFuzzIsKnownResult(NRVRESULT result)
{
    return result == NRV_OK || result == NRV_OK_NOT_TRIGGERED || result == NRV_ERR_INVALID_PARAMETER ||
           result == NRV_ERR_OUT_OF_RANGE || result == NRV_ERR_SYNTAX || result == NRV_ERR_UNKNOWN_COMMAND ||
           result == NRV_ERR_PARAMETER_COUNT || result == NRV_ERR_GS1_INVALID;
}

#endif  // NRV_FUZZ_SUPPORT_H
