#pragma once

#include <memory>
#include <vector>

namespace orm {

// The core library's allocator. It forwards to the global heap, so that an
// application that replaces operator new (to count or to pool) sees every
// allocation the toolkit makes.
template <class T>
class allocator : public std::allocator<T> {
public:
    using value_type = T;
    allocator() noexcept = default;
    template <class U>
    allocator(allocator<U> const&) noexcept {}
    template <class U>
    bool operator==(allocator<U> const&) const noexcept { return true; }
};

template <class T>
using vector = std::vector<T, allocator<T>>;

}  // namespace orm
