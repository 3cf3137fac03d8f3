// Replaces the global operator new and delete of the test program, so that
// the C tests can count what the library holds and make any allocation of
// a call fail.
#include "counting_allocator.h"

#include <cstdlib>
#include <new>

namespace {

long g_nLive = 0;
long g_nFailIn = 0;  // allocations until the chosen one; 0: none chosen
bool g_bFailed = false;

void* Allocate(std::size_t nSize)
{
    if (g_nFailIn > 0 && --g_nFailIn == 0) {
        g_bFailed = true;
        throw std::bad_alloc();
    }
    void* p = std::malloc(nSize != 0 ? nSize : 1);
    if (p == nullptr)
        throw std::bad_alloc();
    ++g_nLive;
    return p;
}

void Release(void* p) noexcept
{
    if (p == nullptr)
        return;
    --g_nLive;
    std::free(p);
}

}  // namespace

extern "C" long NrvTestLiveBlocks(void)
{
    return g_nLive;
}

extern "C" void NrvTestFailAllocation(long nth)
{
    g_nFailIn = nth;
    g_bFailed = false;
}

extern "C" int NrvTestAllocationFailed(void)
{
    return g_bFailed ? 1 : 0;
}

void* operator new(std::size_t nSize)
{
    return Allocate(nSize);
}
void* operator new[](std::size_t nSize)
{
    return Allocate(nSize);
}
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return Allocate(nSize);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t nSize, const std::nothrow_t&) noexcept
{
    try {
        return Allocate(nSize);
    } catch (...) {
        return nullptr;
    }
}
void operator delete(void* p) noexcept
{
    Release(p);
}
void operator delete[](void* p) noexcept
{
    Release(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    Release(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    Release(p);
}
