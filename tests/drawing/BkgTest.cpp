#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "RecordingRenderer.h"
#include "Skin/Bkg.h"
#include "rast/Texture.h"

using namespace gui;

namespace {

struct Cell {
    float x, y, w, h;
    float uMin, vMin, uMax, vMax;
};

void expectQuad(rastQuad const& q, Cell const& e, int index) {
    SCOPED_TRACE("quad " + std::to_string(index));
    EXPECT_FLOAT_EQ(q.x, e.x);
    EXPECT_FLOAT_EQ(q.y, e.y);
    EXPECT_FLOAT_EQ(q.w, e.w);
    EXPECT_FLOAT_EQ(q.h, e.h);
    EXPECT_FLOAT_EQ(q.uMin, e.uMin);
    EXPECT_FLOAT_EQ(q.vMin, e.vMin);
    EXPECT_FLOAT_EQ(q.uMax, e.uMax);
    EXPECT_FLOAT_EQ(q.vMax, e.vMax);
}

// Cell i gets red = bit 0, green = bit 1, blue = bit 2 of i, alpha 1.
orm::vector<osg::Vec4f> distinctColors() {
    orm::vector<osg::Vec4f> colors;
    for (int i = 0; i < Bkg::CellCount; ++i)
        colors.push_back({float(i & 1), float(i >> 1 & 1), float(i >> 2 & 1), 1});
    return colors;
}

orm::vector<osg::Vec4f> uniformColors(osg::Vec4f const& c) { return orm::vector<osg::Vec4f>(Bkg::CellCount, c); }

class BkgTest : public vurel_test::RecordingRendererTest {
protected:
    void SetUp() override {
        RecordingRendererTest::SetUp();
        std::vector<unsigned char> pixels(64 * 32 * 4, 0xFF);
        textures().addImage("bkg32x16", {32, 16}, pixels.data());
        textures().addImage("bkg64x32", {64, 32}, pixels.data());
        textures().addImage("other", {8, 8}, pixels.data());
    }

    rastTextureManager& textures() { return *renderer_->getTextureManager(); }

    // redraw, doRedraw and a direct draw; the draw recorded by the backend.
    rastRecordingBackend::Draw const* drawn(Bkg& bkg) {
        bkg.redraw();
        bkg.doRedraw();
        backend().clearEvents();
        bkg.draw();
        return backend().getDraws().empty() ? nullptr : &backend().getDraws().back();
    }

    static Bkg::Info info(char const* file, Insets const& insets, orm::vector<osg::Vec4f> const& colors,
                          osg::Recti const& rect = osg::Recti()) {
        Bkg::Info i;
        i.file = file;
        i.rect = rect;
        i.insets = insets;
        i.colors = colors;
        return i;
    }
};

}  // namespace

TEST_F(BkgTest, NineCellsHaveTheirPlacesTextureRectanglesAndColours) {
    Bkg bkg;
    bkg.set(info("bkg32x16", Insets(4, 2, 3, 5), distinctColors()));
    bkg.setSize({20, 12});
    bkg.setPosition({10, 20});
    auto const* d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    ASSERT_EQ(d->quads.size(), 9u);
    EXPECT_EQ(d->state.texture, bkg.getTexture()->getId());

    // Centre 13 x 5; right column at 17, bottom row at 7; the centre texture
    // stops a texel before the right (1 - 4/32) and bottom (1 - 6/16) rows.
    Cell const expected[9] = {
        {10, 20, 4, 2, 0, 0, 0.125f, 0.125f},           {14, 20, 13, 2, 0.125f, 0, 0.875f, 0.125f},
        {27, 20, 3, 2, 0.90625f, 0, 1, 0.125f},         {10, 22, 4, 5, 0, 0.125f, 0.125f, 0.625f},
        {14, 22, 13, 5, 0.125f, 0.125f, 0.875f, 0.625f}, {27, 22, 3, 5, 0.90625f, 0.125f, 1, 0.625f},
        {10, 27, 4, 5, 0, 0.6875f, 0.125f, 1},          {14, 27, 13, 5, 0.125f, 0.6875f, 0.875f, 1},
        {27, 27, 3, 5, 0.90625f, 0.6875f, 1, 1},
    };
    for (int i = 0; i < 9; ++i)
        expectQuad(d->quads[size_t(i)], expected[i], i);

    ASSERT_EQ(d->colors.size(), 9u);
    orm::vector<osg::Vec4f> const colors = distinctColors();
    for (size_t i = 0; i < 9; ++i)
        EXPECT_EQ(d->colors[i], colors[i]) << "cell " << i;
}

TEST_F(BkgTest, TextureRectangleOfASubPictureAndTheOneTexelEarlyCentre) {
    // Pixels 16..48 of 64 wide: u from 0.25 to 0.75; one texel is 1/64.
    osg::Recti const part(16, 0, 48, 32);
    Bkg bkg;
    bkg.setSize({40, 40});
    auto centreAndRight = [&](int right) {
        bkg.set(info("bkg64x32", Insets(4, 0, right, 0), uniformColors({1, 1, 1, 1}), part));
        auto const* d = drawn(bkg);
        EXPECT_NE(d, nullptr);
        // Only the middle row has height; the right cell exists with a right inset.
        return d ? d->quads : std::vector<rastQuad>();
    };

    std::vector<rastQuad> q = centreAndRight(0);
    ASSERT_EQ(q.size(), 2u);
    EXPECT_FLOAT_EQ(q[0].uMin, 0.25f);
    EXPECT_FLOAT_EQ(q[0].uMax, 0.3125f);
    EXPECT_FLOAT_EQ(q[1].uMin, 0.3125f);
    EXPECT_FLOAT_EQ(q[1].uMax, 0.75f);  // runs to uR

    q = centreAndRight(1);
    ASSERT_EQ(q.size(), 3u);
    EXPECT_FLOAT_EQ(q[1].uMax, 0.75f - 2.0f / 64);  // one texel before the right cell
    EXPECT_FLOAT_EQ(q[2].uMin, 0.75f - 1.0f / 64);
    EXPECT_FLOAT_EQ(q[2].uMax, 0.75f);
    EXPECT_FLOAT_EQ(q[2].x, 39);
    EXPECT_FLOAT_EQ(q[1].vMin, 0.0f);
    EXPECT_FLOAT_EQ(q[1].vMax, 1.0f);
}

TEST_F(BkgTest, CellsWithoutColourOrAreaAreSkipped) {
    Bkg bkg;
    // Smaller than its insets: no centre column or row; right and bottom at 1.
    bkg.set(info("", Insets(4, 4, 4, 4), uniformColors({1, 0, 0, 1})));
    bkg.setSize({5, 5});
    auto const* d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    ASSERT_EQ(d->quads.size(), 4u);
    expectQuad(d->quads[0], {0, 0, 4, 4, 0, 0, 0, 0}, 0);
    expectQuad(d->quads[1], {1, 0, 4, 4, 0, 0, 0, 0}, 2);
    expectQuad(d->quads[2], {0, 1, 4, 4, 0, 0, 0, 0}, 6);
    expectQuad(d->quads[3], {1, 1, 4, 4, 0, 0, 0, 0}, 8);
    EXPECT_EQ(d->state.texture, 0u);

    // An outline: the centre has no colour, and alpha 0.001 packs to nothing.
    orm::vector<osg::Vec4f> colors = uniformColors({0, 0, 1, 0.5f});
    colors[Bkg::CenterCenter] = {0, 0, 0, 0};
    colors[Bkg::LeftTop] = {0, 0, 0, 0.001f};
    bkg.set(info("", Insets(2, 2, 2, 2), colors));
    bkg.setSize({10, 10});
    d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    ASSERT_EQ(d->quads.size(), 7u);
    expectQuad(d->quads[0], {2, 0, 6, 2, 0, 0, 0, 0}, 1);
    expectQuad(d->quads[3], {8, 2, 2, 6, 0, 0, 0, 0}, 5);
    EXPECT_FLOAT_EQ(d->colors[0].w, 127.0f / 255.0f);  // truncated, not rounded

    // Zero insets: only the centre has an area, and it has no colour here.
    bkg.setInsets(Insets());
    EXPECT_EQ(drawn(bkg), nullptr);
    EXPECT_EQ(bkg.getQuads().getCount(), 0);
    bkg.set(info("", Insets(), uniformColors({1, 1, 1, 1})));
    d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    ASSERT_EQ(d->quads.size(), 1u);
    expectQuad(d->quads[0], {0, 0, 10, 10, 0, 0, 0, 0}, 4);

    // All cells (0, 0, 0, 0): draw and make do nothing.
    bkg.set(info("", Insets(2, 2, 2, 2), uniformColors({0, 0, 0, 0})));
    EXPECT_EQ(drawn(bkg), nullptr);
    GraphicCommands commands;
    bkg.make(&commands);
    EXPECT_TRUE(commands.getCommands().empty());
}

TEST_F(BkgTest, SettersMarkDirtyOnlyOnChange) {
    Bkg bkg;
    bkg.set(info("", Insets(1, 1, 1, 1), uniformColors({1, 0, 0, 1})));
    bkg.setSize({10, 10});
    drawn(bkg);
    EXPECT_FALSE(bkg.getDirty());

    bkg.setSize({10, 10});
    bkg.setInsets(Insets(1, 1, 1, 1));
    bkg.setPosition({0, 0});
    bkg.setTexture(nullptr);
    EXPECT_FALSE(bkg.getDirty());
    // Colours alone do not mark dirty; eight colours are ignored silently.
    vurel_test::LogCapture log;
    bkg.setCellColors(uniformColors({0, 1, 0, 1}));
    EXPECT_FALSE(bkg.getDirty());
    bkg.setCellColors(orm::vector<osg::Vec4f>(8, {0, 0, 1, 1}));
    EXPECT_TRUE(log.lines().empty());
    bkg.setDirty(true);
    auto const* d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->colors[0], osg::Vec4f(0, 1, 0, 1));

    bkg.setPosition({3, 4});
    EXPECT_TRUE(bkg.getDirty());
    d = drawn(bkg);
    ASSERT_NE(d, nullptr);
    EXPECT_FLOAT_EQ(d->quads[0].x, 3);
    EXPECT_FLOAT_EQ(d->quads[0].y, 4);

    bkg.set(info("", Insets(1, 1, 1, 1), uniformColors({0, 1, 0, 1})));
    EXPECT_TRUE(bkg.getDirty());  // `set` always does
}

TEST_F(BkgTest, TextureReferencesFollowTheBackground) {
    auto bkg = std::make_unique<Bkg>();
    bkg->set(info("bkg32x16", Insets(), uniformColors({1, 1, 1, 1})));
    rastTexture* first = bkg->getTexture();
    ASSERT_NE(first, nullptr);
    bkg->set(info("bkg32x16", Insets(), uniformColors({1, 1, 1, 1})));
    EXPECT_EQ(bkg->getTexture(), first);
    EXPECT_EQ(textures().getReferenceCount(first), 1);

    bkg->setTexture("other", osg::Recti());
    EXPECT_EQ(textures().getReferenceCount(first), 0);
    rastTexture* other = bkg->getTexture();
    EXPECT_EQ(textures().getReferenceCount(other), 1);

    // A texture of the caller is never released by the background.
    rastTexture* callers = textures().getTexture("bkg64x32");
    bkg->setTexture(callers);
    EXPECT_EQ(textures().getReferenceCount(other), 0);
    bkg.reset();
    EXPECT_EQ(textures().getReferenceCount(callers), 1);
    textures().releaseTexture(callers);

    bkg = std::make_unique<Bkg>();
    bkg->setTexture("other", osg::Recti());
    other = bkg->getTexture();
    bkg.reset();
    EXPECT_EQ(textures().getReferenceCount(other), 0);
    EXPECT_EQ(textures().getTextureCount(), 0);
}

TEST_F(BkgTest, ObjectsComeFromTheBlockPool) {
    size_t const used = Bkg::bkgPool.getUsedCount();
    EXPECT_EQ(Bkg::bkgPool.getObjectsPerBlock(), 1024u);
    Bkg* a = new Bkg;
    Bkg* b = new Bkg;
    EXPECT_EQ(Bkg::bkgPool.getUsedCount(), used + 2);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(a) % 16, 0u);
    delete a;
    Bkg* c = new Bkg;
    EXPECT_EQ(c, a);  // the freed slot comes back first
    delete b;
    delete c;
    EXPECT_EQ(Bkg::bkgPool.getUsedCount(), used);
}

TEST_F(BkgTest, CellNames) {
    EXPECT_STREQ(Bkg::getCellName(Bkg::LeftTop), "left_top");
    EXPECT_STREQ(Bkg::getCellName(Bkg::CenterCenter), "center_center");
    EXPECT_STREQ(Bkg::getCellName(Bkg::RightBottom), "right_bottom");
    vurel_test::LogCapture log;
    EXPECT_STREQ(Bkg::getCellName(9), "");
    EXPECT_STREQ(Bkg::getCellName(-1), "");
    EXPECT_EQ(log.lines().size(), 2u);
    EXPECT_TRUE(log.contains("VUREL", 64, "Invalid background cell type!"));
}

TEST_F(BkgTest, MakeThenReplayDrawsWhatDrawDraws) {
    Bkg bkg;
    bkg.set(info("bkg32x16", Insets(4, 2, 3, 5), distinctColors()));
    bkg.setSize({20, 12});
    bkg.setPosition({10, 20});
    ASSERT_NE(drawn(bkg), nullptr);
    std::vector<std::string> const direct = backend().getEvents();
    rastRecordingBackend::Draw const directDraw = backend().getDraws().at(0);

    GraphicCommands commands;
    bkg.make(&commands);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), direct);
    rastRecordingBackend::Draw const& replayed = backend().getDraws().at(0);
    EXPECT_EQ(replayed.colors, directDraw.colors);
    ASSERT_EQ(replayed.quads.size(), 9u);
    EXPECT_EQ(std::memcmp(replayed.quads.data(), directDraw.quads.data(), 9 * sizeof(rastQuad)), 0);
}
