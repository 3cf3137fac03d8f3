// Replaced global allocation functions for the fuzz targets: the allocation
// limit and the memory meter of FuzzSupport.h, and the check of new/delete
// pairing that the sanitizer no longer makes once operator new is replaced. Each block has a
// 16-byte header with its size and form; the sanitizer is told to treat the
// header as unaddressable, so an underflow into it is still reported.
#include <sanitizer/asan_interface.h>

#include <cstdint>
#include <new>

#include "FuzzSupport.h"

namespace {

enum : uint32_t { kFormScalar = 0x5ca1a7u, kFormArray = 0xa77a7u, kMagic = 0x4e52564du };
struct alignas(16) TBlockHeader {
    size_t nSize;
    uint32_t nForm;
    uint32_t nMagic;
};
static_assert(sizeof(TBlockHeader) == 16, "the header keeps the block aligned");

int g_nLimitDepth = 0;
// The bytes operator new holds now, and the most it held since the last
// meter was made.
size_t g_nHeldBytes = 0;
size_t g_nPeakBytes = 0;

void* AllocateBlock(size_t nSize, uint32_t nForm)
{
    if (g_nLimitDepth > 0 && nSize > kNrvFuzzAllocationLimit)
        throw std::bad_alloc();
    void* pRaw = std::malloc(sizeof(TBlockHeader) + (nSize != 0 ? nSize : 1));
    if (pRaw == nullptr)
        throw std::bad_alloc();
    TBlockHeader* pHeader = static_cast<TBlockHeader*>(pRaw);
    pHeader->nSize = nSize;
    pHeader->nForm = nForm;
    pHeader->nMagic = kMagic;
    ASAN_POISON_MEMORY_REGION(pHeader, sizeof(TBlockHeader));
    g_nHeldBytes += nSize;
    if (g_nHeldBytes > g_nPeakBytes)
        g_nPeakBytes = g_nHeldBytes;
    return pHeader + 1;
}

void ReleaseBlock(void* p, uint32_t nForm) noexcept
{
    if (p == nullptr)
        return;
    TBlockHeader* pHeader = static_cast<TBlockHeader*>(p) - 1;
    ASAN_UNPOISON_MEMORY_REGION(pHeader, sizeof(TBlockHeader));
    NRV_FUZZ_CHECK(pHeader->nMagic == kMagic && "released a block that operator new did not make");
    NRV_FUZZ_CHECK(pHeader->nForm == nForm && "new/delete and new[]/delete[] mismatched");
    pHeader->nMagic = 0;
    g_nHeldBytes -= pHeader->nSize;
    std::free(pHeader);
}

}  // namespace

CNrvFuzzAllocationLimit::CNrvFuzzAllocationLimit()
{
    ++g_nLimitDepth;
}

CNrvFuzzAllocationLimit::~CNrvFuzzAllocationLimit()
{
    --g_nLimitDepth;
}

CNrvFuzzMemoryMeter::CNrvFuzzMemoryMeter() : m_nBase(g_nHeldBytes)
{
    g_nPeakBytes = g_nHeldBytes;
}

size_t CNrvFuzzMemoryMeter::PeakBytes() const
{
    return g_nPeakBytes - m_nBase;
}

void* operator new(size_t nSize)
{
    return AllocateBlock(nSize, kFormScalar);
}
void* operator new[](size_t nSize)
{
    return AllocateBlock(nSize, kFormArray);
}
void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return AllocateBlock(nSize, kFormScalar);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return AllocateBlock(nSize, kFormArray);
    } catch (...) {
        return nullptr;
    }
}
void operator delete(void* p) noexcept
{
    ReleaseBlock(p, kFormScalar);
}
void operator delete[](void* p) noexcept
{
    ReleaseBlock(p, kFormArray);
}
void operator delete(void* p, size_t) noexcept
{
    ReleaseBlock(p, kFormScalar);
}
void operator delete[](void* p, size_t) noexcept
{
    ReleaseBlock(p, kFormArray);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    ReleaseBlock(p, kFormScalar);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    ReleaseBlock(p, kFormArray);
}
