#ifndef NRV_BENCH_ALLOC_H
#define NRV_BENCH_ALLOC_H

#include <cstddef>

// Every program of the suite replaces the global operator new and delete to
// count what the code under measurement allocates. Counting is two additions
// per allocation; the live and peak byte counts need the allocation's size,
// kept in a 16-byte header in front of each block.
namespace nrvbench {

struct AllocationStats {
    size_t nAllocations;  // calls of any operator new
    size_t nBytes;        // bytes requested by them
    size_t nLiveBytes;    // requested and not yet released
    size_t nPeakBytes;    // highest nLiveBytes since the last ResetPeak
};

AllocationStats GetAllocationStats();
// Makes the current live byte count the peak, to measure the peak of a span.
void ResetPeak();

}  // namespace nrvbench

#endif  // NRV_BENCH_ALLOC_H
