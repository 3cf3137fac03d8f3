#include "bench_alloc.h"

#include <cstdlib>
#include <new>

namespace {

// Plain globals: the suite is single-threaded, and a thread-safe counter
// would add its own cost to every allocation measured.
size_t g_nAllocations = 0;
size_t g_nBytes = 0;
size_t g_nLiveBytes = 0;
size_t g_nPeakBytes = 0;

// Keeps operator new's alignment guarantee for the block after the header.
constexpr size_t kHeader = alignof(std::max_align_t) > sizeof(size_t) ? alignof(std::max_align_t) : sizeof(size_t);

void* Allocate(size_t nSize)
{
    void* pBlock = std::malloc(nSize + kHeader);
    if (pBlock == nullptr)
        return nullptr;
    *static_cast<size_t*>(pBlock) = nSize;
    ++g_nAllocations;
    g_nBytes += nSize;
    g_nLiveBytes += nSize;
    if (g_nLiveBytes > g_nPeakBytes)
        g_nPeakBytes = g_nLiveBytes;
    return static_cast<char*>(pBlock) + kHeader;
}

void* AllocateOrThrow(size_t nSize)
{
    void* p = Allocate(nSize);
    if (p == nullptr)
        throw std::bad_alloc();
    return p;
}

void Release(void* p)
{
    if (p == nullptr)
        return;
    void* pBlock = static_cast<char*>(p) - kHeader;
    g_nLiveBytes -= *static_cast<size_t*>(pBlock);
    std::free(pBlock);
}

}  // namespace

namespace nrvbench {

AllocationStats GetAllocationStats()
{
    return AllocationStats{g_nAllocations, g_nBytes, g_nLiveBytes, g_nPeakBytes};
}

void ResetPeak()
{
    g_nPeakBytes = g_nLiveBytes;
}

}  // namespace nrvbench

void* operator new(size_t nSize) { return AllocateOrThrow(nSize); }
void* operator new[](size_t nSize) { return AllocateOrThrow(nSize); }
void* operator new(size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void* operator new[](size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void operator delete(void* p) noexcept { Release(p); }
void operator delete[](void* p) noexcept { Release(p); }
void operator delete(void* p, size_t) noexcept { Release(p); }
void operator delete[](void* p, size_t) noexcept { Release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { Release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { Release(p); }
