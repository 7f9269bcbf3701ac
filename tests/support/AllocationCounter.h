#pragma once

#include <cstddef>

namespace vurel_test {

// Counts heap allocations made through operator new by the test executable
// and the library alike, while a scope is open.
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

}  // namespace vurel_test
