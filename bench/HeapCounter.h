#pragma once

#include <cstddef>

namespace vurel_bench {

// Heap allocations made by this program, its libraries included, since it
// first asked: the benchmark binary links the tests' allocation counter,
// which replaces the global operator new, and Dear ImGui's allocator hooks
// (imguiAlloc, imguiFree) count the same way.
size_t heapAllocations();

void* imguiAlloc(size_t size, void* user);
void imguiFree(void* pointer, void* user);

}  // namespace vurel_bench
