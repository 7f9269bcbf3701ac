#include "osg/Matrixf.h"

#include <cmath>
#include <cstring>

namespace osg {

Quat Quat::fromAxisAngle(float angle, float ax, float ay, float az) {
    float const length = std::sqrt(ax * ax + ay * ay + az * az);
    if (length < 1e-7f)
        return Quat{};
    float const s = std::sin(angle * 0.5f) / length;
    return Quat{ax * s, ay * s, az * s, std::cos(angle * 0.5f)};
}

void Matrixf::makeIdentity() {
    std::memset(m_, 0, sizeof m_);
    m_[0] = m_[5] = m_[10] = m_[15] = 1.0f;
}

bool Matrixf::isIdentity() const { return *this == Matrixf(); }

Matrixf Matrixf::translate(float x, float y, float z) {
    Matrixf r;
    r.m_[12] = x;
    r.m_[13] = y;
    r.m_[14] = z;
    return r;
}

Matrixf Matrixf::rotate(Quat const& q) {
    Matrixf r;
    float const xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z;
    float const xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    float const wx = q.w * q.x, wy = q.w * q.y, wz = q.w * q.z;
    r(0, 0) = 1 - 2 * (yy + zz);
    r(0, 1) = 2 * (xy - wz);
    r(0, 2) = 2 * (xz + wy);
    r(1, 0) = 2 * (xy + wz);
    r(1, 1) = 1 - 2 * (xx + zz);
    r(1, 2) = 2 * (yz - wx);
    r(2, 0) = 2 * (xz - wy);
    r(2, 1) = 2 * (yz + wx);
    r(2, 2) = 1 - 2 * (xx + yy);
    return r;
}

Matrixf Matrixf::ortho(float left, float right, float bottom, float top, float zNear, float zFar) {
    Matrixf r;
    r(0, 0) = 2.0f / (right - left);
    r(1, 1) = 2.0f / (top - bottom);
    r(2, 2) = -2.0f / (zFar - zNear);
    r(0, 3) = -(right + left) / (right - left);
    r(1, 3) = -(top + bottom) / (top - bottom);
    r(2, 3) = -(zFar + zNear) / (zFar - zNear);
    return r;
}

Matrixf Matrixf::operator*(Matrixf const& o) const {
    Matrixf r;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k)
                sum += o(row, k) * (*this)(k, col);
            r(row, col) = sum;
        }
    return r;
}

Vec2f Matrixf::transformPoint(Vec2f const& p) const {
    return {(*this)(0, 0) * p.x + (*this)(0, 1) * p.y + (*this)(0, 3),
            (*this)(1, 0) * p.x + (*this)(1, 1) * p.y + (*this)(1, 3)};
}

bool Matrixf::operator==(Matrixf const& o) const { return std::memcmp(m_, o.m_, sizeof m_) == 0; }

}  // namespace osg
