// What one frame of drawing primitives costs: 10,000 nine-cell backgrounds
// and 10,000 text strings, on the headless OpenGL backend (with and without
// quad batching, in two draw orders) and on the null backend.
//
// Each GL frame ends with glFinish. Its "Time" is the wall time until the
// pixels are done, which on a software rasteriser (Mesa llvmpipe) is mostly
// the rasteriser's own threads filling pixels; "CPU" is the time of the
// drawing thread alone: the toolkit, the renderer and the driver's work per
// draw call, the part a GPU does not take over.
//
// Counters are per frame: drawCalls, vertices and quads as the backend
// counted them, and batchGain, the draw calls of the same frame sent one call
// per primitive divided by this frame's draw calls.

#include <benchmark/benchmark.h>
#include <epoxy/gl.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "Align.h"
#include "Skin/Bkg.h"
#include "Skin/Text.h"
#include "app/EglContext.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"
#include "rast/backends/gl/GlBackend.h"
#include "rast/backends/null/NullBackend.h"

namespace {

constexpr int kCount = 10000;
constexpr int kTargetWidth = 1280;
constexpr int kTargetHeight = 720;
constexpr int kFontSize = 14;
constexpr char const* kPanelPicture = "bench/panel";
constexpr int kPanelSide = 16;
constexpr int kPanelRim = 4;

// Backgrounds and texts may be drawn one layer after the other, as a skin
// draws its layers, or each text right after its background, as a tree of
// independent widgets would.
enum class Order { Layered, Interleaved };

wchar_t const* const kWords[] = {
    L"Open",   L"Save",  L"Close",   L"Cancel", L"OK",     L"Apply",   L"Edit",  L"View",    L"Help",
    L"Undo",   L"Redo",  L"Cut",     L"Copy",   L"Paste",  L"Delete",  L"Find",  L"Replace", L"Zoom",
    L"Width",  L"Left",  L"Right",   L"Top",    L"Bottom", L"Colour",  L"Font",  L"Size",    L"Layer",
    L"Volume", L"Speed", L"Quality", L"Reset",  L"Next",   L"Back",    L"Start", L"Stop",    L"Pause",
    L"Play",   L"Name",  L"Value",   L"Items",  L"Mode",   L"Options", L"Tools", L"Window",  L"Map",
};
constexpr int kWordCount = static_cast<int>(sizeof(kWords) / sizeof(kWords[0]));

// A panel picture: a darker rim of kPanelRim pixels around a light middle, so
// the nine cells sample different texels.
std::vector<uint8_t> panelPicture() {
    std::vector<uint8_t> rgba(size_t(kPanelSide) * kPanelSide * 4);
    for (int y = 0; y < kPanelSide; ++y)
        for (int x = 0; x < kPanelSide; ++x) {
            bool const rim = x < kPanelRim || y < kPanelRim || x >= kPanelSide - kPanelRim ||
                             y >= kPanelSide - kPanelRim;
            uint8_t* p = &rgba[(size_t(y) * kPanelSide + size_t(x)) * 4];
            p[0] = p[1] = p[2] = rim ? 160 : 250;
            p[3] = 255;
        }
    return rgba;
}

osg::Vec4f scaled(osg::Vec4f const& c, float k) { return osg::Vec4f(c.x * k, c.y * k, c.z * k, c.w); }

// The content of the frame: built once, laid out once, then drawn every frame.
class DrawScene {
public:
    // Needs the renderer; must be destroyed before it.
    DrawScene() {
        auto const picture = panelPicture();
        rastRenderer::get()->getTextureManager()->addImage(kPanelPicture, {kPanelSide, kPanelSide}, picture.data());
        std::mt19937 random(20240601u);
        std::uniform_int_distribution<int> width(48, 160), height(20, 36), tone(0, 1000);
        bkgs_.reserve(kCount);
        texts_.reserve(kCount);
        for (int i = 0; i < kCount; ++i) {
            osg::Vec2i const size(width(random), height(random));
            osg::Vec2i const position(std::uniform_int_distribution<int>(0, kTargetWidth - size.x)(random),
                                      std::uniform_int_distribution<int>(0, kTargetHeight - size.y)(random));
            osg::Vec4f const base(0.2f + 0.6f * float(tone(random)) / 1000.0f,
                                  0.3f + 0.5f * float(tone(random)) / 1000.0f,
                                  0.4f + 0.5f * float(tone(random)) / 1000.0f, 1.0f);
            addBkg_(position, size, base);
            addText_(position, size, kWords[(i * 7 + i / kWordCount) % kWordCount], base);
        }
        redraw();
        doRedraw();
    }
    ~DrawScene() {
        for (gui::Bkg* bkg : bkgs_)
            delete bkg;
    }
    DrawScene(DrawScene const&) = delete;
    DrawScene& operator=(DrawScene const&) = delete;

    // Marks everything dirty, as when every widget changed state.
    void setDirty() {
        for (gui::Bkg* bkg : bkgs_)
            bkg->setDirty(true);
        for (auto& text : texts_)
            text->setDirty(true);
    }
    void redraw() {
        for (gui::Bkg* bkg : bkgs_)
            bkg->redraw();
        osg::Vec2i const area(kTargetWidth, kTargetHeight);
        for (size_t i = 0; i < texts_.size(); ++i)
            texts_[i]->redraw(words_[i], area, false);
    }
    void doRedraw() {
        for (gui::Bkg* bkg : bkgs_)
            bkg->doRedraw();
        for (auto& text : texts_)
            text->doRedraw();
        // New glyphs go up to the atlas here.
        rastRenderer::get()->endRedraw();
    }

    void draw(Order order) const {
        if (order == Order::Layered) {
            for (gui::Bkg const* bkg : bkgs_)
                bkg->draw();
            for (auto const& text : texts_)
                text->draw();
            return;
        }
        for (size_t i = 0; i < bkgs_.size(); ++i) {
            bkgs_[i]->draw();
            texts_[i]->draw();
        }
    }

private:
    void addBkg_(osg::Vec2i const& position, osg::Vec2i const& size, osg::Vec4f const& base) {
        gui::Bkg::Info info;
        info.file = kPanelPicture;
        info.insets = gui::Insets(kPanelRim, kPanelRim, kPanelRim, kPanelRim);
        // A lit top edge, a shaded bottom edge, the body in the base colour.
        for (int cell = 0; cell < gui::Bkg::CellCount; ++cell) {
            int const row = cell / 3;
            info.colors[size_t(cell)] = row == 0 ? scaled(base, 1.2f) : row == 2 ? scaled(base, 0.6f) : base;
        }
        gui::Bkg* bkg = new gui::Bkg;
        bkg->set(info);
        bkg->setPosition(position);
        bkg->setSize(size);
        bkgs_.push_back(bkg);
    }

    // A label centred in the box of its background. A text has no position
    // of its own: the insets cut the box out of the whole target.
    void addText_(osg::Vec2i const& position, osg::Vec2i const& size, wchar_t const* word, osg::Vec4f const& base) {
        gui::Text::Info info;
        info.font = "default";
        info.fontSize = kFontSize;
        bool const lightBkg = base.x + base.y + base.z > 1.8f;
        info.color = lightBkg ? osg::Vec4f(0.05f, 0.05f, 0.1f, 1) : osg::Vec4f(1, 1, 0.95f, 1);
        info.horzAlign = gui::Align(gui::Align::Center);
        info.vertAlign = gui::Align(gui::Align::Middle);
        auto text = std::make_unique<gui::Text>();
        text->set(info);
        text->setInsets(gui::Insets(position.x, position.y, kTargetWidth - position.x - size.x,
                                    kTargetHeight - position.y - size.y));
        texts_.push_back(std::move(text));
        words_.push_back(word);
    }

    orm::vector<gui::Bkg*> bkgs_;
    orm::vector<std::unique_ptr<gui::Text>> texts_;
    orm::vector<orm::basic_string<wchar_t>> words_;
};

// A headless GL context and the process-wide renderer over the GL backend.
class GlSession {
public:
    ~GlSession() {
        if (rastRenderer::get())
            rastRenderer::destroy();
        context_.destroy();
    }

    bool open() {
        if (!context_.create(kTargetWidth, kTargetHeight))
            return false;
        auto backend = std::make_unique<rastGlBackend>(VUREL_ASSET_DIR);
        if (!backend->isValid())
            return false;
        backend->setDefaultTarget(context_.getFrameBuffer(), kTargetWidth, kTargetHeight);
        gl_ = backend.get();
        rastRenderer::create(std::move(backend));
        return true;
    }
    rastGlBackend& gl() { return *gl_; }

private:
    gui::EglContext context_;
    rastGlBackend* gl_ = nullptr;
};

// The process-wide renderer over the null backend.
class NullSession {
public:
    NullSession() { rastRenderer::create(std::make_unique<rastNullBackend>()); }
    ~NullSession() { rastRenderer::destroy(); }
    NullSession(NullSession const&) = delete;
    NullSession& operator=(NullSession const&) = delete;
};

// One frame as an application draws it: the whole target, a projection in
// pixels with y down, cleared, the scene, the end of the frame. With
// `finish`, waits until the GPU has drawn it, so the frame's whole cost
// falls inside it.
rastFrameStats drawFrame(DrawScene const& scene, Order order, bool finish) {
    rastRenderer& renderer = *rastRenderer::get();
    rastBackend& backend = renderer.getBackend();
    backend.resetFrameStats();
    renderer.pushViewport(osg::Recti(0, 0, kTargetWidth, kTargetHeight));
    renderer.setProjectionMatrix(osg::Matrixf::ortho(0, float(kTargetWidth), float(kTargetHeight), 0, -1, 1));
    renderer.setModelViewMatrix(osg::Matrixf());
    backend.clear(osg::Vec4f(0.1f, 0.1f, 0.12f, 1));
    scene.draw(order);
    renderer.popViewport();
    renderer.endFrame();
    if (finish)
        glFinish();
    return backend.getFrameStats();
}

// Per-frame averages of what the backend counted over the run.
class FrameCounters {
public:
    void add(rastFrameStats const& stats) {
        drawCalls_ += stats.drawCalls;
        vertices_ += stats.vertices;
        quads_ += stats.quads;
    }
    // `perPrimitiveCalls`: the draw calls of the same frame at one call per primitive.
    void report(benchmark::State& state, int perPrimitiveCalls) const {
        auto const perFrame = benchmark::Counter::kAvgIterations;
        state.counters["drawCalls"] = benchmark::Counter(double(drawCalls_), perFrame);
        state.counters["vertices"] = benchmark::Counter(double(vertices_), perFrame);
        state.counters["quads"] = benchmark::Counter(double(quads_), perFrame);
        double const calls = state.iterations() > 0 ? double(drawCalls_) / double(state.iterations()) : 0.0;
        state.counters["batchGain"] = calls > 0 ? double(perPrimitiveCalls) / calls : 0.0;
    }

private:
    int64_t drawCalls_ = 0, vertices_ = 0, quads_ = 0;
};

// Batching must cut draw calls tenfold at least against one call per primitive.
constexpr double kRequiredBatchGain = 10.0;

// Arguments: batching (1 on, 0 one draw call per primitive), layered (1 all
// backgrounds then all texts, 0 each text after its background).
void BM_DrawFrame_Gl(benchmark::State& state) {
    bool const batching = state.range(0) != 0;
    Order const order = state.range(1) != 0 ? Order::Layered : Order::Interleaved;
    GlSession session;
    if (!session.open()) {
        state.SkipWithError("no EGL context with OpenGL 3.3 core");
        return;
    }
    DrawScene scene;
    session.gl().setBatching(false);
    int const perPrimitiveCalls = drawFrame(scene, order, true).drawCalls;
    session.gl().setBatching(batching);
    rastFrameStats const warm = drawFrame(scene, order, true);

    FrameCounters counters;
    for (auto _ : state)
        counters.add(drawFrame(scene, order, true));
    counters.report(state, perPrimitiveCalls);

    double const gain = warm.drawCalls > 0 ? double(perPrimitiveCalls) / warm.drawCalls : 0.0;
    if (batching && order == Order::Layered && gain < kRequiredBatchGain)
        state.SkipWithError("batching cut draw calls less than tenfold");
}
BENCHMARK(BM_DrawFrame_Gl)
    ->ArgNames({"batching", "layered"})
    ->Args({1, 1})
    ->Args({0, 1})
    ->Args({1, 0})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0)
    ->UseRealTime();

// The same frame with no GPU behind it: what the primitives and the renderer
// cost on the CPU to issue it. The null backend counts every drawQuads.
void BM_DrawFrame_Null(benchmark::State& state) {
    NullSession session;
    DrawScene scene;
    FrameCounters counters;
    int const perPrimitiveCalls = drawFrame(scene, Order::Layered, false).drawCalls;
    for (auto _ : state)
        counters.add(drawFrame(scene, Order::Layered, false));
    counters.report(state, perPrimitiveCalls);
}
BENCHMARK(BM_DrawFrame_Null)->Unit(benchmark::kMillisecond);

// The frame after every primitive changed: laying all of them out again
// (cells, lines, glyph quads) and drawing, on the null backend.
void BM_RebuildAndDrawFrame_Null(benchmark::State& state) {
    NullSession session;
    DrawScene scene;
    FrameCounters counters;
    int const perPrimitiveCalls = drawFrame(scene, Order::Layered, false).drawCalls;
    for (auto _ : state) {
        scene.setDirty();
        scene.redraw();
        scene.doRedraw();
        counters.add(drawFrame(scene, Order::Layered, false));
    }
    counters.report(state, perPrimitiveCalls);
}
BENCHMARK(BM_RebuildAndDrawFrame_Null)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
