#include "GlFixture.h"

namespace vurel_test {
namespace {

class GlBatchingSwitchTest : public GlFixture {};

TEST_F(GlBatchingSwitchTest, WithBatchingOffEveryDrawQuadsIsADrawCallOfItsOwn) {
    beginFrame({0, 0, 0, 1});
    rastDrawState const white;
    rastQuad const quads[2] = {{0, 0, 8, 8, 0, 0, 1, 1}, {16, 0, 8, 8, 0, 0, 1, 1}};
    gl().resetFrameStats();
    gl().drawQuads(white, quads, nullptr, 2);
    // Switching sends what was batched so far.
    gl().setBatching(false);
    EXPECT_FALSE(gl().getBatching());
    EXPECT_EQ(gl().getFrameStats().drawCalls, 1);

    rastQuad const lower[2] = {{0, 32, 8, 8, 0, 0, 1, 1}, {16, 32, 8, 8, 0, 0, 1, 1}};
    gl().drawQuads(white, &lower[0], nullptr, 1);
    gl().drawQuads(white, &lower[1], nullptr, 1);
    EXPECT_EQ(gl().getFrameStats().drawCalls, 3);

    gl().setBatching(true);
    gl().drawQuads(white, quads, nullptr, 1);
    gl().drawQuads(white, lower, nullptr, 1);
    gl().endFrame();
    EXPECT_EQ(gl().getFrameStats().drawCalls, 4);
    EXPECT_EQ(gl().getFrameStats().quads, 6);
    endFrame();

    // Drawn one call at a time, the quads land where batched ones would.
    readBack();
    EXPECT_PIXEL_NEAR(pixel(20, 4), 255, 255, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(20, 36), 255, 255, 255, 255, 0);
    EXPECT_PIXEL_NEAR(pixel(12, 36), 0, 0, 0, 255, 0);
}

}  // namespace
}  // namespace vurel_test
