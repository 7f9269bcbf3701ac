#pragma once

namespace osg {

// Two 32-bit floats.
struct Vec2f {
    float x = 0.0f;
    float y = 0.0f;

    constexpr Vec2f() = default;
    constexpr Vec2f(float x_, float y_) : x(x_), y(y_) {}

    constexpr Vec2f operator+(Vec2f const& o) const { return {x + o.x, y + o.y}; }
    constexpr Vec2f operator-(Vec2f const& o) const { return {x - o.x, y - o.y}; }
    constexpr Vec2f operator*(float k) const { return {x * k, y * k}; }
    constexpr Vec2f operator/(float k) const { return {x / k, y / k}; }
    constexpr bool operator==(Vec2f const&) const = default;
};

}  // namespace osg
