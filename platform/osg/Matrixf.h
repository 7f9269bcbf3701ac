#pragma once

#include "Export.h"
#include "osg/Vec2f.h"

namespace osg {

// A rotation as a unit quaternion (x, y, z, w).
struct Quat {
    float x = 0.0f, y = 0.0f, z = 0.0f, w = 1.0f;

    // The rotation by `angle` radians about the axis (ax, ay, az), built from
    // half the angle. An axis shorter than 1e-7 gives the identity.
    VUREL_EXPORT static Quat fromAxisAngle(float angle, float ax, float ay, float az);
    constexpr bool isIdentity() const { return x == 0.0f && y == 0.0f && z == 0.0f && w == 1.0f; }
};

// A 4x4 float matrix stored column by column as OpenGL expects: element
// (row r, column c) is m[c * 4 + r], the translation in m[12..14].
// Products read in the order transforms apply: `a * b` applies a first and b
// after it, so `M = M * T` adds T after M, and `T * M` puts T in front.
// (Element-wise this is b times a for column vectors.)
class VUREL_EXPORT Matrixf {
public:
    Matrixf() { makeIdentity(); }

    static Matrixf identity() { return Matrixf(); }
    static Matrixf translate(float x, float y, float z);
    static Matrixf rotate(Quat const& q);
    static Matrixf rotate(float angle, float ax, float ay, float az) { return rotate(Quat::fromAxisAngle(angle, ax, ay, az)); }
    static Matrixf ortho(float left, float right, float bottom, float top, float zNear, float zFar);

    void makeIdentity();
    bool isIdentity() const;

    float& operator()(int row, int col) { return m_[col * 4 + row]; }
    float operator()(int row, int col) const { return m_[col * 4 + row]; }
    float const* ptr() const { return m_; }

    Matrixf operator*(Matrixf const& o) const;
    Matrixf& postMult(Matrixf const& o) { return *this = *this * o; }
    Matrixf& preMult(Matrixf const& o) { return *this = o * *this; }

    // Transforms the point (x, y, 0, 1) and drops z and w.
    Vec2f transformPoint(Vec2f const& p) const;
    Vec2f getTranslation() const { return {m_[12], m_[13]}; }

    bool operator==(Matrixf const& o) const;

private:
    float m_[16];
};

}  // namespace osg
