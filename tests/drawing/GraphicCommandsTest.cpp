#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <typeinfo>

#include "AllocationCounter.h"
#include "LogCapture.h"
#include "RecordingRenderer.h"
#include "rast/Font.h"
#include "rast/FrameBuffer.h"
#include "rast/Geometry.h"
#include "rast/Shader.h"
#include "rast/backends/null/NullBackend.h"

using namespace gui;
using vurel_test::busyCount;

namespace {

osg::Vec4f const kWhite{1, 1, 1, 1};
osg::Vec4f const kRed{1, 0, 0, 1};
osg::Vec4f const kGreen{0, 1, 0, 1};

rastShader& shader() { return *rastRenderer::get()->getShader(); }

// What both roads draw: quads in batches, background cells, text, lines.
struct SceneData {
    SceneData() {
        font = std::make_shared<rastFixedWidthFont>(8, 16, 12, -4);
        hello = makeText(L"Hello", {4, 14});
        world = makeText(L"World wide", {4, 30});
        strings = {&hello, &world};
        addBatch(quads, 2);
        addBatch(quads, 1);
        for (int i = 0; i < 3; ++i)
            addBatch(bigQuads, 3);
        for (int i = 0; i < 3; ++i)
            bkg.addQuad(rastQuad{10.0f * float(i), 0, 10, 10, 0, 0, 1, 1});
        for (int i = 0; i < GraphicCommandDrawBkg::colorCount; ++i)
            bkgColors[i] = 0.1f * float(i % 4 + 1);
        vertices.resize(4);
        vertices[1].x = vertices[3].x = vertices[2].y = vertices[3].y = 20;
        indices = {0, 1, 1, 3, 3, 2};
    }

    rastTextString makeText(wchar_t const* text, osg::Vec2f const& position) {
        rastTextString s;
        s.setFont(font);
        s.setText(text);
        s.setPosition(position);
        s.redraw();
        return s;
    }

    static void addBatch(rastShaderQuads& q, int count) {
        q.beginBatch(nullptr, -1);
        for (int i = 0; i < count; ++i)
            q.addBatchQuad(float(i) * 12, 0, 10, 10);
        q.endBatch();
    }

    std::shared_ptr<rastFont> font;
    rastTextString hello, world;
    orm::vector<rastTextString*> strings;
    rastShaderQuads quads, bigQuads;
    rastShaderBkgQuads bkg;
    float bkgColors[GraphicCommandDrawBkg::colorCount] = {};
    orm::vector<rastVertex> vertices;
    orm::vector<int> indices;
};

void drawQuadsDirect(rastShaderQuads const& quads, osg::Vec4f const& color, int batch) {
    shader().setColor(color);
    shader().turnOnDrawQuads();
    if (batch < 0)
        quads.draw(shader());
    else
        quads.drawBatch(shader(), batch);
}

void drawBkgDirect(SceneData& s) {
    shader().turnOnDrawQuads();
    shader().setColors(s.bkgColors, s.bkg.getCount());
    s.bkg.draw(shader());
}

void drawGeometryDirect(rastGeometry const* geometry) {
    shader().turnOffDrawQuads();
    shader().setTexture(nullptr);
    shader().setTextureArray(nullptr);
    rastRenderer::get()->setGeometry(geometry);
    rastRenderer::get()->drawGeometry(rastGeometry::Lines, 3, 0);
}

// The direct road of a small window: every guard kind, nested opacity, a
// relative shift, rotated text and lines drawn at twice the UI scale.
void drawSceneDirect(SceneData& s, rastGeometry const* geometry) {
    rastRenderer* r = rastRenderer::get();
    rastRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0, 400, 300, 0);
    rastRenderer::ViewportGuard viewport(osg::Recti(0, 0, 800, 600));
    rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueAlternative);
    rastRenderer::ModelViewMatrixGuard window;
    window.setTranslate(10, 20, 0);
    rastRenderer::ClipRectGuard clip(osg::Recti(20, 40, 300, 200));
    rastRenderer::OpacityGuard outer(0.5f);
    drawQuadsDirect(s.quads, kRed, -1);
    {
        rastRenderer::OpacityGuard inner(0.25f);
        drawQuadsDirect(s.quads, kWhite, 0);
    }
    drawQuadsDirect(s.quads, kGreen, 1);
    {
        rastRenderer::ShiftPositionGuard shift(1.5f, 2.0f);
        drawBkgDirect(s);
    }
    drawBkgDirect(s);
    {
        rastRenderer::ModelViewMatrixGuard label;
        label.makeTranslate(5, 5, 0).setRotate(0.5f, 0, 0, 1);
        shader().turnOnDrawQuads();
        s.hello.draw(shader());
        s.world.draw(shader());
        shader().turnOnDrawQuads();
        s.hello.draw(shader(), kGreen);
    }
    r->setScale(2.0f);
    {
        rastRenderer::ModelViewMatrixGuard lines;
        lines.setTranslate(3, 4, 0);
        drawGeometryDirect(geometry);
    }
    r->setScale(1.0f);
}

void recordScene(GraphicCommands& c, SceneData& s) {
    GraphicCommandProjectionMatrixGuard projection(c);
    projection.makeOrtho2D(0, 400, 300, 0);
    GraphicCommandViewportGuard viewport(c, osg::Recti(0, 0, 800, 600));
    GraphicCommandShaderTechniqueGuard technique(c, rastRenderer::TechniqueAlternative);
    GraphicCommandModelViewMatrixGuard window(c);
    window.setTranslate(10, 20, 0);
    GraphicCommandClipRectGuard clip(c, osg::Recti(20, 40, 300, 200));
    GraphicCommandOpacityGuard outer(c, 0.5f);
    c.drawQuads(s.quads, kRed, -1, -1);
    {
        GraphicCommandOpacityGuard inner(c, 0.25f);
        c.drawQuads(s.quads, kWhite, -1, 0);
    }
    c.drawQuads(s.quads, kGreen, -1, 1);
    {
        GraphicCommandShiftPositionGuard shift(c, 1.5f, 2.0f);
        c.drawBkg(s.bkg, s.bkgColors);
    }
    c.drawBkg(s.bkg, s.bkgColors);
    {
        GraphicCommandModelViewMatrixGuard label(c);
        label.makeTranslate(5, 5, 0).setRotate(0.5f, 0, 0, 1);
        c.drawText(s.strings, nullptr);
        c.drawText(&s.hello, &kGreen);
    }
    GraphicCommandSetScaleGuard scale(c, 2.0f);
    GraphicCommandModelViewMatrixGuard lines(c);
    lines.setTranslate(3, 4, 0);
    auto* geometry = GraphicCommandDrawGeometry::take();
    geometry->set(s.vertices, s.indices, rastGeometry::Lines, 3, nullptr);
    c.add(geometry);
}

bool containsPart(std::vector<std::string> const& events, std::string const& part) {
    return std::any_of(events.begin(), events.end(),
                       [&](std::string const& e) { return e.find(part) != std::string::npos; });
}

}  // namespace

// --- replay against the direct road -------------------------------------------------

using GraphicCommandsReplay = vurel_test::RecordingRendererTest;

TEST_F(GraphicCommandsReplay, ReplayIssuesTheSameCallsAsTheDirectRoad) {
    SceneData s;
    std::unique_ptr<rastGeometry> geometry = renderer_->createGeometry(s.vertices, s.indices);

    backend().clearEvents();
    drawSceneDirect(s, geometry.get());
    std::vector<std::string> const direct = backend().getEvents();
    ASSERT_EQ(renderer_->getStackDepth(), 0);

    GraphicCommands c;
    recordScene(c, s);
    // The live strings may change after recording; the copies may not.
    s.hello.setText(L"changed");
    s.hello.redraw();
    std::vector<std::string> const recorded = vurel_test::replayDrawEvents(backend(), c);

    EXPECT_EQ(vurel_test::withoutGeometryIds(recorded), vurel_test::withoutGeometryIds(direct));
    EXPECT_EQ(renderer_->getStackDepth(), 0);
    EXPECT_EQ(shader().getPositionShift(), osg::Vec2f());
    EXPECT_FLOAT_EQ(renderer_->getOpacity(), 1.0f);
    EXPECT_FLOAT_EQ(renderer_->getScale(), 1.0f);
    // The scene did reach what it is meant to check.
    EXPECT_TRUE(containsPart(direct, "opacity=0.25"));
    EXPECT_TRUE(containsPart(direct, "shift=1.5,2"));
    EXPECT_TRUE(containsPart(direct, "rotated"));
    EXPECT_TRUE(containsPart(direct, "modelView 16 28"));
    EXPECT_TRUE(containsPart(direct, "drawGeometry"));
    EXPECT_EQ(c.getCommands().size(), 0u);
}

TEST_F(GraphicCommandsReplay, TrailingMakeStepsAreDropped) {
    size_t const busyBefore = busyCount<GraphicCommandModelViewMatrix>();
    GraphicCommands c;
    {
        GraphicCommandModelViewMatrixGuard guard(c);
        guard.setTranslate(10, 20, 0).makeTranslate(100, 100, 0).makeRotate(1.0f, 0, 0, 1);
    }
    // Push, the translation, pop; the pending command went back to its pool.
    ASSERT_EQ(c.getCommands().size(), 3u);
    EXPECT_EQ(busyCount<GraphicCommandModelViewMatrix>() - busyBefore, 3u);
    GraphicCommandModelViewMatrix* pending = GraphicCommandModelViewMatrix::pool().free.back();
    EXPECT_TRUE(pending->ops.empty());
    EXPECT_EQ(std::count(c.getCommands().begin(), c.getCommands().end(), pending), 0);

    backend().clearEvents();
    {
        rastRenderer::ModelViewMatrixGuard guard;
        guard.setTranslate(10, 20, 0).makeTranslate(100, 100, 0).makeRotate(1.0f, 0, 0, 1);
    }
    std::vector<std::string> const direct = backend().getEvents();
    EXPECT_EQ(direct, (std::vector<std::string>{"modelView 10 20", "modelView 0 0"}));
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), c), direct);
    EXPECT_EQ(busyCount<GraphicCommandModelViewMatrix>(), busyBefore);
}

TEST_F(GraphicCommandsReplay, StateCommands) {
    // A technique in force is reset before a new one is set; zero only resets.
    renderer_->setTechnique(rastRenderer::TechniqueAlternative);
    auto* technique = GraphicCommandSetShaderTechnique::take();
    technique->set(rastRenderer::TechniqueNone);
    technique->draw();
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueNone);
    technique->set(rastRenderer::TechniqueToTarget);
    technique->draw();
    EXPECT_EQ(renderer_->getTechnique(), rastRenderer::TechniqueToTarget);
    technique->release();
    renderer_->resetTechnique();

    // The recorded matrix goes in front: it applies before the renderer's
    // translation, which therefore stays as it was, while a point is rotated first.
    renderer_->setModelViewMatrix(osg::Matrixf::translate(10, 0, 0));
    auto* preMult = GraphicCommandPreMultModelViewMatrix::take();
    preMult->set(osg::Matrixf::rotate(1.5707964f, 0, 0, 1));
    preMult->draw();
    preMult->release();
    EXPECT_NEAR(renderer_->getModelViewMatrix().getTranslation().x, 10.0f, 1e-5f);
    EXPECT_NEAR(renderer_->getModelViewMatrix().getTranslation().y, 0.0f, 1e-5f);
    osg::Vec2f const p = renderer_->getModelViewMatrix().transformPoint({1, 0});
    EXPECT_NEAR(p.x, 10.0f, 1e-5f);
    EXPECT_NEAR(p.y, 1.0f, 1e-5f);
    renderer_->setModelViewMatrix(osg::Matrixf());

    // Batch -1 draws all batches, others one. Samplers 1 and 2 hold for one
    // draw, 0 stays set, others leave the global one in force.
    renderer_->setTextureFiltering(rastRenderer::SamplerNearest);
    SceneData s;
    GraphicCommands c;
    c.drawQuads(s.quads, kWhite, rastRenderer::SamplerMipmap, -1);
    c.drawQuads(s.quads, kWhite, 7, 0);
    c.drawQuads(s.quads, kWhite, rastRenderer::SamplerLinear, 1);
    EXPECT_EQ(vurel_test::replayDrawEvents(backend(), c),
              (std::vector<std::string>{"drawQuads tex=0 n=2 sampler=2", "drawQuads tex=0 n=1 sampler=2",
                                        "drawQuads tex=0 n=2 sampler=1", "drawQuads tex=0 n=1 sampler=0"}));
    EXPECT_EQ(shader().getUserTextureFiltering(), rastRenderer::SamplerLinear);
    shader().resetTextureSampler();
}

TEST_F(GraphicCommandsReplay, GeometryIsCreatedOnceThenUpdated) {
    SceneData s;
    auto* geometry = GraphicCommandDrawGeometry::take();
    geometry->geometry.reset();
    geometry->set(s.vertices, s.indices, rastGeometry::Lines, 3, nullptr);
    backend().clearEvents();
    geometry->doRedraw();
    geometry->doRedraw();
    geometry->release();
    ASSERT_EQ(backend().getEvents().size(), 2u);
    EXPECT_EQ(backend().getEvents()[0].rfind("createGeometry", 0), 0u);
    EXPECT_EQ(backend().getEvents()[1].rfind("updateGeometry", 0), 0u);
    EXPECT_NE(geometry->geometry, nullptr);  // kept for the next use
}

TEST_F(GraphicCommandsReplay, DrawToTargetRendersNestedCommandsAtDoRedraw) {
    SceneData s;
    std::shared_ptr<rastFrameBuffer> target = renderer_->createFrameBuffer({64, 32}, 0, false);
    std::string const bindTarget = "bindFrameBuffer id=" + std::to_string(target->getId());

    int redrawnAt = -1, drawnAt = -1, techniqueInside = -1;
    GraphicCommands nested;
    nested.drawFunc([&] { drawnAt = int(backend().getEvents().size()); techniqueInside = renderer_->getTechnique(); },
                    {1, 1}, [&](osg::Vec2i const&) { redrawnAt = int(backend().getEvents().size()); });
    nested.drawQuads(s.quads, kWhite, -1, -1);
    nested.drawText(&s.hello, nullptr);
    GraphicCommands c;
    c.drawToTarget(target, {50, 20}, nested.getCommands());
    nested.clear();
    EXPECT_EQ(target.use_count(), 2);

    backend().clearEvents();
    for (GraphicCommand* command : c.getCommands())
        command->doRedraw();
    std::vector<std::string> const events = backend().getEvents();
    auto at = [&](std::string const& e) { return std::find(events.begin(), events.end(), e) - events.begin(); };
    long const bind = at(bindTarget), unbind = at("bindFrameBuffer id=0");
    ASSERT_LT(bind, long(events.size()));
    ASSERT_LT(unbind, long(events.size()));
    EXPECT_EQ(redrawnAt, 0);
    EXPECT_GT(drawnAt, bind);
    EXPECT_LT(drawnAt, unbind);
    EXPECT_EQ(techniqueInside, rastRenderer::TechniqueToTarget);
    EXPECT_GT(at("projection 0.03125 -0.0625 -1 1"), bind);
    EXPECT_GT(at("pushClipRect 0 0 50 20"), bind);
    EXPECT_LT(at("popClipRect off"), unbind);
    std::vector<std::string> const draws = backend().getEvents({"drawQuads"});
    ASSERT_FALSE(draws.empty());
    for (std::string const& d : draws)
        EXPECT_NE(d.find("tech=4"), std::string::npos) << d;

    // The target was filled already: draw issues nothing.
    backend().clearEvents();
    for (GraphicCommand* command : c.getCommands())
        command->draw();
    EXPECT_TRUE(backend().getEvents().empty());

    auto* command = static_cast<GraphicCommandDrawToTarget*>(c.getCommands()[0]);
    command->release();
    c.clear();
    EXPECT_EQ(target.use_count(), 1);
    EXPECT_TRUE(command->commands.empty());
    EXPECT_EQ(busyCount<GraphicCommandDrawFunc>(), 0u);
    EXPECT_EQ(busyCount<GraphicCommandDrawQuads>(), 0u);
    EXPECT_EQ(busyCount<GraphicCommandDrawText>(), 0u);
    EXPECT_EQ(busyCount<GraphicCommandDrawToTarget>(), 0u);
}

// --- the list and its pools --------------------------------------------------------

TEST(GraphicCommandsList, RecordsWithoutARenderer) {
    GraphicCommands c;
    c.setProjectionMatrix(osg::Matrixf::translate(1, 2, 3));
    c.add(nullptr);
    EXPECT_TRUE(c.getCommands().empty());

    int parsed = 0;
    c.parse([&] { ++parsed; });
    EXPECT_TRUE(c.getCommands().empty());
    ASSERT_EQ(c.getParseCommands().size(), 1u);
    c.getParseCommands()[0]->draw();
    EXPECT_EQ(parsed, 1);

    {
        GraphicCommandOpacityGuard outer(c, 0.5f);
        GraphicCommandSetScaleGuard scale(c, 2.0f);
        {
            GraphicCommandOpacityGuard inner(c, 0.25f);
            EXPECT_FLOAT_EQ(GraphicCommands::getCurrentOpacity(), 0.25f);
        }
        EXPECT_FLOAT_EQ(GraphicCommands::getCurrentOpacity(), 0.5f);
        EXPECT_FLOAT_EQ(GraphicCommands::getCurrentScale(), 2.0f);
        GraphicCommandShiftPositionGuard shift(c, 1.5f, 2.0f);
    }
    EXPECT_FLOAT_EQ(GraphicCommands::getCurrentOpacity(), 1.0f);
    EXPECT_FLOAT_EQ(GraphicCommands::getCurrentScale(), 1.0f);

    auto const& list = c.getCommands();
    ASSERT_EQ(list.size(), 8u);
    EXPECT_EQ(static_cast<GraphicCommandSetOpacity*>(list[3])->opacity, 0.5f);
    auto* shiftOut = static_cast<GraphicCommandShiftPosition*>(list[5]);
    EXPECT_EQ(shiftOut->x, -1.5f);
    EXPECT_EQ(shiftOut->y, -2.0f);
    auto const& registry = GraphicCommand::getRegistry();
    EXPECT_NE(std::find(registry.begin(), registry.end(), list[7]), registry.end());

    size_t const capacity = list.capacity();
    for (GraphicCommand* command : list)
        command->release();
    c.getParseCommands()[0]->release();
    c.clear();
    EXPECT_TRUE(c.getParseCommands().empty());
    EXPECT_EQ(list.capacity(), capacity);
}

TEST(GraphicCommandsPool, TakesLastReleasedFirstAndLogsCounts) {
    vurel_test::LogCapture log;
    GraphicCommandSetTextureFiltering::stat();
    char expected[160];
    std::snprintf(expected, sizeof expected, "~~~ %-40s  all:0 free:0",
                  typeid(GraphicCommandSetTextureFiltering).name());
    EXPECT_TRUE(log.contains("VUREL", 64, expected)) << (log.lines().empty() ? "" : log.lines()[0].text);

    using Command = GraphicCommandPopViewport;
    auto& pool = Command::pool();
    Command* a = Command::take();
    Command* b = Command::take();
    a->release();
    b->release();
    EXPECT_EQ(Command::take(), b);
    EXPECT_EQ(Command::take(), a);
    a->release();
    b->release();

    // The pool grows only when nothing is free, and only by what is missing.
    size_t const allBefore = pool.all.size();
    std::vector<Command*> taken(pool.free.size() + 2);
    for (Command*& command : taken)
        command = Command::take();
    EXPECT_EQ(pool.all.size(), allBefore + 2);
    // New instances number themselves from one counter.
    EXPECT_EQ(taken.back()->getId(), taken[taken.size() - 2]->getId() + 1);
    for (Command* command : taken)
        command->release();
    EXPECT_EQ(pool.free.size(), pool.all.size());

    log.clear();
    GraphicCommandPopViewport::stat();
    std::snprintf(expected, sizeof expected, "~~~ %-40s  all:%d free:%d", typeid(GraphicCommandPopViewport).name(),
                  int(pool.all.size()), int(pool.free.size()));
    EXPECT_TRUE(log.contains("VUREL", 64, expected));
}

// --- a steady frame allocates nothing ------------------------------------------------

namespace {

class GraphicCommandsSteadyFrame : public ::testing::Test {
protected:
    void SetUp() override {
        rastRenderer::create(std::make_unique<rastNullBackend>());
        scene_ = std::make_unique<SceneData>();
        target_ = rastRenderer::get()->createFrameBuffer({64, 64}, 0, false);
    }
    void TearDown() override {
        scene_.reset();
        target_.reset();
        rastRenderer::destroy();
    }

    // About a thousand commands of every kind, with payloads of different sizes.
    void recordFrame() {
        SceneData& s = *scene_;
        GraphicCommandProjectionMatrixGuard projection(commands_);
        projection.makeOrtho2D(0, 800, 600, 0);
        GraphicCommandShaderTechniqueGuard technique(commands_, rastRenderer::TechniqueNormal);
        for (int row = 0; row < 90; ++row) {
            GraphicCommandModelViewMatrixGuard modelView(commands_);
            modelView.makeTranslate(0, float(row) * 20, 0).setRotate(0.1f * float(row % 3), 0, 0, 1);
            GraphicCommandClipRectGuard clip(commands_, osg::Recti(0, row * 20, 400, row * 20 + 20));
            GraphicCommandOpacityGuard opacity(commands_, row % 2 ? 0.5f : 1.0f);
            commands_.drawBkg(s.bkg, s.bkgColors);
            commands_.drawQuads(row % 2 ? s.quads : s.bigQuads, kRed, row % 4 - 1, row % 3 - 1);
            if (row % 2)
                commands_.drawText(s.strings, nullptr);
            else
                commands_.drawText(&s.hello, &kGreen);
            GraphicCommandShiftPositionGuard shift(commands_, 1, 2);
        }
        auto* geometry = GraphicCommandDrawGeometry::take();
        geometry->set(s.vertices, s.indices, rastGeometry::Lines, 3, nullptr);
        commands_.add(geometry);
        nested_.drawQuads(s.bigQuads, kWhite, -1, -1);
        nested_.drawText(&s.world, nullptr);
        commands_.drawToTarget(target_, {40, 20}, nested_.getCommands());
        nested_.clear();
        commands_.drawFunc([] {}, {1, 1}, [](osg::Vec2i const&) {});
        commands_.parse([this] { ++parsed_; });
    }

    void replay(bool lastFirst) {
        for (GraphicCommandParse* command : commands_.getParseCommands())
            command->draw();
        for (GraphicCommand* command : commands_.getCommands())
            command->doRedraw();
        for (GraphicCommand* command : commands_.getCommands())
            command->draw();
        auto const& list = commands_.getCommands();
        if (lastFirst)
            std::for_each(list.rbegin(), list.rend(), [](GraphicCommand* command) { command->release(); });
        else
            std::for_each(list.begin(), list.end(), [](GraphicCommand* command) { command->release(); });
        for (GraphicCommandParse* command : commands_.getParseCommands())
            command->release();
        commands_.clear();
    }

    size_t countFrameAllocations(bool lastFirst) {
        vurel_test::AllocationCounter counter;
        recordFrame();
        replay(lastFirst);
        return counter.count();
    }

    template <class... T>
    static bool allReleased() {
        return ((T::pool().free.size() == T::pool().all.size()) && ...);
    }

    std::unique_ptr<SceneData> scene_;
    std::shared_ptr<rastFrameBuffer> target_;
    GraphicCommands commands_, nested_;
    int parsed_ = 0;
};

}  // namespace

TEST_F(GraphicCommandsSteadyFrame, AllocatesNothingAfterWarmUp) {
    recordFrame();
    EXPECT_GT(commands_.getCommands().size(), 1000u);
    replay(true);

    EXPECT_EQ(countFrameAllocations(true), 0u);
    EXPECT_EQ(parsed_, 2);
    EXPECT_TRUE((allReleased<GraphicCommandProjectionMatrix, GraphicCommandModelViewMatrix,
                             GraphicCommandPushShaderTechnique, GraphicCommandPopShaderTechnique,
                             GraphicCommandPushClipRect, GraphicCommandPopClipRect, GraphicCommandSetOpacity,
                             GraphicCommandShiftPosition, GraphicCommandDrawBkg, GraphicCommandDrawQuads,
                             GraphicCommandDrawText, GraphicCommandDrawGeometry, GraphicCommandDrawToTarget,
                             GraphicCommandDrawFunc, GraphicCommandParse>()));
    EXPECT_EQ(GraphicCommandTextStringPool::getFreeCount(), GraphicCommandTextStringPool::getAllCount());

    // Released from the start, pooled objects swap roles every frame: two
    // frames let their buffers settle.
    countFrameAllocations(false);
    countFrameAllocations(false);
    EXPECT_EQ(countFrameAllocations(false), 0u);
    EXPECT_EQ(countFrameAllocations(false), 0u);
}
