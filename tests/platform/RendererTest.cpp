#include <gtest/gtest.h>

#include <numbers>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "rast/Font.h"
#include "rast/FrameBuffer.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/ShaderQuads.h"
#include "rast/TextString.h"
#include "rast/Texture.h"
#include "rast/backends/recording/RecordingBackend.h"

namespace {

using Events = std::vector<std::string>;
constexpr float kHalfPi = std::numbers::pi_v<float> / 2;

class RastTest : public testing::Test {
protected:
    void SetUp() override {
        auto backend = std::make_unique<rastRecordingBackend>();
        rec_ = backend.get();
        renderer_ = rastRenderer::create(std::move(backend));
        ASSERT_NE(renderer_, nullptr);
        ASSERT_EQ(&renderer_->getBackend(), rec_);
    }
    void TearDown() override { rastRenderer::destroy(); }

    rastShader& shader() { return *renderer_->getShader(); }
    rastTextureManager& textures() { return *renderer_->getTextureManager(); }
    rastTexture* addTexture(char const* name) {
        textures().addImage(name, {8, 8}, nullptr);
        return textures().getTexture(name);
    }

    rastRenderer* renderer_ = nullptr;
    rastRecordingBackend* rec_ = nullptr;
};

}  // namespace

TEST_F(RastTest, GuardsRestoreStateAndStacks) {
    renderer_->setOpacity(0.5f);
    {
        rastRenderer::ViewportGuard viewport({0, 0, 320, 200});
        rastRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0, 320, 200, 0);
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setTranslate(5, 6, 0);
        rastRenderer::ClipRectGuard clip({0, 0, 100, 100});
        rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueToTarget);
        rastRenderer::OpacityGuard opacity(0.25f);
        rastRenderer::ShiftPositionGuard shift(3, 4);
        rastRenderer::ShiftPositionGuard shift2(1, 1);
        EXPECT_EQ(renderer_->getStackDepth(), 5);
        EXPECT_EQ(renderer_->getViewport(), osg::Recti(0, 0, 320, 200));
        EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueToTarget);
        EXPECT_EQ(renderer_->getOpacity(), 0.25f);
        EXPECT_EQ(shader().getPositionShift(), osg::Vec2f(4, 5));
    }
    EXPECT_EQ(renderer_->getStackDepth(), 0);
    EXPECT_EQ(renderer_->getViewport(), osg::Recti(0, 0, 0, 0));
    EXPECT_TRUE(renderer_->getProjectionMatrix().isIdentity());
    EXPECT_TRUE(renderer_->getModelViewMatrix().isIdentity());
    EXPECT_EQ(renderer_->getClipRect(), nullptr);
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueNone);
    EXPECT_EQ(renderer_->getOpacity(), 0.5f);
    EXPECT_EQ(shader().getPositionShift(), osg::Vec2f(0, 0));
    EXPECT_EQ(rec_->getEvents().back(), "viewport 0 0 0 0");

    // Pops on empty stacks do nothing at all.
    rec_->clearEvents();
    renderer_->popClipRect();
    renderer_->popViewport();
    renderer_->popProjectionMatrix();
    renderer_->popModelViewMatrix();
    renderer_->popTechnique();
    EXPECT_TRUE(rec_->getEvents().empty());
    EXPECT_EQ(renderer_->getStackDepth(), 0);
}

TEST_F(RastTest, ClipRectsIntersectWithTheOneBelow) {
    renderer_->pushClipRect({10, 10, 90, 40});
    renderer_->pushClipRect({50, 0, 200, 100});
    EXPECT_EQ(*renderer_->getClipRect(), osg::Recti(50, 10, 90, 40));
    // A clip beside the current one leaves nothing visible, and stays a valid rectangle.
    renderer_->pushClipRect({200, 200, 300, 300});
    EXPECT_TRUE(renderer_->getClipRect()->isEmpty());
    EXPECT_FALSE(renderer_->getClipRect()->isInverted());
    EXPECT_EQ(renderer_->getClipDepth(), 3);
    for (int i = 0; i < 4; ++i)
        renderer_->popClipRect();
    EXPECT_EQ(rec_->getEvents({"pushClip", "popClip"}),
              (Events{"pushClipRect 10 10 90 40", "pushClipRect 50 10 90 40", "pushClipRect 200 200 200 200",
                      "popClipRect 50 10 90 40", "popClipRect 10 10 90 40", "popClipRect off"}));
}

TEST_F(RastTest, ClippedAwayTellsRectanglesWhollyOutsideTheClipAtAnyScale) {
    renderer_->setScale(2.0f);
    osg::Recti const box(0, 0, 30, 10);
    EXPECT_FALSE(renderer_->isClippedAway(box)) << "no clip in force";
    rastRenderer::ClipRectGuard clip(osg::Recti(0, 0, 100, 50));
    {
        rastRenderer::ModelViewMatrixGuard mv;
        mv.setTranslate(60, 0, 0);
        EXPECT_FALSE(renderer_->isClippedAway(box)) << "units 60 to 90 of 100";
        mv.setTranslate(45, 0, 0);
        EXPECT_TRUE(renderer_->isClippedAway(box)) << "units 105 to 135";
        mv.setTranslate(-75, 60, 0);
        EXPECT_TRUE(renderer_->isClippedAway(box)) << "units 30 to 60 across, 60 to 70 down: below it";
    }
    {
        rastRenderer::ModelViewMatrixGuard mv;
        mv.makeTranslate(500, 0, 0).setRotate(kHalfPi, 0, 0, 1);
        EXPECT_FALSE(renderer_->isClippedAway(box)) << "not told under a rotation";
    }
}

TEST_F(RastTest, ModelViewGuardMakesLocallyAndSetsScaled) {
    renderer_->setScale(2);
    {
        rastRenderer::ModelViewMatrixGuard guard;
        guard.makeTranslate(10, 20, 0);
        // make* only builds: nothing reaches the renderer yet.
        EXPECT_TRUE(renderer_->getModelViewMatrix().isIdentity());
        EXPECT_EQ(rec_->countEvents("modelView"), 0u);
        guard.setTranslate(1, 1, 0);
        EXPECT_EQ(renderer_->getModelViewMatrix().getTranslation(), osg::Vec2f(22, 42));
        {
            rastRenderer::ModelViewMatrixGuard inner;  // starts from the outer matrix
            inner.setTranslate(5, 0, 0);
            inner.setIdentity();
            inner.makeRotate(kHalfPi, 0, 0, 1).setTranslate(1, 0, 0);
            osg::Vec2f const p = renderer_->getModelViewMatrix().transformPoint({1, 0});
            EXPECT_NEAR(p.x, 2, 1e-5f);  // rotated first, then moved
            EXPECT_NEAR(p.y, 1, 1e-5f);
        }
        EXPECT_EQ(renderer_->getModelViewMatrix().getTranslation(), osg::Vec2f(22, 42));
        guard.setRotate(1.0f, 0, 0, 0);  // no axis: no rotation
        EXPECT_EQ(renderer_->getModelViewMatrix(), osg::Matrixf::translate(22, 42, 0));
    }
    EXPECT_TRUE(renderer_->getModelViewMatrix().isIdentity());
    EXPECT_EQ(rec_->getEvents({"modelView"}),
              (Events{"modelView 22 42", "modelView 32 42", "modelView 0 0", "modelView 2 0 rotated",
                      "modelView 22 42", "modelView 22 42", "modelView 0 0"}));
}

TEST_F(RastTest, ProjectionGuardOrthoIsScaled) {
    renderer_->setScale(2);
    {
        rastRenderer::ProjectionMatrixGuard guard;
        guard.makeOrtho2D(0, 400, 300, 0);
        // 400 by 300 units cover 800 by 600 pixels.
        osg::Vec2f const corner = renderer_->getProjectionMatrix().transformPoint({800, 600});
        EXPECT_NEAR(corner.x, 1, 1e-6f);
        EXPECT_NEAR(corner.y, -1, 1e-6f);
        osg::Vec2f const origin = renderer_->getProjectionMatrix().transformPoint({0, 0});
        EXPECT_NEAR(origin.x, -1, 1e-6f);
        EXPECT_NEAR(origin.y, 1, 1e-6f);
    }
    EXPECT_TRUE(renderer_->getProjectionMatrix().isIdentity());
    EXPECT_EQ(rec_->countEvents("projection"), 2u);
}

TEST_F(RastTest, TechniqueStackReachesDraws) {
    rastShaderQuads quads;
    quads.beginBatch(nullptr, -1);
    quads.addBatchQuad(0, 0, 1, 1);

    renderer_->setTechnique(rastRenderer::TechniqueNormal);
    renderer_->pushTechnique(rastRenderer::TechniqueToTarget);
    {
        rastRenderer::ShaderTechniqueGuard guard(rastRenderer::TechniqueAlternative);
        quads.draw(shader());
    }
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueToTarget);
    renderer_->popTechnique();
    renderer_->popTechnique();  // one too many: no change
    quads.draw(shader());
    renderer_->resetTechnique();
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueNone);

    ASSERT_EQ(rec_->getDraws().size(), 2u);
    EXPECT_EQ(rec_->getDraws()[0].state.technique, rastRenderer::TechniqueAlternative);
    EXPECT_EQ(rec_->getDraws()[1].state.technique, rastRenderer::TechniqueNormal);
}

TEST_F(RastTest, RenderToBindsFreshStateAndRestoresOuter) {
    auto target = renderer_->createFrameBuffer({64, 32}, 4, true);
    EXPECT_NE(target->getTexture()->getId(), 0u);
    EXPECT_EQ(target->getTexture()->getRectSize(), osg::Vec2i(64, 32));

    renderer_->pushViewport({0, 0, 800, 600});
    renderer_->setTechnique(rastRenderer::TechniqueNormal);
    renderer_->pushClipRect({10, 10, 90, 40});
    renderer_->setModelViewMatrix(osg::Matrixf::translate(7, 8, 0));
    rec_->clearEvents();
    target->renderTo([&] {
        EXPECT_EQ(renderer_->getViewport(), osg::Recti(0, 0, 64, 32));
        EXPECT_EQ(renderer_->getClipRect(), nullptr);
        EXPECT_EQ(renderer_->getClipDepth(), 0);
        rastRenderer::ClipRectGuard clip({0, 0, 200, 200});
        EXPECT_EQ(*renderer_->getClipRect(), osg::Recti(0, 0, 200, 200));  // not cut by the outer clip
        renderer_->pushTechnique(rastRenderer::TechniqueToTarget);       // left open on purpose
        renderer_->setModelViewMatrix(osg::Matrixf());
    });
    std::string const bind = "bindFrameBuffer id=" + std::to_string(target->getId());
    EXPECT_EQ(rec_->getEvents(),
              (Events{bind, "popClipRect off", "viewport 0 0 64 32", "pushClipRect 0 0 200 200", "modelView 0 0",
                      "popClipRect off", "bindFrameBuffer id=0", "viewport 0 0 800 600", "projection 1 1 0 0",
                      "modelView 7 8", "pushClipRect 10 10 90 40"}));
    EXPECT_EQ(*renderer_->getClipRect(), osg::Recti(10, 10, 90, 40));
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueNormal);
    EXPECT_EQ(renderer_->getStackDepth(), 2);

    // Nested targets inside a clip: every clip switched off is switched back on.
    auto inner = renderer_->createFrameBuffer({16, 16}, 0, false);
    rec_->clearEvents();
    target->renderTo([&] { inner->renderTo([] { rastRenderer::ClipRectGuard clip({1, 1, 5, 5}); }); });
    EXPECT_EQ(rec_->countEvents("pushClipRect"), rec_->countEvents("popClipRect"));
    EXPECT_EQ(rec_->getEvents({"pushClip"}).back(), "pushClipRect 10 10 90 40");

    renderer_->popClipRect();
    renderer_->popViewport();
    EXPECT_EQ(renderer_->getStackDepth(), 0);
    inner.reset();
    EXPECT_EQ(rec_->countEvents("destroyFrameBuffer"), 1u);
}

TEST_F(RastTest, ShaderQuadsDrawAllOrOneBatch) {
    rastTexture* a = addTexture("a");
    rastTexture* b = addTexture("b");
    rastShaderQuads quads;
    EXPECT_EQ(quads.beginBatch(a, -1), 0);
    quads.addBatchQuad(0, 0, 10, 10);
    quads.addBatchTexCoords(0, 0, 0.5f, 0.5f);
    quads.addBatchQuad(10, 0, 10, 10);
    quads.addBatchTexCoords(0.5f, 0, 1, 0.5f);
    quads.endBatch();
    EXPECT_EQ(quads.beginBatch(b, -1), 1);
    quads.addBatchQuad(0, 20, 5, 5);
    quads.endBatch();
    EXPECT_EQ(quads.beginBatch(a, -1), 2);  // stays empty: draws nothing
    quads.endBatch();

    shader().setColor({1, 0, 0, 1});
    quads.draw(shader());
    auto const& draws = rec_->getDraws();
    ASSERT_EQ(draws.size(), 2u);
    EXPECT_EQ(draws[0].state.texture, a->getId());
    ASSERT_EQ(draws[0].quads.size(), 2u);
    EXPECT_EQ(draws[0].quads[1].x, 10.0f);
    EXPECT_EQ(draws[0].quads[1].uMin, 0.5f);
    EXPECT_EQ(draws[0].quads[1].uMax, 1.0f);
    EXPECT_EQ(draws[0].state.color, osg::Vec4f(1, 0, 0, 1));
    EXPECT_EQ(draws[1].state.texture, b->getId());
    EXPECT_EQ(draws[1].quads.size(), 1u);

    rec_->clearEvents();
    quads.drawBatch(shader(), 1);
    quads.drawBatch(shader(), 3);
    quads.drawBatch(shader(), -1);
    ASSERT_EQ(rec_->getDraws().size(), 1u);
    EXPECT_EQ(rec_->getDraws()[0].state.texture, b->getId());
    EXPECT_EQ(rec_->getDraws()[0].quads[0].y, 20.0f);

    // A copy keeps its quads when the original is reset.
    rastShaderQuads const copy = quads;
    quads.reset();
    rec_->clearEvents();
    quads.draw(shader());
    EXPECT_TRUE(rec_->getDraws().empty());
    copy.draw(shader());
    EXPECT_EQ(rec_->getDraws().size(), 2u);
}

TEST_F(RastTest, BkgQuadsCarryCellColours) {
    rastShaderBkgQuads bkg;
    bkg.setTexture(addTexture("bkg"));
    for (int i = 0; i < 3; ++i)
        bkg.addQuad(rastQuad{float(i * 10), 0, 10, 10, 0, 0, 1, 1});
    float const colors[12] = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 0.5f};
    shader().setColor({0.2f, 0.2f, 0.2f, 1});  // the cells' colours replace it
    shader().setColors(colors, 3);
    bkg.draw(shader());
    ASSERT_EQ(rec_->getDraws().size(), 1u);
    auto const& draw = rec_->getDraws()[0];
    EXPECT_EQ(draw.state.texture, bkg.getTexture()->getId());
    EXPECT_EQ(draw.state.color, osg::Vec4f(1, 1, 1, 1));
    ASSERT_EQ(draw.colors.size(), 3u);
    EXPECT_EQ(draw.colors[2], osg::Vec4f(0, 0, 1, 0.5f));
    EXPECT_EQ(draw.quads[2].x, 20.0f);

    // Too few colours are not read past their end: the cells draw white.
    shader().setColors(colors, 2);
    bkg.draw(shader());
    EXPECT_TRUE(rec_->getDraws().back().colors.empty());

    for (int i = 0; i < 10; ++i)
        bkg.addQuad(rastQuad{});
    EXPECT_EQ(bkg.getCount(), rastShaderBkgQuads::maxQuads);
    bkg.clear();
    rec_->clearEvents();
    bkg.draw(shader());
    EXPECT_TRUE(rec_->getDraws().empty());
}

TEST_F(RastTest, TextStringLaysOutWithFixedWidthFont) {
    rastFontManager& fonts = *renderer_->getFontManager();
    fonts.registerFixedWidthFont("fixed", 8, 16, 12, -4);
    EXPECT_EQ(fonts.getFont("missing", 12, 0), nullptr);
    std::shared_ptr<rastFont> const font = fonts.getFont("fixed", 30, rastFont::Blur2);
    ASSERT_NE(font, nullptr);

    rastTextString text;
    text.setFont(font);
    text.setText(L"ab c");
    text.setPosition({100, 50});
    text.setColor({0, 1, 0, 1});
    text.setBkgColor({0, 0, 0, 0.5f});
    text.setShadowColor({0, 0, 0, 1});
    text.setShadowOffset({1, 2});
    text.setLineThroughColor({1, 0, 0, 1});
    text.setLineThroughHeight(2);
    EXPECT_EQ(text.getWidth(), 32);
    text.redraw();
    // Background, three shadow glyphs, three glyphs (the space has none), line-through.
    EXPECT_EQ(text.getQuadCount(), 8);

    text.draw(shader());
    ASSERT_EQ(rec_->getDraws().size(), 1u);
    auto const& all = rec_->getDraws()[0];
    EXPECT_EQ(all.state.texture, font->getAtlasTexture());
    ASSERT_EQ(all.quads.size(), 8u);
    ASSERT_EQ(all.colors.size(), 8u);
    auto box = [](rastQuad const& q) { return osg::Vec4f(q.x, q.y, q.w, q.h); };
    EXPECT_EQ(box(all.quads[0]), osg::Vec4f(100, 38, 32, 16));  // background over ascent and descent
    EXPECT_EQ(all.colors[0], osg::Vec4f(0, 0, 0, 0.5f));
    EXPECT_EQ(box(all.quads[1]), osg::Vec4f(101, 40, 8, 16));  // shadow, offset
    EXPECT_EQ(box(all.quads[4]), osg::Vec4f(100, 38, 8, 16));
    EXPECT_EQ(all.quads[6].x, 124.0f);  // 'c' after the space's advance
    EXPECT_EQ(all.colors[5], osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(all.quads[7].w, 32.0f);
    EXPECT_EQ(all.quads[7].h, 2.0f);
    EXPECT_EQ(all.colors[7], osg::Vec4f(1, 0, 0, 1));

    // An override colours the glyphs only.
    rec_->clearEvents();
    text.draw(shader(), {1, 1, 0, 1});
    auto const& parts = rec_->getDraws();
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(parts[0].quads.size(), 4u);
    EXPECT_EQ(parts[0].colors[1], osg::Vec4f(0, 0, 0, 1));
    EXPECT_EQ(parts[1].quads.size(), 3u);
    EXPECT_TRUE(parts[1].colors.empty());
    EXPECT_EQ(parts[1].state.color, osg::Vec4f(1, 1, 0, 1));
    EXPECT_EQ(parts[2].colors, std::vector<osg::Vec4f>{osg::Vec4f(1, 0, 0, 1)});

    // A blur halo is the glyph run in eight directions.
    text.setBlurColor({1, 1, 1, 0.5f});
    text.redraw();
    EXPECT_EQ(text.getQuadCount(), 8 + 8 * 3);

    // Copies are deep: emptying the original leaves the copy drawable.
    rastTextString const copy = text;
    text.setText(L"");
    text.redraw();
    EXPECT_EQ(text.getQuadCount(), 0);
    rec_->clearEvents();
    text.draw(shader());
    EXPECT_TRUE(rec_->getDraws().empty());
    copy.draw(shader());
    EXPECT_EQ(rec_->getDraws().size(), 1u);

    rastTextString fontless;
    fontless.setText(L"x");
    fontless.redraw();
    fontless.draw(shader(), {1, 1, 1, 1});
    EXPECT_EQ(fontless.getWidth(), 0);
    EXPECT_EQ(rec_->getDraws().size(), 1u);
}

TEST_F(RastTest, TextureManagerSharesCountsAndReleases) {
    rastTextureManager& tm = textures();
    tm.addImage("skin/button.png", {64, 32}, nullptr);
    rastTexture* whole = tm.getTexture("skin/button.png");
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->getSize(), osg::Vec2i(64, 32));
    EXPECT_EQ(whole->getRect(), osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(whole->getPixelRect(), osg::Recti(0, 0, 64, 32));

    rastTexture* part = tm.getTexture("skin/button.png", {16, 8, 48, 24});
    ASSERT_NE(part, nullptr);
    EXPECT_NE(part, whole);
    EXPECT_EQ(part->getId(), whole->getId());
    EXPECT_EQ(part->getRect(), osg::Vec4f(0.25f, 0.25f, 0.75f, 0.75f));
    EXPECT_EQ(part->getRectSize(), osg::Vec2i(32, 16));

    EXPECT_EQ(tm.getTexture("skin/button.png", {16, 8, 48, 24}), part);
    EXPECT_EQ(tm.getReferenceCount(part), 2);
    EXPECT_EQ(tm.getTextureCount(), 2);
    tm.releaseTexture(part);
    EXPECT_EQ(tm.getReferenceCount(part), 1);

    // Registering the picture again updates the textures already handed out.
    rastTextureId const oldId = whole->getId();
    tm.addImage("skin/button.png", {128, 64}, nullptr);
    EXPECT_EQ(rec_->getEvents({"destroyTexture"}), Events{"destroyTexture id=" + std::to_string(oldId)});
    EXPECT_NE(whole->getId(), oldId);
    EXPECT_EQ(part->getId(), whole->getId());
    EXPECT_EQ(whole->getPixelRect(), osg::Recti(0, 0, 128, 64));
    EXPECT_EQ(part->getRect(), osg::Vec4f(0.125f, 0.125f, 0.375f, 0.375f));

    tm.releaseTexture(part);
    EXPECT_EQ(tm.getTextureCount(), 1);
    EXPECT_EQ(tm.getReferenceCount(part), 0);

    // A missing file answers null, logged once; releasing null is silent, a stranger is logged.
    vurel_test::LogCapture log;
    EXPECT_EQ(tm.getTexture("missing.png"), nullptr);
    EXPECT_EQ(tm.getTexture("missing.png", {0, 0, 4, 4}), nullptr);
    EXPECT_EQ(tm.getTextureCount(), 1);
    EXPECT_EQ(log.lines().size(), 1u);
    log.clear();
    tm.releaseTexture(nullptr);
    EXPECT_TRUE(log.lines().empty());
    rastTexture stranger;
    tm.releaseTexture(&stranger);
    EXPECT_TRUE(log.contains("VUREL", 16, "releaseTexture"));
    EXPECT_EQ(tm.getReferenceCount(whole), 1);
}
