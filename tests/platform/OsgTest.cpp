#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "osg/Matrixf.h"
#include "osg/Rect.h"

namespace {

constexpr float kHalfPi = std::numbers::pi_v<float> / 2;

void expectPoint(osg::Vec2f const& actual, float x, float y) {
    EXPECT_NEAR(actual.x, x, 1e-5f);
    EXPECT_NEAR(actual.y, y, 1e-5f);
}

}  // namespace

// Products read in the order the transforms apply: a * b applies a first.
TEST(OsgMatrix, ProductAppliesLeftOperandFirst) {
    osg::Matrixf const t = osg::Matrixf::translate(10, 0, 0);
    osg::Matrixf const r = osg::Matrixf::rotate(kHalfPi, 0, 0, 1);
    expectPoint(r.transformPoint({1, 0}), 0, 1);  // counter-clockwise about z
    expectPoint((t * r).transformPoint({1, 0}), 0, 11);
    expectPoint((r * t).transformPoint({1, 0}), 10, 1);

    osg::Matrixf m = t;
    m.postMult(osg::Matrixf::translate(0, 5, 0)).postMult(r);
    expectPoint(m.transformPoint({1, 0}), -5, 11);
    osg::Matrixf n = t;
    n.preMult(r);
    expectPoint(n.transformPoint({1, 0}), 10, 1);
}

TEST(OsgMatrix, TranslateStoresColumnMajor) {
    osg::Matrixf const t = osg::Matrixf::translate(3, -4, 5);
    EXPECT_EQ(t(0, 3), 3.0f);
    EXPECT_EQ(t(2, 3), 5.0f);
    EXPECT_EQ(t.ptr()[12], 3.0f);  // the layout OpenGL reads
    EXPECT_EQ(t.ptr()[13], -4.0f);
    EXPECT_EQ(t.getTranslation(), osg::Vec2f(3, -4));
    expectPoint(t.transformPoint({1, 1}), 4, -3);
    EXPECT_FALSE(t.isIdentity());
    EXPECT_TRUE((t * osg::Matrixf::translate(-3, 4, -5)).isIdentity());
}

TEST(OsgMatrix, RotateByAxisAndAngle) {
    // The axis need not be of unit length.
    osg::Matrixf const a = osg::Matrixf::rotate(kHalfPi, 0, 0, 5);
    expectPoint(a.transformPoint({0, 2}), -2, 0);

    osg::Quat const q = osg::Quat::fromAxisAngle(kHalfPi, 0, 0, 1);
    EXPECT_NEAR(q.z, std::sin(kHalfPi / 2), 1e-6f);  // half the angle
    EXPECT_NEAR(q.w, std::cos(kHalfPi / 2), 1e-6f);

    // A zero or vanishing axis is no rotation at all.
    EXPECT_TRUE(osg::Quat::fromAxisAngle(1.0f, 0, 0, 0).isIdentity());
    EXPECT_TRUE(osg::Quat::fromAxisAngle(1.0f, 1e-8f, 0, 0).isIdentity());
    EXPECT_TRUE(osg::Matrixf::rotate(2.0f, 0, 0, 0).isIdentity());
    EXPECT_TRUE(osg::Matrixf::rotate(0.0f, 0, 0, 1).isIdentity());
}

TEST(OsgMatrix, OrthoMapsCornersToUnitSquare) {
    // A y-down screen: top-left is (-1, 1), bottom-right (1, -1).
    osg::Matrixf const m = osg::Matrixf::ortho(0, 800, 600, 0, -1, 1);
    expectPoint(m.transformPoint({0, 0}), -1, 1);
    expectPoint(m.transformPoint({800, 600}), 1, -1);
    expectPoint(m.transformPoint({400, 300}), 0, 0);
    osg::Matrixf const up = osg::Matrixf::ortho(-10, 10, -5, 5, -1, 1);
    expectPoint(up.transformPoint({-10, -5}), -1, -1);
    expectPoint(up.transformPoint({10, 5}), 1, 1);
}

TEST(OsgRect, UnsetValuesAndExpansion) {
    osg::Recti r;
    EXPECT_EQ(r.min.x, 2147483647);
    EXPECT_EQ(r.min.y, 2147483647);
    EXPECT_EQ(r.max.x, -2147483647 - 1);
    EXPECT_EQ(r.max.y, -2147483647 - 1);
    EXPECT_TRUE(r.isUnset());
    EXPECT_TRUE(r.isInverted());
    EXPECT_FALSE(r.contains({0, 0}));

    r.expandBy({5, 7});
    EXPECT_EQ(r, osg::Recti(5, 7, 5, 7));
    r.expandBy({-1, 10});
    EXPECT_EQ(r, osg::Recti(-1, 7, 5, 10));
    EXPECT_FALSE(r.isUnset());
    EXPECT_EQ(osg::Recti::fromPosSize({2, 3}, {10, 20}), osg::Recti(2, 3, 12, 23));
}

TEST(OsgRect, IntersectAndContains) {
    osg::Recti const a(0, 0, 100, 50);
    EXPECT_EQ(a.intersect({50, 20, 200, 40}), osg::Recti(50, 20, 100, 40));
    EXPECT_EQ(a.intersect({10, 10, 20, 20}), osg::Recti(10, 10, 20, 20));
    EXPECT_TRUE(a.intersect({200, 0, 300, 50}).isInverted());
    // Touching edges share nothing.
    osg::Recti const touching = a.intersect({100, 0, 150, 50});
    EXPECT_FALSE(touching.isInverted());
    EXPECT_TRUE(touching.isEmpty());
    // With an unset rectangle nothing is common.
    EXPECT_TRUE(a.intersect(osg::Recti()).isInverted());

    // Minimum inside, maximum outside.
    EXPECT_TRUE(a.contains({0, 0}));
    EXPECT_TRUE(a.contains({99, 49}));
    EXPECT_FALSE(a.contains({100, 10}));
    EXPECT_FALSE(a.contains({10, 50}));
    EXPECT_FALSE(a.contains({-1, 10}));
}
