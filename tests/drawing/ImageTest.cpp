#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "RecordingRenderer.h"
#include "Skin/Image.h"
#include "rast/Shader.h"
#include "rast/Texture.h"

using namespace gui;

namespace {

using Tiles = std::vector<std::pair<float, float>>;

class ImageTest : public vurel_test::RecordingRendererTest {
protected:
    void SetUp() override {
        RecordingRendererTest::SetUp();
        std::vector<unsigned char> pixels(10 * 20 * 4, 0xFF);
        for (char const* name : {"pic", "a", "b", "c"})
            textures().addImage(name, {10, 20}, pixels.data());
    }

    rastTextureManager& textures() { return *renderer_->getTextureManager(); }
    int references(char const* file) {
        // Asking for a texture counts a reference: look it up without one.
        rastTexture* t = textures().getTexture(file);
        int const n = textures().getReferenceCount(t) - 1;
        textures().releaseTexture(t);
        return n;
    }

    // Both stages for `view`, even when nothing was changed.
    static rastShaderQuads const& layout(Image& image, osg::Vec2i const& view) {
        image.setDirty(true);
        image.redraw(view);
        image.doRedraw();
        return image.getQuads();
    }

    static Tiles tiles(rastShaderQuads const& quads) {
        Tiles out;
        for (int i = 0; i < quads.getQuadCount(); ++i)
            out.emplace_back(quads.getQuad(i).x, quads.getQuad(i).y);
        return out;
    }

    static void expectQuad(rastShaderQuads const& quads, int index, float x, float y, float w, float h) {
        ASSERT_LT(index, quads.getQuadCount());
        rastQuad const& q = quads.getQuad(index);
        EXPECT_FLOAT_EQ(q.x, x);
        EXPECT_FLOAT_EQ(q.y, y);
        EXPECT_FLOAT_EQ(q.w, w);
        EXPECT_FLOAT_EQ(q.h, h);
    }

    // A 10 x 20 picture with the given alignment and tiling.
    void setUpPicture(Image& image, Align const& horz, Align const& vert, bool tileH, bool tileV) {
        Image::Info info;
        info.horzAlign = horz;
        info.vertAlign = vert;
        info.tileHorizontally = tileH;
        info.tileVertically = tileV;
        image.set(info);
        image.setTexture("pic", osg::Recti());
    }
};

}  // namespace

TEST_F(ImageTest, SizeAndAlignmentInsideTheInsets) {
    Image image;
    EXPECT_EQ(image.getSize(), osg::Vec2i(0, 0));
    setUpPicture(image, Align(Align::Min, 3), Align(Align::Middle), false, false);
    EXPECT_EQ(image.getSize(), osg::Vec2i(10, 20));
    image.setInsets(Insets(5, 6, 7, 8));

    // Inside 88 x 36: left at offset 3, centred vertically at 8.
    rastShaderQuads const& quads = layout(image, {100, 50});
    ASSERT_EQ(quads.getQuadCount(), 1);
    expectQuad(quads, 0, 8, 14, 10, 20);
    EXPECT_EQ(image.getOrigin(), osg::Vec2i(8, 14));
    EXPECT_EQ(quads.getBatch(0).texture, image.getTexture());
    EXPECT_FLOAT_EQ(quads.getQuad(0).uMax, 1.0f);
    EXPECT_FLOAT_EQ(quads.getQuad(0).vMax, 1.0f);

    image.setAlign(Align2(Align(Align::Max, -2), Align(Align::Bottom)));
    expectQuad(layout(image, {100, 50}), 0, 81, 22, 10, 20);
    image.setAlign(Align2(Align(Align::Stretch, 9), Align(Align::Stretch)));
    expectQuad(layout(image, {100, 50}), 0, 5, 6, 88, 36);

    image.setSize({5, 6});
    EXPECT_EQ(image.getSize(), osg::Vec2i(5, 6));
    // A part of the picture: its own size and texture rectangle.
    image.setSize({0, 0});
    image.setTexture("pic", osg::Recti(2, 2, 8, 12));
    EXPECT_EQ(image.getSize(), osg::Vec2i(6, 10));
    rastQuad const& q = layout(image, {100, 50}).getQuad(0);
    EXPECT_FLOAT_EQ(q.uMin, 0.2f);
    EXPECT_FLOAT_EQ(q.vMin, 0.1f);
    EXPECT_FLOAT_EQ(q.uMax, 0.8f);
    EXPECT_FLOAT_EQ(q.vMax, 0.6f);
}

TEST_F(ImageTest, ResizeToFillEnlargesAndNeverShrinks) {
    Image image;
    setUpPicture(image, Align(Align::Min), Align(Align::Middle), false, false);
    image.setResizeToFill(true);
    // k = max(40 / 20, 40 / 10) = 4: 40 x 80, centred vertically.
    expectQuad(layout(image, {40, 40}), 0, 0, -20, 40, 80);
    // Larger than the view on both axes: left alone.
    expectQuad(layout(image, {8, 8}), 0, 0, -6, 10, 20);
    // Wide enough but too low: k = 2.
    expectQuad(layout(image, {5, 40}), 0, 0, 0, 20, 40);
    image.setResizeToFill(false);
    expectQuad(layout(image, {40, 40}), 0, 0, 10, 10, 20);
}

TEST_F(ImageTest, TilingRowsColumnsAndGrids) {
    Image image;
    // A row steps back past insets.left (3) and forward while below avail.x (97).
    setUpPicture(image, Align(Align::Min, 25), Align(Align::Middle), true, false);
    image.setInsets(Insets(3, 0, 0, 0));
    Tiles expected;
    for (int i = 0; i < 10; ++i)
        expected.emplace_back(float(-2 + 10 * i), 10.0f);
    EXPECT_EQ(tiles(layout(image, {100, 40})), expected);
    EXPECT_EQ(image.getQuads().getBatchCount(), 1);
    // A stretched axis does not tile.
    image.setAlign(Align2(Align(Align::Stretch), Align(Align::Middle)));
    rastShaderQuads const& one = layout(image, {100, 40});
    ASSERT_EQ(one.getQuadCount(), 1);
    expectQuad(one, 0, 3, 10, 97, 20);

    // A column from offset 30 below insets.top 4: back to -6, forward below 46.
    setUpPicture(image, Align(Align::Min), Align(Align::Top, 30), false, true);
    image.setInsets(Insets(0, 4, 0, 0));
    EXPECT_EQ(tiles(layout(image, {30, 50})), (Tiles{{0, -6}, {0, 14}, {0, 34}}));

    // A grid steps back only as far as the align offsets: it starts at (9, 8),
    // where a row with the same settings would start at -1.
    setUpPicture(image, Align(Align::Min, 7), Align(Align::Top, 5), true, true);
    image.setInsets(Insets(2, 3, 0, 0));
    EXPECT_EQ(tiles(layout(image, {40, 50})), (Tiles{{9, 8}, {19, 8}, {29, 8}, {9, 28}, {19, 28}, {29, 28}}));
    image.setTileVertically(false);
    EXPECT_EQ(tiles(layout(image, {40, 50})), (Tiles{{-1, 8}, {9, 8}, {19, 8}, {29, 8}}));

    // A grid with one stretched axis tiles along the other.
    setUpPicture(image, Align(Align::Stretch), Align(Align::Top, 5), true, true);
    rastShaderQuads const& stretched = layout(image, {40, 50});
    EXPECT_EQ(tiles(stretched), (Tiles{{2, 8}, {2, 28}}));
    EXPECT_FLOAT_EQ(stretched.getQuad(1).w, 38);
    // Both stretched: one quad.
    setUpPicture(image, Align(Align::Stretch), Align(Align::Stretch), true, true);
    EXPECT_EQ(tiles(layout(image, {40, 50})), (Tiles{{2, 3}}));
}

TEST_F(ImageTest, TransparentOrMissingPictureDrawsNothing) {
    Image image;
    GraphicCommands commands;
    layout(image, {40, 40});
    image.draw();
    image.make(&commands);
    EXPECT_EQ(backend().countEvents("drawQuads"), 0u);
    EXPECT_TRUE(commands.getCommands().empty());

    setUpPicture(image, Align(), Align(), false, false);
    EXPECT_EQ(layout(image, {40, 40}).getQuadCount(), 1);
    image.draw(osg::Vec4f(1, 1, 1, 0));
    image.make(&commands, osg::Vec4f(1, 1, 1, 0));
    EXPECT_EQ(backend().countEvents("drawQuads"), 0u);
    EXPECT_TRUE(commands.getCommands().empty());

    Image::Info info = image.getInfo();
    info.color.w = 0;
    image.set(info);
    EXPECT_EQ(layout(image, {40, 40}).getQuadCount(), 0);
    image.draw();
    image.make(&commands);
    EXPECT_EQ(backend().countEvents("drawQuads"), 0u);
    EXPECT_TRUE(commands.getCommands().empty());
}

TEST_F(ImageTest, ReplacedTexturesLiveUntilTheQuadsAreRebuilt) {
    auto image = std::make_unique<Image>();
    image->setTexture("a", osg::Recti());
    layout(*image, {40, 40});
    image->setTexture("a", osg::Recti());
    EXPECT_EQ(references("a"), 1);

    image->setTexture("b", osg::Recti());
    image->redraw({40, 40});
    EXPECT_EQ(references("a"), 1);  // the quads still draw it
    image->doRedraw();
    EXPECT_EQ(references("a"), 0);
    EXPECT_EQ(references("b"), 1);

    // Two replacements in one frame: both kept, both released at doRedraw.
    image->setTexture("c", osg::Recti());
    image->setTexture("a", osg::Recti());
    EXPECT_EQ(image->getRetiredTextureCount(), 2);
    EXPECT_EQ(references("b"), 1);
    EXPECT_EQ(references("c"), 1);
    layout(*image, {40, 40});
    EXPECT_EQ(image->getRetiredTextureCount(), 0);
    EXPECT_EQ(references("b"), 0);
    EXPECT_EQ(references("c"), 0);
    EXPECT_EQ(references("a"), 1);

    // A texture of the caller is never released, not even when replaced.
    rastTexture* callers = textures().getTexture("b");
    image->setTexture(callers, false);
    EXPECT_FALSE(image->getOwnsTexture());
    layout(*image, {40, 40});
    EXPECT_EQ(references("a"), 0);
    image->setTexture("c", osg::Recti());
    layout(*image, {40, 40});
    EXPECT_EQ(references("b"), 1);

    // The destructor releases the texture and what was retired but not yet dropped.
    image->setTexture("a", osg::Recti());
    image.reset();
    EXPECT_EQ(references("a"), 0);
    EXPECT_EQ(references("c"), 0);
    EXPECT_EQ(references("b"), 1);
    textures().releaseTexture(callers);
    EXPECT_EQ(textures().getTextureCount(), 0);

    // Handed over with ownership: released at the end.
    image = std::make_unique<Image>();
    image->setTexture(textures().getTexture("c"), true);
    image.reset();
    EXPECT_EQ(textures().getTextureCount(), 0);
}

TEST_F(ImageTest, MakeThenReplayDrawsWhatDrawDraws) {
    Image image;
    setUpPicture(image, Align(Align::Min, 5), Align(Align::Top), true, false);
    Image::Info info = image.getInfo();
    info.userTexSampler = 2;
    image.set(info);
    layout(image, {60, 30});
    rastShader& shader = *renderer_->getShader();

    osg::Vec4f const color(1, 0, 0, 0.5f);
    backend().clearEvents();
    image.draw(color);
    std::vector<std::string> const direct = backend().getEvents();
    ASSERT_EQ(direct.size(), 1u);
    EXPECT_NE(direct[0].find("n=7"), std::string::npos) << direct[0];
    EXPECT_NE(direct[0].find("sampler=2"), std::string::npos) << direct[0];
    EXPECT_NE(direct[0].find("color=1,0,0,0.5"), std::string::npos) << direct[0];
    EXPECT_EQ(shader.getUserTextureFiltering(), -1);  // reset after an override

    GraphicCommands commands;
    image.make(&commands, color);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), direct);

    // Without a colour both use the picture's own.
    backend().clearEvents();
    image.draw();
    std::vector<std::string> const own = backend().getEvents();
    image.make(&commands);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), commands), own);
    EXPECT_EQ(own[0].find("color="), std::string::npos) << own[0];
}
