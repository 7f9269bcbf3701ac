#include <cmath>
#include <filesystem>
#include <functional>

#include "GlFixture.h"
#include "HeadlessSession.h"
#include "rast/FrameBuffer.h"
#include "rast/Texture.h"

namespace vurel_test {
namespace {

rastQuad quad(float x, float y, float w, float h) { return rastQuad{x, y, w, h, 0, 0, 1, 1}; }

rastDrawState textured(rastTextureId texture, int sampler = -1) {
    rastDrawState s;
    s.texture = texture;
    s.sampler = sampler;
    return s;
}

rastDrawState colored(osg::Vec4f const& color) {
    rastDrawState s;
    s.color = color;
    return s;
}

// Draws the same scene with batching on and off, so that merged batches can
// be held against drawing one call at a time.
class CrossStateBatchingTest : public GlFixture {
protected:
    // Draws `scene` on a cleared target; answers its draw calls and keeps the picture.
    int drawScene(bool batching, std::function<void()> const& scene) {
        gl().setBatching(batching);
        beginFrame({0.1f, 0.2f, 0.3f, 1});
        gl().resetFrameStats();
        scene();
        gl().endRedraw();
        int const calls = gl().getFrameStats().drawCalls;
        endFrame();
        readBack();
        return calls;
    }

    // Draws `scene` both ways and counts the pixels that differ by more than
    // `tolerance`; answers the draw calls batching took. The batched picture stays.
    int drawBothWays(std::function<void()> const& scene, int& differing, int tolerance = 0) {
        drawScene(false, scene);
        std::vector<uint8_t> const reference = pixels;
        int const calls = drawScene(true, scene);
        differing = 0;
        for (size_t i = 0; i < pixels.size(); i += 4)
            for (size_t c = 0; c < 4; ++c)
                if (std::abs(int(pixels[i + c]) - int(reference[i + c])) > tolerance) {
                    ++differing;
                    break;
                }
        return calls;
    }

    void translate(float x, float y) { renderer().setModelViewMatrix(osg::Matrixf::translate(x, y, 0)); }
};

std::array<int, 4> const kBackground{26, 51, 76, 255};

TEST_F(CrossStateBatchingTest, ModelViewsClipsColoursAndTexturesShareOneCallWithUnbatchedPixels) {
    // Texels of every kind: straight alpha, coverage, and a target's premultiplied colour.
    std::vector<uint8_t> checker;
    for (int i = 0; i < 16; ++i) {
        uint8_t const v = uint8_t(i * 16 + 15);
        checker.insert(checker.end(), {v, uint8_t(255 - v), uint8_t(i % 2 ? 255 : 0), uint8_t(i % 3 ? 255 : 128)});
    }
    rastTextureId const picture = gl().createTexture(4, 4, rastPixelFormat::RGBA8, checker.data());
    uint8_t const coverage[16] = {0, 64, 128, 255, 255, 128, 64, 0, 32, 96, 160, 224, 224, 160, 96, 32};
    rastTextureId const glyphs = gl().createTexture(4, 4, rastPixelFormat::A8, coverage);
    auto target = renderer().createFrameBuffer({16, 16}, 0, false);
    target->renderTo([&] {
        renderer().setProjectionMatrix(osg::Matrixf::ortho(0, 16, 16, 0, -1, 1));
        rastQuad const all = quad(0, 0, 16, 16);
        gl().drawQuads(colored({1, 0, 0, 0.5f}), &all, nullptr, 1);
    });

    auto scene = [&] {
        translate(2, 3);
        rastDrawState tinted = textured(picture);
        tinted.color = osg::Vec4f(1, 0.8f, 0.6f, 1);
        tinted.opacity = 0.75f;
        rastQuad const first = quad(0, 0, 20, 20);
        gl().drawQuads(tinted, &first, nullptr, 1);

        renderer().pushClipRect(osg::Recti(10, 10, 40, 40));
        translate(15, 12);
        rastQuad const text[2] = {quad(0, 0, 30, 15), quad(0, 15, 30, 15)};
        osg::Vec4f const inks[2] = {{1, 1, 0, 1}, {0, 1, 1, 0.6f}};
        gl().drawQuads(textured(glyphs, 1), text, inks, 2);
        // Nested: the clip in force is (20, 10) - (40, 40). The same texture, filtered otherwise.
        renderer().pushClipRect(osg::Recti(20, 0, 64, 64));
        translate(5, 5);
        rastQuad const sharp = quad(20, 20, 30, 30);
        gl().drawQuads(textured(picture, 1), &sharp, nullptr, 1);
        renderer().popClipRect();
        translate(30, 30);
        rastDrawState faded = textured(target->getTexture()->getId());
        faded.opacity = 0.5f;
        rastQuad const composed = quad(0, 0, 16, 16);
        gl().drawQuads(faded, &composed, nullptr, 1);
        renderer().popClipRect();

        // Clipping off again.
        translate(0, 0);
        rastQuad const plain = quad(48, 0, 16, 16);
        gl().drawQuads(colored({0, 1, 0, 0.5f}), &plain, nullptr, 1);
        rastQuad const last = quad(0, 44, 20, 20);
        gl().drawQuads(textured(picture), &last, nullptr, 1);
    };
    int differing = -1;
    EXPECT_EQ(drawBothWays(scene, differing), 1);
    EXPECT_EQ(differing, 0);

    // What the clips cut stays background; what they keep is drawn.
    EXPECT_PIXEL_NEAR(pixel(41, 30), kBackground[0], kBackground[1], kBackground[2], 255, 0);
    EXPECT_PIXEL_NEAR(pixel(42, 35), kBackground[0], kBackground[1], kBackground[2], 255, 0);
    EXPECT_PIXEL_NEAR(pixel(30, 41), kBackground[0], kBackground[1], kBackground[2], 255, 0);
    EXPECT_NE(pixel(38, 38), kBackground);
    EXPECT_NE(pixel(10, 10), kBackground);
    EXPECT_PIXEL_NEAR(pixel(56, 8), 13, 153, 38, 255, 1);
}

TEST_F(CrossStateBatchingTest, RotatedModelViewsMergeAndProjectiveOnesFallBack) {
    auto const white = solidPicture(2, 2, {255, 255, 255, 255});
    rastTextureId const picture = gl().createTexture(2, 2, rastPixelFormat::RGBA8, white.data());
    rastQuad const corner = quad(0, 0, 8, 8);
    rastQuad const centred = quad(-12, -6, 24, 12);

    auto rotated = [&] {
        gl().drawQuads(colored({1, 0, 0, 1}), &corner, nullptr, 1);
        renderer().setModelViewMatrix(osg::Matrixf::rotate(0.5f, 0, 0, 1) * osg::Matrixf::translate(32, 32, 0));
        gl().drawQuads(textured(picture), &centred, nullptr, 1);
        // Tipped about x, out of the flat picture: still affine.
        renderer().setModelViewMatrix(osg::Matrixf::rotate(0.8f, 1, 0, 0) * osg::Matrixf::translate(32, 54, 0));
        gl().drawQuads(colored({0, 0, 1, 1}), &centred, nullptr, 1);
        translate(0, 0);
        gl().drawQuads(colored({0, 1, 0, 1}), &corner, nullptr, 1);
    };
    int differing = -1;
    EXPECT_EQ(drawBothWays(rotated, differing), 1);
    EXPECT_EQ(differing, 0);
    EXPECT_PIXEL_NEAR(pixel(32, 32), 255, 255, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(32, 54), 0, 0, 255, 255, 0);
    // 24 units tipped by 0.8 rad about x keep about 0.7 of their height.
    EXPECT_PIXEL_NEAR(pixel(32, 57), 0, 0, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(32, 59), kBackground[0], kBackground[1], kBackground[2], 255, 0);

    // Under a perspective projection the depth the model-view gives counts too.
    auto perspective = [&] {
        osg::Matrixf p = osg::Matrixf::ortho(0, float(size.x), float(size.y), 0, -1, 1);
        p(3, 2) = -0.05f;
        renderer().setProjectionMatrix(p);
        renderer().setModelViewMatrix(osg::Matrixf::rotate(0.8f, 1, 0, 0) * osg::Matrixf::translate(32, 32, 0));
        gl().drawQuads(textured(picture), &centred, nullptr, 1);
        translate(0, 0);
        gl().drawQuads(colored({0, 1, 0, 1}), &corner, nullptr, 1);
    };
    EXPECT_EQ(drawBothWays(perspective, differing), 1);
    EXPECT_EQ(differing, 0);

    // A model-view with a projective bottom row is drawn with GL's own matrices.
    auto projective = [&] {
        gl().drawQuads(colored({1, 0, 0, 1}), &corner, nullptr, 1);
        osg::Matrixf m = osg::Matrixf::translate(32, 32, 0);
        m(3, 0) = 0.01f;
        renderer().setModelViewMatrix(m);
        gl().drawQuads(textured(picture), &centred, nullptr, 1);
        translate(0, 0);
        gl().drawQuads(colored({0, 1, 0, 1}), &corner, nullptr, 1);
    };
    EXPECT_EQ(drawBothWays(projective, differing), 3);
    EXPECT_EQ(differing, 0);
    EXPECT_PIXEL_NEAR(pixel(4, 4), 0, 255, 0, 255, 0);
}

TEST_F(CrossStateBatchingTest, MoreTexturesThanUnitsStartANewBatch) {
    constexpr int kTextures = 10;
    rastTextureId textures[kTextures];
    std::array<uint8_t, 4> colours[kTextures];
    for (int i = 0; i < kTextures; ++i) {
        colours[i] = {uint8_t(25 * i), uint8_t(255 - 25 * i), uint8_t(i % 2 ? 200 : 50), 255};
        auto const texel = solidPicture(1, 1, colours[i]);
        textures[i] = gl().createTexture(1, 1, rastPixelFormat::RGBA8, texel.data());
    }
    auto row = [&] {
        for (int i = 0; i < kTextures; ++i) {
            rastQuad const q = quad(float(i * 6), 0, 6, 6);
            gl().drawQuads(textured(textures[i]), &q, nullptr, 1);
        }
        // The first texture again, in the batch that holds the last two.
        rastQuad const again = quad(0, 10, 6, 6);
        gl().drawQuads(textured(textures[0]), &again, nullptr, 1);
    };
    int differing = -1;
    EXPECT_EQ(drawBothWays(row, differing), 2);
    EXPECT_EQ(differing, 0);
    for (int i = 0; i < kTextures; ++i) {
        SCOPED_TRACE(i);
        EXPECT_PIXEL_NEAR(pixel(i * 6 + 3, 3), colours[i][0], colours[i][1], colours[i][2], 255, 0);
    }
    EXPECT_PIXEL_NEAR(pixel(3, 13), colours[0][0], colours[0][1], colours[0][2], 255, 0);
}

TEST_F(CrossStateBatchingTest, EffectQuadsBetweenMergedOnesKeepOrderAndClip) {
    rastProgramId const alpha = gl().loadProgram("PanelFx/guiAlpha.fx");
    ASSERT_NE(alpha, 0u);
    auto scene = [&] {
        rastQuad const under = quad(0, 0, 40, 40);
        gl().drawQuads(colored({1, 0, 0, 1}), &under, nullptr, 1);
        renderer().pushClipRect(osg::Recti(10, 10, 30, 30));
        rastDrawState effect = colored({0, 0, 1, 1});
        effect.program = alpha;
        float const half = 0.5f;
        gl().setProgramParameter(alpha, "timeCoeff", &half, 1);
        rastQuad const all = quad(0, 0, 64, 64);
        gl().drawQuads(effect, &all, nullptr, 1);
        translate(20, 20);
        rastQuad const over = quad(0, 0, 30, 30);
        gl().drawQuads(colored({0, 1, 0, 1}), &over, nullptr, 1);
        renderer().popClipRect();
        translate(0, 0);
    };
    int differing = -1;
    EXPECT_EQ(drawBothWays(scene, differing), 3);
    EXPECT_EQ(differing, 0);
    EXPECT_PIXEL_NEAR(pixel(5, 5), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(15, 15), 128, 0, 127, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(25, 25), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(35, 35), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(50, 50), kBackground[0], kBackground[1], kBackground[2], 255, 0);
}

TEST_F(CrossStateBatchingTest, GammaIntensityUploadsAndViewportsStillEndAMergedBatch) {
    auto const white = solidPicture(1, 1, {255, 255, 255, 255});
    rastTextureId const picture = gl().createTexture(1, 1, rastPixelFormat::RGBA8, white.data());
    auto scene = [&] {
        gl().updateTexture(picture, 0, 0, 1, 1, rastPixelFormat::RGBA8, white.data());
        rastQuad const q = quad(0, 0, 16, 16);
        rastDrawState grey = colored({0.5f, 0.5f, 0.5f, 1});
        gl().drawQuads(grey, &q, nullptr, 1);
        grey.gamma = 2.0f;
        rastQuad const brighter = quad(16, 0, 16, 16);
        gl().drawQuads(grey, &brighter, nullptr, 1);
        grey.intensity = 0.5f;
        rastQuad const dimmer = quad(32, 0, 16, 16);
        gl().drawQuads(grey, &dimmer, nullptr, 1);
        // A texture changed under the batch shows its new texels only to later quads.
        rastQuad const before = quad(0, 16, 16, 16);
        gl().drawQuads(textured(picture), &before, nullptr, 1);
        uint8_t const red[4] = {255, 0, 0, 255};
        gl().updateTexture(picture, 0, 0, 1, 1, rastPixelFormat::RGBA8, red);
        rastQuad const after = quad(16, 16, 16, 16);
        gl().drawQuads(textured(picture), &after, nullptr, 1);
        renderer().pushViewport(osg::Recti(0, 32, 32, 64));
        renderer().popViewport();
        gl().drawQuads(textured(picture), &q, nullptr, 1);
    };
    int differing = -1;
    EXPECT_EQ(drawBothWays(scene, differing), 6);
    EXPECT_EQ(differing, 0);
    EXPECT_PIXEL_NEAR(pixel(24, 8), 181, 181, 181, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(40, 8), 90, 90, 90, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(8, 24), 255, 255, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(24, 24), 255, 0, 0, 255, 0);
}

// A settled frame of the gallery, drawn with batching on or off: its draw
// calls and its picture. False without a GL context.
bool drawGalleryFrame(bool batching, std::vector<uint8_t>& rgba, int& calls) {
    // The gallery finds its window resources from the repository root.
    std::error_code error;
    std::filesystem::path const saved = std::filesystem::current_path(error);
    std::filesystem::current_path(gallery::Scene::rootDir(), error);
    gallery::HeadlessSession session(1.0f, gallery::Scene::defaultSkinFile());
    std::string message;
    EXPECT_TRUE(session.start(message)) << message;
    bool const drawn = session.hasGl();
    if (drawn) {
        rastBackend& backend = rastRenderer::get()->getBackend();
        static_cast<rastGlBackend&>(backend).setBatching(batching);
        session.play(gallery::Script());
        backend.resetFrameStats();
        session.runFrames(1);
        calls = backend.getFrameStats().drawCalls;
        int width = 0, height = 0;
        EXPECT_TRUE(session.readPixels(rgba, width, height));
    }
    std::filesystem::current_path(saved, error);
    return drawn;
}

TEST(CrossStateBatchingGallery, EveryWidgetInAFractionOfTheCallsAndTheSamePixels) {
    std::vector<uint8_t> unbatched, merged;
    int unbatchedCalls = 0, mergedCalls = 0;
    if (!drawGalleryFrame(false, unbatched, unbatchedCalls))
        GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
    ASSERT_TRUE(drawGalleryFrame(true, merged, mergedCalls));
    EXPECT_GT(unbatchedCalls, 50);
    EXPECT_LE(mergedCalls * 8, unbatchedCalls);
    ASSERT_EQ(merged.size(), unbatched.size());
    EXPECT_TRUE(merged == unbatched);
}

}  // namespace
}  // namespace vurel_test
