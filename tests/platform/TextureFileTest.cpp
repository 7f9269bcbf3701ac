#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "LogCapture.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"
#include "rast/backends/recording/RecordingBackend.h"

namespace {

using Events = std::vector<std::string>;

// tests/data/pixels_4x2.png is a 4 by 2 RGBA picture; broken.png stops inside its header.
class TextureFileTest : public testing::Test {
protected:
    void SetUp() override {
        auto backend = std::make_unique<rastRecordingBackend>();
        rec_ = backend.get();
        renderer_ = rastRenderer::create(std::move(backend));
        ASSERT_NE(renderer_, nullptr);
    }
    void TearDown() override { rastRenderer::destroy(); }

    rastTextureManager& tm() { return *renderer_->getTextureManager(); }

    orm::basic_string<char> const file_{VUREL_TEST_DATA_DIR "/pixels_4x2.png"};
    rastRenderer* renderer_ = nullptr;
    rastRecordingBackend* rec_ = nullptr;
};

}  // namespace

TEST_F(TextureFileTest, PngLoadsOnceWithRectanglesCountedAndClamped) {
    rastTexture* whole = tm().getTexture(file_);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->getSize(), osg::Vec2i(4, 2));
    EXPECT_EQ(whole->getRect(), osg::Vec4f(0, 0, 1, 1));
    EXPECT_EQ(rec_->getEvents({"createTexture"}), Events{"createTexture id=" + std::to_string(whole->getId()) +
                                                         " 4x2 rgba"});

    rastTexture* middle = tm().getTexture(file_, {1, 0, 3, 2});
    ASSERT_NE(middle, nullptr);
    EXPECT_EQ(middle->getId(), whole->getId());
    EXPECT_EQ(middle->getRect(), osg::Vec4f(0.25f, 0, 0.75f, 1));
    EXPECT_EQ(tm().getTexture(file_, {1, 0, 3, 2}), middle);
    EXPECT_EQ(tm().getReferenceCount(middle), 2);

    // Rectangles reaching out of the picture are cut to it.
    rastTexture* clamped = tm().getTexture(file_, {2, 1, 10, 10});
    EXPECT_EQ(clamped->getPixelRect(), osg::Recti(2, 1, 4, 2));
    EXPECT_EQ(clamped->getRect(), osg::Vec4f(0.5f, 0.5f, 1, 1));
    rastTexture* outside = tm().getTexture(file_, {-8, 5, -2, 9});
    EXPECT_EQ(outside->getRectSize(), osg::Vec2i(0, 0));
    EXPECT_EQ(rec_->countEvents("createTexture"), 1u);
    EXPECT_EQ(tm().getTextureCount(), 4);

    // The picture leaves the GPU with the last reference to any of its rectangles.
    rastTextureId const id = whole->getId();
    for (rastTexture* t : {whole, middle, middle, clamped})
        tm().releaseTexture(t);
    EXPECT_TRUE(tm().hasImage(file_));
    EXPECT_EQ(rec_->countEvents("destroyTexture"), 0u);
    tm().releaseTexture(outside);
    EXPECT_EQ(rec_->getEvents({"destroyTexture"}), Events{"destroyTexture id=" + std::to_string(id)});
    EXPECT_FALSE(tm().hasImage(file_));
    EXPECT_EQ(tm().getImageCount(), 0);

    // Asked for again, it is read again.
    rastTexture* again = tm().getTexture(file_);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(rec_->countEvents("createTexture"), 2u);
    EXPECT_EQ(again->getSize(), osg::Vec2i(4, 2));
}

TEST_F(TextureFileTest, MissingAndBrokenFilesGiveNullWithOneLine) {
    vurel_test::LogCapture log;
    EXPECT_EQ(tm().getTexture("missing.png"), nullptr);
    EXPECT_EQ(tm().getTexture("missing.png", {0, 0, 2, 2}), nullptr);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_TRUE(log.contains("VUREL", 16, "missing.png"));

    orm::basic_string<char> const broken = VUREL_TEST_DATA_DIR "/broken.png";
    EXPECT_EQ(tm().getTexture(broken), nullptr);
    EXPECT_EQ(tm().getTexture(broken), nullptr);
    EXPECT_EQ(log.lines().size(), 2u);
    EXPECT_TRUE(log.contains("VUREL", 16, "broken.png"));
    EXPECT_EQ(rec_->countEvents("createTexture"), 0u);
    EXPECT_EQ(tm().getImageCount(), 0);

    // A search path lets a bare name be found that was missing before.
    EXPECT_EQ(tm().getTexture("pixels_4x2.png"), nullptr);
    tm().addSearchPath(VUREL_TEST_DATA_DIR);
    rastTexture* found = tm().getTexture("pixels_4x2.png");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->getSize(), osg::Vec2i(4, 2));
    EXPECT_EQ(log.lines().size(), 3u);

    // Releasing once too often is reported and changes nothing.
    rastTexture* part = tm().getTexture("pixels_4x2.png", {0, 0, 1, 1});
    tm().releaseTexture(part);
    tm().releaseTexture(part);
    EXPECT_EQ(log.lines().size(), 4u);
    EXPECT_EQ(tm().getReferenceCount(found), 1);
}

TEST_F(TextureFileTest, RegisteredPicturesOutliveTheirTextures) {
    tm().addImage("generated", {8, 8}, nullptr);
    rastTexture* t = tm().getTexture("generated", {0, 0, 4, 4});
    ASSERT_NE(t, nullptr);
    tm().releaseTexture(t);
    EXPECT_TRUE(tm().hasImage("generated"));
    EXPECT_EQ(rec_->countEvents("destroyTexture"), 0u);
    EXPECT_EQ(tm().getTexture("generated", {0, 0, 4, 4}), t);
}

TEST_F(TextureFileTest, SteadyGetAndReleaseDoNotAllocate) {
    rastTexture* held = tm().getTexture(file_);
    ASSERT_NE(held, nullptr);
    osg::Recti const a(0, 0, 2, 2), b(2, 0, 4, 2);
    auto cycle = [&] {
        // As a widget switching its look between two cells of one picture.
        rastTexture* ta = tm().getTexture(file_, a);
        rastTexture* tb = tm().getTexture(file_, b);
        tm().releaseTexture(ta);
        tm().releaseTexture(tb);
        tm().releaseTexture(tm().getTexture(file_));
    };
    cycle();
    vurel_test::AllocationCounter counter;
    for (int i = 0; i < 50; ++i)
        cycle();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_EQ(tm().getReferenceCount(held), 1);
    EXPECT_EQ(rec_->countEvents("createTexture"), 1u);
}
