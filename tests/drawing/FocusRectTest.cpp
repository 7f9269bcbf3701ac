#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RecordingRenderer.h"
#include "Skin/FocusRect.h"
#include "rast/Geometry.h"
#include "rast/Shader.h"

using namespace gui;

namespace {

class FocusRectTest : public vurel_test::RecordingRendererTest {
protected:
    // redraw and doRedraw; the backend events of both.
    std::vector<std::string> rebuild(FocusRect& frame) {
        backend().clearEvents();
        frame.redraw();
        frame.doRedraw();
        return backend().getEvents();
    }

    static void expectSegment(orm::vector<rastVertex> const& v, size_t first, float x1, float y1, float x2, float y2) {
        ASSERT_LT(first + 1, v.size());
        EXPECT_FLOAT_EQ(v[first].x, x1) << "vertex " << first;
        EXPECT_FLOAT_EQ(v[first].y, y1) << "vertex " << first;
        EXPECT_FLOAT_EQ(v[first + 1].x, x2) << "vertex " << first + 1;
        EXPECT_FLOAT_EQ(v[first + 1].y, y2) << "vertex " << first + 1;
    }
};

}  // namespace

TEST_F(FocusRectTest, DottedFrameOfOnePixelSegments) {
    FocusRect frame;
    frame.setBounds(osg::Recti(0, 0, 10, 10));
    rebuild(frame);
    // Inside the default insets of 2: x and y from 2 to 8 give segments at
    // 2, 4, 6 and a last one of no length at 8, on both sides of both axes.
    EXPECT_EQ(frame.getCount(), 16);
    orm::vector<rastVertex> const& v = frame.getVertices();
    ASSERT_EQ(v.size(), 32u);
    expectSegment(v, 0, 2, 2, 3, 2);
    expectSegment(v, 2, 2, 8, 3, 8);
    expectSegment(v, 4, 4, 2, 5, 2);
    expectSegment(v, 12, 8, 2, 8, 2);
    expectSegment(v, 16, 2, 2, 2, 3);
    expectSegment(v, 18, 8, 2, 8, 3);
    expectSegment(v, 30, 8, 8, 8, 8);
    for (rastVertex const& vertex : v) {
        EXPECT_EQ(vertex.color, osg::Vec4f(0, 0, 0, 1));
        EXPECT_EQ(vertex.z, 0.0f);
        EXPECT_EQ(vertex.u, 0.0f);
    }

    // An odd width ends on a whole segment: 2-3, 4-5, 6-7.
    frame.setBounds(osg::Recti(0, 0, 9, 9));
    frame.setColor({1, 0, 0, 1});
    rebuild(frame);
    EXPECT_EQ(frame.getCount(), 12);
    expectSegment(frame.getVertices(), 8, 6, 2, 7, 2);
    EXPECT_EQ(frame.getVertices()[0].color, osg::Vec4f(1, 0, 0, 1));

    // Vertices are in target pixels.
    renderer_->setScale(2.0f);
    frame.setInsets(Insets(1, 2, 3, 4));
    frame.setBounds(osg::Recti(10, 10, 20, 20));
    rebuild(frame);
    expectSegment(frame.getVertices(), 0, 22, 24, 24, 24);
    expectSegment(frame.getVertices(), 2, 22, 32, 24, 32);
}

TEST_F(FocusRectTest, GeometryIsCreatedUpdatedAndDeleted) {
    FocusRect frame;
    // Unset bounds are inverted: nothing to build.
    EXPECT_TRUE(rebuild(frame).empty());
    EXPECT_EQ(frame.getGeometry(), nullptr);

    frame.setBounds(osg::Recti(0, 0, 10, 10));
    std::vector<std::string> events = rebuild(frame);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].rfind("createGeometry", 0), 0u) << events[0];
    EXPECT_NE(events[0].find("v=32 i=32"), std::string::npos) << events[0];
    unsigned const id = frame.getGeometry()->getId();

    // Nothing changed: nothing to do.
    EXPECT_TRUE(rebuild(frame).empty());

    frame.setBounds(osg::Recti(0, 0, 20, 10));
    events = rebuild(frame);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0], "updateGeometry id=" + std::to_string(id) + " v=52 i=52");

    // Bounds no larger than the insets: the geometry goes, nothing draws or records.
    frame.setBounds(osg::Recti(0, 0, 4, 4));
    events = rebuild(frame);
    EXPECT_EQ(events, std::vector<std::string>{"destroyGeometry id=" + std::to_string(id)});
    EXPECT_EQ(frame.getGeometry(), nullptr);
    EXPECT_EQ(frame.getCount(), 0);
    GraphicCommands commands;
    backend().clearEvents();
    frame.draw();
    frame.make(&commands);
    EXPECT_TRUE(backend().getEvents().empty());
    EXPECT_TRUE(commands.getCommands().empty());

    // A transparent frame has no geometry either.
    frame.setBounds(osg::Recti(0, 0, 10, 10));
    frame.setColor({0, 0, 0, 0});
    EXPECT_TRUE(rebuild(frame).empty());
    EXPECT_EQ(frame.getGeometry(), nullptr);
}

TEST_F(FocusRectTest, MakeThenReplayDrawsWhatDrawDraws) {
    FocusRect frame;
    frame.setBounds(osg::Recti(5, 5, 30, 20));
    rebuild(frame);
    rastShader& shader = *renderer_->getShader();

    backend().clearEvents();
    frame.draw();
    std::vector<std::string> const direct = backend().getEvents();
    ASSERT_EQ(direct.size(), 1u);
    EXPECT_NE(direct[0].find("prim=1 count=" + std::to_string(frame.getCount()) + " first=0 tex=0"),
              std::string::npos)
        << direct[0];
    EXPECT_TRUE(shader.getDrawQuads());
    EXPECT_EQ(shader.getTexture(), nullptr);

    GraphicCommands commands;
    frame.make(&commands);
    ASSERT_EQ(commands.getCommands().size(), 1u);
    auto const* recorded = dynamic_cast<GraphicCommandDrawGeometry const*>(commands.getCommands()[0]);
    ASSERT_NE(recorded, nullptr);
    EXPECT_EQ(recorded->vertices.size(), frame.getVertices().size());
    EXPECT_EQ(recorded->texture, nullptr);
    EXPECT_EQ(vurel_test::withoutGeometryIds(vurel_test::replayDrawEvents(backend(), commands)),
              vurel_test::withoutGeometryIds(direct));
}
