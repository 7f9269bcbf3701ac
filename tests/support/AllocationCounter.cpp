#include "AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> g_allocations{0};
std::atomic<int> g_counting{0};

// Called for every counted allocation: a place for a debugger breakpoint
// when a test finds allocations it should not.
__attribute__((noinline)) void countAllocation() {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    asm volatile("");
}

void* countedAlloc(size_t size) {
    if (g_counting.load(std::memory_order_relaxed) > 0)
        countAllocation();
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}

void* countedAlignedAlloc(size_t size, std::align_val_t al) {
    if (g_counting.load(std::memory_order_relaxed) > 0)
        countAllocation();
    size_t const alignment = static_cast<size_t>(al);
    size_t const rounded = (size + alignment - 1) / alignment * alignment;
    if (void* p = std::aligned_alloc(alignment, rounded ? rounded : alignment))
        return p;
    throw std::bad_alloc();
}

}  // namespace

// Replacements of the global allocation functions. The shared library's calls
// resolve to these too, so the counter sees the toolkit's allocations.
void* operator new(size_t size) { return countedAlloc(size); }
void* operator new[](size_t size) { return countedAlloc(size); }
void* operator new(size_t size, std::align_val_t al) { return countedAlignedAlloc(size, al); }
void* operator new[](size_t size, std::align_val_t al) { return countedAlignedAlloc(size, al); }
// The nothrow forms too: the standard library asks for temporary buffers
// with them, and they are freed through the replaced operator delete.
void* operator new(size_t size, std::nothrow_t const&) noexcept {
    try {
        return countedAlloc(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](size_t size, std::nothrow_t const& tag) noexcept { return operator new(size, tag); }
void* operator new(size_t size, std::align_val_t al, std::nothrow_t const&) noexcept {
    try {
        return countedAlignedAlloc(size, al);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](size_t size, std::align_val_t al, std::nothrow_t const& tag) noexcept {
    return operator new(size, al, tag);
}
void operator delete(void* p, std::nothrow_t const&) noexcept { std::free(p); }
void operator delete[](void* p, std::nothrow_t const&) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t, std::nothrow_t const&) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t, std::nothrow_t const&) noexcept { std::free(p); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t, std::align_val_t) noexcept { std::free(p); }

namespace vurel_test {

AllocationCounter::AllocationCounter() : start_(g_allocations.load()) { g_counting.fetch_add(1); }

AllocationCounter::~AllocationCounter() { g_counting.fetch_sub(1); }

size_t AllocationCounter::count() const { return g_allocations.load() - start_; }

void* countedMalloc(size_t size) {
    if (g_counting.load(std::memory_order_relaxed) > 0)
        countAllocation();
    return std::malloc(size ? size : 1);
}

}  // namespace vurel_test
