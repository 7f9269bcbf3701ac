#pragma once

namespace osg {

// Four 32-bit floats. A colour is red, green, blue, alpha from 0 to 1.
struct Vec4f {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;

    constexpr Vec4f() = default;
    constexpr Vec4f(float x_, float y_, float z_, float w_) : x(x_), y(y_), z(z_), w(w_) {}

    constexpr float r() const { return x; }
    constexpr float g() const { return y; }
    constexpr float b() const { return z; }
    constexpr float a() const { return w; }

    constexpr Vec4f operator*(float k) const { return {x * k, y * k, z * k, w * k}; }
    constexpr Vec4f operator+(Vec4f const& o) const { return {x + o.x, y + o.y, z + o.z, w + o.w}; }
    constexpr Vec4f operator-(Vec4f const& o) const { return {x - o.x, y - o.y, z - o.z, w - o.w}; }
    constexpr bool operator==(Vec4f const&) const = default;
};

}  // namespace osg
