#pragma once

#include <cstdint>

namespace osg {

// Two signed 32-bit integers: pixel positions and sizes.
struct Vec2i {
    int32_t x = 0;
    int32_t y = 0;

    constexpr Vec2i() = default;
    constexpr Vec2i(int32_t x_, int32_t y_) : x(x_), y(y_) {}

    constexpr Vec2i operator+(Vec2i const& o) const { return {x + o.x, y + o.y}; }
    constexpr Vec2i operator-(Vec2i const& o) const { return {x - o.x, y - o.y}; }
    constexpr Vec2i operator-() const { return {-x, -y}; }
    constexpr Vec2i operator*(int32_t k) const { return {x * k, y * k}; }
    constexpr Vec2i operator/(int32_t k) const { return {x / k, y / k}; }
    Vec2i& operator+=(Vec2i const& o) { x += o.x; y += o.y; return *this; }
    Vec2i& operator-=(Vec2i const& o) { x -= o.x; y -= o.y; return *this; }
    constexpr bool operator==(Vec2i const&) const = default;
};

}  // namespace osg
