#pragma once

#include <cstddef>

namespace vurel_bench {

// Heap allocations made so far by this program, its libraries included:
// the benchmark binary replaces the global operator new, and Dear ImGui's
// allocator hooks (imguiAlloc, imguiFree) count the same way.
size_t heapAllocations();

void* imguiAlloc(size_t size, void* user);
void imguiFree(void* pointer, void* user);

}  // namespace vurel_bench
