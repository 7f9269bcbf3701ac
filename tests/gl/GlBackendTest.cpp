#include <filesystem>
#include <fstream>

#include "GlFixture.h"
#include "LogCapture.h"
#include "rast/FrameBuffer.h"
#include "rast/Geometry.h"
#include "rast/Shader.h"
#include "rast/ShaderQuads.h"
#include "rast/Texture.h"
#include "rast/backends/gl/PngFile.h"

namespace vurel_test {
namespace {

rastQuad quad(float x, float y, float w, float h) { return rastQuad{x, y, w, h, 0, 0, 1, 1}; }

rastDrawState colored(osg::Vec4f const& color) {
    rastDrawState s;
    s.color = color;
    return s;
}

// A full-target quad in one colour.
void fill(rastGlBackend& gl, osg::Vec4f const& color, osg::Vec2i const& size) {
    rastQuad const q = quad(0, 0, float(size.x), float(size.y));
    gl.drawQuads(colored(color), &q, nullptr, 1);
}

class GlBackendTest : public GlFixture {};

TEST_F(GlBackendTest, QuadsCoverTheirPixelsFromTheTopLeftWithScaleShiftColourAndOpacity) {
    beginFrame({0, 0, 0, 1});
    rastQuad const q = quad(8, 4, 16, 8);
    gl().drawQuads(colored({1, 0, 0, 1}), &q, nullptr, 1);
    // Units scaled by 2 after the shift: (4 + 1) * 2 = 10 up to (4 + 4 + 1) * 2 = 18.
    rastDrawState scaled = colored({0, 1, 0, 1});
    scaled.scale = 2;
    scaled.shift = osg::Vec2f(1, 1);
    rastQuad const small = quad(4, 20, 4, 4);
    gl().drawQuads(scaled, &small, nullptr, 1);
    // Per-quad colour times the state's colour, alpha times opacity.
    rastDrawState faded = colored({1, 1, 1, 1});
    faded.opacity = 0.5f;
    rastQuad const last = quad(40, 40, 8, 8);
    osg::Vec4f const blue(0, 0, 1, 1);
    gl().drawQuads(faded, &last, &blue, 1);
    endFrame();
    readBack();

    EXPECT_PIXEL_NEAR(pixel(8, 4), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(23, 11), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(7, 4), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(24, 11), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(8, 12), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(10, 42), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(17, 49), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(18, 49), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(9, 42), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(44, 44), 0, 0, 128, 255, 1);
}

TEST_F(GlBackendTest, TexturesSampleStraightAlphaAndCoverageAsWhite) {
    beginFrame({0, 0, 1, 1});
    // A8: white where covered, the quad colour on top of that.
    uint8_t const coverage[2] = {255, 0};
    rastTextureId const a8 = gl().createTexture(2, 1, rastPixelFormat::A8, coverage);
    rastDrawState glyph = colored({0, 1, 0, 1});
    glyph.texture = a8;
    glyph.sampler = 1;
    rastQuad const q = quad(0, 0, 32, 16);
    gl().drawQuads(glyph, &q, nullptr, 1);
    // RGBA with half alpha, not premultiplied.
    auto const rgba = solidPicture(1, 1, {255, 0, 0, 128});
    rastTextureId const picture = gl().createTexture(1, 1, rastPixelFormat::RGBA8, rgba.data());
    rastDrawState plain;
    plain.texture = picture;
    rastQuad const q2 = quad(0, 32, 16, 16);
    gl().drawQuads(plain, &q2, nullptr, 1);
    // An array shows its first layer.
    rastTextureId const array = gl().createTextureArray(1, 1, 2);
    auto const yellow = solidPicture(1, 1, {255, 255, 0, 255});
    gl().updateTextureLayer(array, 0, yellow.data());
    rastDrawState layered;
    layered.texture = array;
    layered.textureIsArray = true;
    rastQuad const q3 = quad(32, 32, 16, 16);
    gl().drawQuads(layered, &q3, nullptr, 1);
    // A sub-rectangle upload shows up in the next draw.
    uint8_t const cover = 255;
    gl().updateTexture(a8, 1, 0, 1, 1, rastPixelFormat::A8, &cover);
    rastQuad const q4 = quad(0, 16, 32, 8);
    gl().drawQuads(glyph, &q4, nullptr, 1);
    endFrame();
    readBack();

    EXPECT_PIXEL_NEAR(pixel(4, 4), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(28, 4), 0, 0, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(28, 20), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(8, 40), 128, 0, 127, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(40, 40), 255, 255, 0, 255, 0);
}

TEST_F(GlBackendTest, ConsecutiveQuadsOfEqualStateGoOutAsOneDrawCall) {
    beginFrame({0, 0, 0, 1});
    auto const white = solidPicture(2, 2, {255, 255, 255, 255});
    rastTextureId const t1 = gl().createTexture(2, 2, rastPixelFormat::RGBA8, white.data());
    rastTextureId const t2 = gl().createTexture(2, 2, rastPixelFormat::RGBA8, white.data());
    rastDrawState s1, s2;
    s1.texture = t1;
    s2.texture = t2;
    rastQuad const quads[3] = {quad(0, 0, 4, 4), quad(4, 0, 4, 4), quad(8, 0, 4, 4)};

    gl().resetFrameStats();
    gl().drawQuads(s1, quads, nullptr, 3);
    gl().drawQuads(s1, quads, nullptr, 2);
    gl().drawQuads(s1, quads, nullptr, 1);
    gl().endFrame();
    EXPECT_EQ(gl().getFrameStats().drawCalls, 1);
    EXPECT_EQ(gl().getFrameStats().quads, 6);
    EXPECT_EQ(gl().getFrameStats().vertices, 24);

    // Plain quads stay in one batch across texture, clip and matrix changes.
    gl().resetFrameStats();
    gl().drawQuads(s1, quads, nullptr, 1);
    gl().drawQuads(s2, quads, nullptr, 1);
    gl().drawQuads(s1, quads, nullptr, 1);
    renderer().pushClipRect(osg::Recti(0, 0, 10, 10));
    gl().drawQuads(s1, quads, nullptr, 1);
    renderer().popClipRect();
    osg::Matrixf moved = osg::Matrixf::translate(1, 0, 0);
    renderer().setModelViewMatrix(moved);
    gl().drawQuads(s1, quads, nullptr, 1);
    gl().endFrame();
    EXPECT_EQ(gl().getFrameStats().drawCalls, 1);

    // The renderer's own objects: two batches over one texture are one call.
    rastTextureManager& textures = *renderer().getTextureManager();
    textures.addImage("white", {2, 2}, white.data());
    rastTexture* texture = textures.getTexture("white");
    rastShaderQuads list;
    list.beginBatch(texture, -1);
    list.addBatchQuad(0, 0, 4, 4);
    list.beginBatch(texture, -1);
    list.addBatchQuad(4, 4, 4, 4);
    list.addBatchQuad(8, 8, 4, 4);
    gl().resetFrameStats();
    list.draw(*renderer().getShader());
    renderer().endFrame();
    EXPECT_EQ(gl().getFrameStats().drawCalls, 1);
    EXPECT_EQ(gl().getFrameStats().quads, 3);
    textures.releaseTexture(texture);
    endFrame();
}

TEST_F(GlBackendTest, NestedClipRectsCutDrawingAndPopsRestoreTheOuterClip) {
    beginFrame({0, 0, 0, 1});
    renderer().pushClipRect(osg::Recti(10, 10, 30, 30));
    renderer().pushClipRect(osg::Recti(20, 0, 64, 64));
    fill(gl(), {1, 0, 0, 1}, size);
    renderer().popClipRect();
    rastQuad const strip = quad(0, 12, 64, 2);
    gl().drawQuads(colored({0, 1, 0, 1}), &strip, nullptr, 1);
    renderer().popClipRect();
    rastQuad const corner = quad(0, 60, 4, 4);
    gl().drawQuads(colored({0, 0, 1, 1}), &corner, nullptr, 1);
    endFrame();
    readBack();

    EXPECT_PIXEL_NEAR(pixel(20, 20), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(29, 29), 255, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(19, 20), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(30, 20), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(20, 30), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(10, 12), 0, 255, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(9, 12), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(30, 12), 0, 0, 0, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(1, 62), 0, 0, 255, 255, 0);
}

TEST_F(GlBackendTest, TargetsComposeLikeDirectDrawingAndStartTransparent) {
    auto target = renderer().createFrameBuffer({32, 32}, 0, false);
    auto multisampled = renderer().createFrameBuffer({32, 32}, 4, false);
    ASSERT_NE(target->getId(), 0u);
    ASSERT_NE(multisampled->getId(), 0u);
    osg::Vec4f const halfRed(1, 0, 0, 0.5f);
    auto drawInto = [&](rastFrameBuffer& fb) {
        fb.renderTo([&] {
            renderer().setProjectionMatrix(osg::Matrixf::ortho(0, 32, 32, 0, -1, 1));
            fill(gl(), halfRed, {32, 32});
        });
    };
    drawInto(*target);
    // Drawn again: the target starts afresh rather than piling up.
    drawInto(*target);
    drawInto(*multisampled);

    beginFrame({1, 1, 1, 1});
    rastQuad const left = quad(0, 0, 32, 32);
    gl().drawQuads(colored(halfRed), &left, nullptr, 1);
    rastDrawState picture;
    picture.texture = target->getTexture()->getId();
    rastQuad const right = quad(32, 0, 32, 32);
    gl().drawQuads(picture, &right, nullptr, 1);
    picture.texture = multisampled->getTexture()->getId();
    picture.opacity = 0.5f;
    rastQuad const below = quad(32, 32, 32, 32);
    gl().drawQuads(picture, &below, nullptr, 1);
    endFrame();
    readBack();

    EXPECT_PIXEL_NEAR(pixel(16, 16), 255, 128, 128, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(48, 16), 255, 128, 128, 255, 2);
    EXPECT_PIXEL_NEAR(pixel(48, 48), 255, 191, 191, 255, 2);
    EXPECT_PIXEL_NEAR(pixel(16, 48), 255, 255, 255, 255, 0);
}

// A target bound to be kept holds its pixels: only the clip is cleared and
// drawn again, with or without multisampling.
TEST_F(GlBackendTest, KeptTargetsAreDrawnAgainOnlyUnderTheClip) {
    ASSERT_TRUE(gl().canKeepFrameBuffer());
    for (int msaa : {0, 4}) {
        SCOPED_TRACE(msaa);
        auto target = renderer().createFrameBuffer({32, 32}, msaa, false);
        auto paint = [&](osg::Vec4f const& color, bool keep) {
            target->renderTo(
                [&] {
                    renderer().setProjectionMatrix(osg::Matrixf::ortho(0, 32, 32, 0, -1, 1));
                    rastRenderer::ClipRectGuard clip(keep ? osg::Recti(0, 0, 16, 32) : osg::Recti(0, 0, 32, 32));
                    renderer().clear({0, 0, 0, 0});
                    fill(gl(), color, {32, 32});
                },
                keep);
        };
        paint({1, 0, 0, 1}, false);
        paint({0, 0, 1, 0.5f}, true);

        beginFrame({1, 1, 1, 1});
        rastDrawState picture;
        picture.texture = target->getTexture()->getId();
        rastQuad const whole = quad(0, 0, 32, 32);
        gl().drawQuads(picture, &whole, nullptr, 1);
        endFrame();
        readBack();
        // Left: half blue over white, the red cleared; right: the red kept.
        EXPECT_PIXEL_NEAR(pixel(8, 16), 128, 128, 255, 255, 2);
        EXPECT_PIXEL_NEAR(pixel(24, 16), 255, 0, 0, 255, 0);
    }
}

TEST_F(GlBackendTest, MipmappedTargetsAverageWhenDrawnSmall) {
    auto target = renderer().createFrameBuffer({16, 16}, 0, true);
    target->renderTo([&] {
        renderer().setProjectionMatrix(osg::Matrixf::ortho(0, 16, 16, 0, -1, 1));
        // Stripes one pixel wide, white and transparent.
        for (int x = 0; x < 16; x += 2) {
            rastQuad const stripe = quad(float(x), 0, 1, 16);
            gl().drawQuads(colored({1, 1, 1, 1}), &stripe, nullptr, 1);
        }
    });
    beginFrame({0, 0, 0, 1});
    rastDrawState picture;
    picture.texture = target->getTexture()->getId();
    picture.sampler = 2;
    rastQuad const tiny = quad(0, 0, 2, 2);
    gl().drawQuads(picture, &tiny, nullptr, 1);
    endFrame();
    readBack();
    // Half white, half transparent, over black: mid grey once averaged.
    auto const p = pixel(0, 0);
    EXPECT_NEAR(p[0], 128, 24);
    EXPECT_NEAR(p[1], 128, 24);
}

TEST_F(GlBackendTest, ReadBackGivesStraightColourOverATransparentTarget) {
    beginFrame({0, 0, 0, 0});
    fill(gl(), {1, 0, 0, 0.5f}, size);
    endFrame();
    readBack();
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 64);
    EXPECT_PIXEL_NEAR(pixel(5, 5), 255, 0, 0, 128, 1);

    std::string const path = std::string(VUREL_GL_OUTPUT_DIR) + "/readback.png";
    std::filesystem::create_directories(VUREL_GL_OUTPUT_DIR);
    ASSERT_TRUE(gl().writePng(path.c_str()));
    std::vector<uint8_t> file;
    int w = 0, h = 0;
    ASSERT_TRUE(rastReadPng(path.c_str(), file, w, h));
    EXPECT_EQ(file, pixels);
}

TEST_F(GlBackendTest, EffectProgramsLoadAndMissingOrBrokenOnesAreLoggedAsZero) {
    for (char const* name : {"PanelFx/guiAlpha.fx", "PanelFx/guiAppearQuads.fx", "PanelFx/guiFlickerQuads.fx",
                             "PanelFx/guiShowMsg.fx"}) {
        rastProgramId const id = gl().loadProgram(name);
        EXPECT_NE(id, 0u) << name;
        gl().destroyProgram(id);
    }
    LogCapture log;
    EXPECT_EQ(gl().loadProgram("PanelFx/nothing.fx"), 0u);
    EXPECT_TRUE(log.contains("VUREL", 16, "PanelFx/nothing.fx"));

    std::filesystem::path const dir = std::filesystem::path(VUREL_GL_OUTPUT_DIR) / "fx";
    std::filesystem::create_directories(dir / "PanelFx");
    std::ofstream(dir / "PanelFx/broken.fx") << "-- vertex\nvoid main() { nonsense }\n-- fragment\nvoid main() {}\n";
    std::ofstream(dir / "PanelFx/halves.fx") << "void main() {}\n";
    rastGlBackend other(dir.string());
    log.clear();
    EXPECT_EQ(other.loadProgram("PanelFx/broken.fx"), 0u);
    EXPECT_TRUE(log.contains("VUREL", 16, "does not compile"));
    log.clear();
    EXPECT_EQ(other.loadProgram("PanelFx/halves.fx"), 0u);
    EXPECT_TRUE(log.contains("VUREL", 16, "stage"));
}

TEST_F(GlBackendTest, AlphaEffectFadesByItsTimeCoefficient) {
    rastProgramId const alpha = gl().loadProgram("PanelFx/guiAlpha.fx");
    ASSERT_NE(alpha, 0u);
    beginFrame({0, 0, 0, 1});
    rastDrawState state;
    state.program = alpha;
    float const half = 0.5f;
    gl().setProgramParameter(alpha, "timeCoeff", &half, 1);
    rastQuad const left = quad(0, 0, 32, 64);
    gl().drawQuads(state, &left, nullptr, 1);
    // A new value applies to later quads only, not to those already batched.
    float const full = 1.0f;
    gl().setProgramParameter(alpha, "timeCoeff", &full, 1);
    rastQuad const right = quad(32, 0, 32, 64);
    gl().drawQuads(state, &right, nullptr, 1);
    // Unknown parameters are ignored.
    gl().setProgramParameter(alpha, "noSuchThing", &full, 1);
    endFrame();
    readBack();
    EXPECT_PIXEL_NEAR(pixel(10, 10), 128, 128, 128, 255, 1);
    EXPECT_PIXEL_NEAR(pixel(50, 10), 255, 255, 255, 255, 0);
}

TEST_F(GlBackendTest, BadInputIsLoggedAndDrawingGoesOn) {
    LogCapture log;
    EXPECT_EQ(gl().createTexture(0, 4, rastPixelFormat::RGBA8, nullptr), 0u);
    EXPECT_EQ(gl().createTextureArray(4, 4, 0), 0u);
    rastTextureId dummy = 0;
    EXPECT_EQ(gl().createFrameBuffer(-1, 4, 0, false, dummy), 0u);
    EXPECT_EQ(dummy, 0u);
    rastTextureId const t = gl().createTexture(2, 2, rastPixelFormat::RGBA8, nullptr);
    uint8_t bytes[64] = {};
    gl().updateTexture(t, 1, 1, 2, 2, rastPixelFormat::RGBA8, bytes);
    gl().updateTexture(t, 0, 0, 1, 1, rastPixelFormat::A8, bytes);
    EXPECT_GE(log.lines().size(), 5u);

    rastVertex const vertices[3] = {};
    int const badIndices[3] = {0, 1, 7};
    rastGeometryId const g = gl().createGeometry(vertices, 3, badIndices, 3);
    EXPECT_TRUE(log.containsText("out of range"));

    beginFrame({0, 0, 0, 1});
    gl().drawGeometry(rastDrawState(), g, 99, 1, 0);
    EXPECT_TRUE(log.containsText("unknown primitive"));
    gl().drawGeometry(rastDrawState(), 12345, rastGeometry::Triangles, 1, 0);
    gl().bindFrameBuffer(777);
    EXPECT_TRUE(log.containsText("unknown frame buffer"));
    // An unknown texture draws untextured; destroyed names are ignored.
    rastDrawState lost;
    lost.texture = 999;
    fill(gl(), {0, 1, 0, 1}, size);
    rastQuad const q = quad(0, 0, 8, 8);
    gl().drawQuads(lost, &q, nullptr, 1);
    gl().destroyTexture(t);
    gl().destroyTexture(t);
    gl().destroyGeometry(g);
    gl().destroyFrameBuffer(4242);
    gl().setProgramParameter(4242, "timeCoeff", nullptr, 1);
    endFrame();
    readBack();
    EXPECT_PIXEL_NEAR(pixel(4, 4), 255, 255, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(20, 20), 0, 255, 0, 255, 0);
}

TEST(GlBackendWithoutContext, DoesNothingAndHandsOutNoObjects) {
    LogCapture log;
    rastGlBackend gl(VUREL_ASSET_DIR);
    EXPECT_FALSE(gl.isValid());
    EXPECT_TRUE(log.contains("VUREL", 16, "no OpenGL 3.3 context"));
    EXPECT_EQ(gl.createTexture(4, 4, rastPixelFormat::RGBA8, nullptr), 0u);
    EXPECT_EQ(gl.loadProgram("PanelFx/guiAlpha.fx"), 0u);
    rastQuad const q = quad(0, 0, 4, 4);
    gl.drawQuads(rastDrawState(), &q, nullptr, 1);
    gl.endFrame();
    std::vector<uint8_t> rgba;
    int w = 0, h = 0;
    EXPECT_FALSE(gl.readPixels(rgba, w, h));
}

}  // namespace
}  // namespace vurel_test
