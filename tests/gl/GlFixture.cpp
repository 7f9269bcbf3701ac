#include "GlFixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <epoxy/gl.h>

#include "rast/backends/gl/PngFile.h"

namespace vurel_test {

void GlFixture::SetUp() {
    if (!context.create(size.x, size.y))
        GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
    auto backend = std::make_unique<rastGlBackend>(VUREL_ASSET_DIR);
    ASSERT_TRUE(backend->isValid());
    backend->setDefaultTarget(context.getFrameBuffer(), size.x, size.y);
    rastRenderer::create(std::move(backend));
}

void GlFixture::TearDown() {
    rastRenderer::destroy();
    context.destroy();
}

void GlFixture::beginFrame(osg::Vec4f const& clearColor) {
    renderer().pushViewport(osg::Recti(0, 0, size.x, size.y));
    renderer().setProjectionMatrix(osg::Matrixf::ortho(0, float(size.x), float(size.y), 0, -1, 1));
    renderer().setModelViewMatrix(osg::Matrixf());
    gl().clear(clearColor);
}

void GlFixture::endFrame() {
    renderer().popViewport();
    renderer().endFrame();
    // Bad input is caught before it reaches GL: GL itself never complains.
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

void GlFixture::readBack() { ASSERT_TRUE(gl().readPixels(pixels, width, height)); }

std::array<int, 4> GlFixture::pixel(int x, int y) const {
    size_t const i = (size_t(y) * size_t(width) + size_t(x)) * 4;
    if (x < 0 || y < 0 || x >= width || y >= height || i + 3 >= pixels.size())
        return {-1, -1, -1, -1};
    return {pixels[i], pixels[i + 1], pixels[i + 2], pixels[i + 3]};
}

void GlFixture::expectGolden(std::string const& name, int tolerance) {
    readBack();
    expectGoldenPicture(name, pixels, width, height, tolerance);
}

void expectGoldenPicture(std::string const& name, std::vector<uint8_t> const& pixels, int width, int height,
                         int tolerance) {
    std::string const golden = std::string(VUREL_GOLDEN_DIR) + "/" + name + ".png";
    if (std::getenv("VUREL_UPDATE_GOLDEN")) {
        ASSERT_TRUE(rastWritePng(golden.c_str(), pixels.data(), width, height));
        return;
    }
    std::filesystem::create_directories(VUREL_GL_OUTPUT_DIR);
    std::string const actualPath = std::string(VUREL_GL_OUTPUT_DIR) + "/" + name + ".actual.png";
    std::string const diffPath = std::string(VUREL_GL_OUTPUT_DIR) + "/" + name + ".diff.png";

    std::vector<uint8_t> expected;
    int w = 0, h = 0;
    if (!rastReadPng(golden.c_str(), expected, w, h) || w != width || h != height) {
        rastWritePng(actualPath.c_str(), pixels.data(), width, height);
        FAIL() << "no usable reference " << golden << "; the picture drawn is " << actualPath;
    }
    // The diff shows differing pixels in red, brighter the larger the difference.
    std::vector<uint8_t> diff(pixels.size(), 0);
    int bad = 0, worst = 0;
    for (size_t i = 0; i < pixels.size(); i += 4) {
        int d = 0;
        for (size_t c = 0; c < 4; ++c)
            d = std::max(d, std::abs(int(pixels[i + c]) - int(expected[i + c])));
        worst = std::max(worst, d);
        if (d > tolerance)
            ++bad;
        diff[i] = d > tolerance ? uint8_t(std::min(255, 64 + d)) : 0;
        diff[i + 1] = diff[i + 2] = uint8_t(expected[i + 1] / 4);
        diff[i + 3] = 255;
    }
    if (bad == 0)
        return;
    rastWritePng(actualPath.c_str(), pixels.data(), width, height);
    rastWritePng(diffPath.c_str(), diff.data(), width, height);
    ADD_FAILURE() << name << ": " << bad << " pixels differ by more than " << tolerance << " (worst " << worst
                  << "); see " << actualPath << " and " << diffPath;
}

std::vector<uint8_t> solidPicture(int w, int h, std::array<uint8_t, 4> rgba) {
    std::vector<uint8_t> out(size_t(w) * size_t(h) * 4);
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = rgba[i % 4];
    return out;
}

}  // namespace vurel_test
