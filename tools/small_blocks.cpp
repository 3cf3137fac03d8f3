// nrv-edit's operator new and delete. The engine gives every value record's
// text a buffer of its own, so a short edit makes and releases a few small
// blocks per scan, and the C library's malloc/free pair (about 150
// instructions) costs more than the rest of the edit. The tool runs on one
// thread, so small blocks come from free lists, one per 16-byte size class up
// to 512 bytes, carved from 64 KiB slabs kept until the process ends (memory
// follows the most blocks of a class alive at once). Larger blocks go to
// malloc. The library itself is untouched: an application keeps whatever
// allocator it has. Left out of sanitizer builds, which must see every block.

#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
#define NRV_EDIT_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define NRV_EDIT_SANITIZED 1
#endif

#ifndef NRV_EDIT_SANITIZED

namespace {

// In front of every block: its size class, or kLarge for a malloc'd one.
// 16 bytes keep every block aligned as malloc's are.
struct alignas(16) SHeader {
    size_t nClass;
};

constexpr size_t kGranule = 16;
constexpr size_t kClasses = 32;  // blocks of up to 512 bytes
constexpr size_t kLarge = ~static_cast<size_t>(0);
constexpr size_t kSlabSize = 64 * 1024;

struct SFreeBlock {
    SFreeBlock* pNext;
};

SFreeBlock* g_apFree[kClasses + 1];
char* g_pSlab = nullptr;
size_t g_nSlabLeft = 0;

void* Allocate(size_t nSize) noexcept
{
    size_t nClass = (nSize + kGranule - 1) / kGranule;
    if (nClass == 0)
        nClass = 1;
    if (nClass <= kClasses) {
        if (SFreeBlock* pBlock = g_apFree[nClass]) {
            g_apFree[nClass] = pBlock->pNext;
            return pBlock;
        }
        const size_t nChunk = sizeof(SHeader) + nClass * kGranule;
        if (g_nSlabLeft < nChunk) {
            // What is left of the old slab is too small for this class and
            // stays unused.
            char* pSlab = static_cast<char*>(malloc(kSlabSize));
            if (pSlab == nullptr)
                return nullptr;
            g_pSlab = pSlab;
            g_nSlabLeft = kSlabSize;
        }
        SHeader* pHeader = new (g_pSlab) SHeader{nClass};
        g_pSlab += nChunk;
        g_nSlabLeft -= nChunk;
        return pHeader + 1;
    }
    if (nSize > kLarge - sizeof(SHeader))
        return nullptr;
    void* pChunk = malloc(sizeof(SHeader) + nSize);
    if (pChunk == nullptr)
        return nullptr;
    return new (pChunk) SHeader{kLarge} + 1;
}

void Release(void* p) noexcept
{
    if (p == nullptr)
        return;
    SHeader* pHeader = static_cast<SHeader*>(p) - 1;
    const size_t nClass = pHeader->nClass;
    if (nClass == kLarge) {
        free(pHeader);
        return;
    }
    SFreeBlock* pBlock = static_cast<SFreeBlock*>(p);
    pBlock->pNext = g_apFree[nClass];
    g_apFree[nClass] = pBlock;
}

void* AllocateOrThrow(size_t nSize)
{
    for (;;) {
        if (void* p = Allocate(nSize))
            return p;
        std::new_handler pHandler = std::get_new_handler();
        if (pHandler == nullptr)
            throw std::bad_alloc();
        pHandler();
    }
}

void* AllocateOrNull(size_t nSize) noexcept
{
    try {
        return AllocateOrThrow(nSize);
    } catch (...) {
        return nullptr;
    }
}

}  // namespace

void* operator new(size_t nSize)
{
    return AllocateOrThrow(nSize);
}
void* operator new[](size_t nSize)
{
    return AllocateOrThrow(nSize);
}
void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(nSize);
}
void* operator new[](size_t nSize, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(nSize);
}
void operator delete(void* p) noexcept
{
    Release(p);
}
void operator delete[](void* p) noexcept
{
    Release(p);
}
void operator delete(void* p, size_t) noexcept
{
    Release(p);
}
void operator delete[](void* p, size_t) noexcept
{
    Release(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    Release(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    Release(p);
}

#endif  // NRV_EDIT_SANITIZED
