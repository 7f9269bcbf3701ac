#pragma once

#include <cstddef>

namespace vurel_test {

// Counts heap allocations made through operator new by the executable and
// the library alike, while a scope is open. Linking AllocationCounter.cpp
// replaces the global operator new; the tests and the benchmarks do.
class AllocationCounter {
public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(AllocationCounter const&) = delete;
    AllocationCounter& operator=(AllocationCounter const&) = delete;

    size_t count() const;

private:
    size_t start_;
};

// std::malloc, counted as operator new is: for a library's own allocator hook.
void* countedMalloc(size_t size);

}  // namespace vurel_test
