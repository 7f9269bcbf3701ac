#include "HeapCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> g_allocations{0};

// One counted allocation; a place for a debugger breakpoint.
__attribute__((noinline)) void countAllocation() {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    asm volatile("");
}

void* countedAlloc(size_t size) {
    countAllocation();
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}

void* countedAlignedAlloc(size_t size, std::align_val_t al) {
    countAllocation();
    size_t const alignment = static_cast<size_t>(al);
    size_t const rounded = (size + alignment - 1) / alignment * alignment;
    if (void* p = std::aligned_alloc(alignment, rounded ? rounded : alignment))
        return p;
    throw std::bad_alloc();
}

}  // namespace

// The shared library's calls resolve to these replacements too.
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

namespace vurel_bench {

size_t heapAllocations() { return g_allocations.load(std::memory_order_relaxed); }

void* imguiAlloc(size_t size, void*) {
    countAllocation();
    return std::malloc(size ? size : 1);
}

void imguiFree(void* pointer, void*) { std::free(pointer); }

}  // namespace vurel_bench
