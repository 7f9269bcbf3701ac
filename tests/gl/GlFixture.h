#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/EglContext.h"
#include "rast/Renderer.h"
#include "rast/backends/gl/GlBackend.h"

namespace vurel_test {

// A headless GL context and the process-wide renderer over the GL backend,
// with a default target of `size`. Skips the test where EGL gives no context.
class GlFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    rastRenderer& renderer() { return *rastRenderer::get(); }
    rastGlBackend& gl() { return static_cast<rastGlBackend&>(rastRenderer::get()->getBackend()); }

    // As an application starts a frame: the whole target as viewport, a
    // projection in pixels with y down, identity model-view, cleared.
    void beginFrame(osg::Vec4f const& clearColor);
    void endFrame();

    // Reads the target back; then pixel() answers from that copy.
    void readBack();
    std::array<int, 4> pixel(int x, int y) const;

    // Compares the target with tests/golden/<name>.png, channel by channel
    // within `tolerance`. On a mismatch the actual picture and a diff are
    // written to the build tree. With VUREL_UPDATE_GOLDEN set the reference is
    // (re)written instead.
    void expectGolden(std::string const& name, int tolerance = 8);

    gui::EglContext context;
    osg::Vec2i size{64, 64};
    std::vector<uint8_t> pixels;
    int width = 0, height = 0;
};

// Compares RGBA `pixels` with tests/golden/<name>.png as expectGolden does,
// for pictures drawn outside a GlFixture.
void expectGoldenPicture(std::string const& name, std::vector<uint8_t> const& pixels, int width, int height,
                         int tolerance = 8);

// RGBA bytes of a picture of `w` x `h` in one colour.
std::vector<uint8_t> solidPicture(int w, int h, std::array<uint8_t, 4> rgba);

}  // namespace vurel_test

// Channels of a read-back pixel, within `tol` of the expected values.
#define EXPECT_PIXEL_NEAR(actual, r, g, b, a, tol)                                    \
    do {                                                                              \
        auto const px_ = (actual);                                                    \
        std::array<int, 4> const want_{r, g, b, a};                                   \
        for (int c_ = 0; c_ < 4; ++c_)                                                \
            EXPECT_NEAR(px_[c_], want_[c_], tol) << "channel " << c_ << " of pixel";  \
    } while (0)
