// What a frame of the toolkit costs at 100, 1,000 and 10,000 controls, side
// by side with the same UI in Dear ImGui, on the null backend (the toolkit's
// own cost) and on OpenGL in the headless context (Mesa's llvmpipe here).
//
// Benchmarks are named toolkit/backend/frame/controls. The frames:
// - idle: nothing changed;
// - one change: one button's text changes every frame;
// - mouse move: the mouse crosses the main window, a step a frame, so the
//   hovered control changes as it goes;
// - relayout: the main window is resized every frame;
// - recorded (VUREL only): `make` of every window into one list, and the
//   replay of that list, instead of `draw`.
// The main window is the one on top; every window holds 100 controls.
// "VUREL_cached" is the same UI with every window drawn through a render
// target of its own (Widget::setDrawToTarget): only the rectangles that
// changed are drawn into it again, and the frame draws each window as one
// picture.
//
// "CPU" is the time of the calling thread; "Time" the wall time until the
// pixels are done (each GL frame ends with glFinish). Counters, per frame:
// logic_us (VUREL: processMessages, updateTargets, doRedraw; ImGui: NewFrame
// to Render), draw_us (draw, or make and replay; ImGui: RenderDrawData),
// finish_us (glFinish), allocs (heap allocations, counted by this program),
// drawCalls, widgets (VUREL widgets alive) and draw_ns_per_widget.
//
// At the end the tables of docs/benchmarks.md are printed from the results.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>

#include "FrameMeter.h"
#include "FrameTable.h"
#include "ImGuiScene.h"
#include "SharedGl.h"
#include "VurelScene.h"

namespace vurel_bench {

namespace {

enum class Scenario { Idle, OneChange, MouseMove, Relayout, Recorded };

constexpr Scenario kVurelScenarios[] = {Scenario::Idle, Scenario::OneChange, Scenario::MouseMove, Scenario::Relayout,
                                        Scenario::Recorded};
// Recording re-records every cached window each frame, so it is not run cached.
constexpr Scenario kCachedScenarios[] = {Scenario::Idle, Scenario::OneChange, Scenario::MouseMove,
                                         Scenario::Relayout};
constexpr Scenario kImGuiScenarios[] = {Scenario::Idle, Scenario::OneChange, Scenario::MouseMove,
                                        Scenario::Relayout};
constexpr int kSizes[] = {100, 1000, 10000};
constexpr int kScenarioCount = 5;

char const* scenarioName(Scenario scenario) {
    switch (scenario) {
    case Scenario::Idle:
        return "idle";
    case Scenario::OneChange:
        return "one change";
    case Scenario::MouseMove:
        return "mouse move";
    case Scenario::Relayout:
        return "relayout";
    case Scenario::Recorded:
        return "recorded";
    }
    return "";
}

constexpr char const* kCachedName = "VUREL cached";

char const* backendName(Backend backend) { return backend == Backend::Gl ? "gl" : "null"; }

// The scene in use and the frames it has been warmed up for. Building one
// of 10,000 controls takes a while, so a scene serves every benchmark of
// its toolkit, backend and size, which are registered one after the other.
struct Scenes {
    std::unique_ptr<VurelScene> vurel;
    std::unique_ptr<ImGuiScene> imgui;
    bool warmed[kScenarioCount] = {};
};

Scenes& scenes() {
    static Scenes s;
    return s;
}

template <class Scene>
bool reuse(std::unique_ptr<Scene>& scene, bool same) {
    if (scene && same)
        return true;
    scene.reset();
    std::fill(std::begin(scenes().warmed), std::end(scenes().warmed), false);
    return false;
}

VurelScene* vurelScene(Backend backend, int controls, bool cached) {
    Scenes& s = scenes();
    s.imgui.reset();
    bool const same = s.vurel && s.vurel->getBackend() == backend && s.vurel->getControls() == controls &&
                      s.vurel->getCachedWindows() == cached;
    if (!reuse(s.vurel, same))
        s.vurel = std::make_unique<VurelScene>(backend, controls, cached);
    return s.vurel->isValid() ? s.vurel.get() : nullptr;
}

ImGuiScene* imguiScene(Backend backend, int controls) {
    Scenes& s = scenes();
    s.vurel.reset();
    bool const same = s.imgui && s.imgui->getBackend() == backend && s.imgui->getControls() == controls;
    if (!reuse(s.imgui, same))
        s.imgui = std::make_unique<ImGuiScene>(backend, controls);
    return s.imgui->isValid() ? s.imgui.get() : nullptr;
}

template <class Scene>
void prepare(Scene& scene, Scenario scenario, int n) {
    switch (scenario) {
    case Scenario::OneChange:
        scene.changeOneButton(n);
        break;
    case Scenario::MouseMove:
        scene.moveMouse(n);
        break;
    case Scenario::Relayout:
        scene.resizeMainWindow(n);
        break;
    case Scenario::Idle:
    case Scenario::Recorded:
        break;
    }
}

// Runs the frames of `scenario` on `road`: the first time once through every
// state they show (the whole mouse path, drawing nothing, which on llvmpipe
// would take minutes), then two frames drawn, then the measured ones.
template <class Scene>
void measure(benchmark::State& state, Scene& scene, Scenario scenario, Road road, int widgets) {
    scene.settle();
    bool& warmed = scenes().warmed[static_cast<int>(scenario)];
    int const warmUp = (warmed ? 0 : scene.getMousePathLength()) + 2;
    warmed = true;
    FrameMeter meter;
    int n = 0;
    for (; n < warmUp; ++n) {
        meter.logicBegins();
        prepare(scene, scenario, n);
        scene.frame(meter, n + 2 < warmUp ? Road::None : road);
    }
    meter.start();
    for (auto _ : state) {
        meter.logicBegins();
        prepare(scene, scenario, n++);
        scene.frame(meter, road);
    }
    meter.report(state, widgets);
}

void runVurel(benchmark::State& state, Backend backend, int controls, Scenario scenario, bool cached) {
    VurelScene* scene = vurelScene(backend, controls, cached);
    if (!scene) {
        state.SkipWithError("no EGL context with OpenGL 3.3 core");
        return;
    }
    Road const road = scenario == Scenario::Recorded ? Road::Recorded : Road::Direct;
    measure(state, *scene, scenario, road, scene->getWidgetCount());
}

void runVurelDirect(benchmark::State& state, Backend backend, int controls, Scenario scenario) {
    runVurel(state, backend, controls, scenario, false);
}

void runVurelCached(benchmark::State& state, Backend backend, int controls, Scenario scenario) {
    runVurel(state, backend, controls, scenario, true);
}

void runImGui(benchmark::State& state, Backend backend, int controls, Scenario scenario) {
    ImGuiScene* scene = imguiScene(backend, controls);
    if (!scene) {
        state.SkipWithError("no EGL context, or the OpenGL 3 backend of Dear ImGui did not start");
        return;
    }
    measure(state, *scene, scenario, Road::Direct, 0);
}

void registerCase(FrameTableReporter& table, char const* toolkit, Backend backend, int controls, Scenario scenario,
                  void (*run)(benchmark::State&, Backend, int, Scenario)) {
    std::string name = std::string(toolkit) + "/" + backendName(backend) + "/" + scenarioName(scenario) + "/" +
                       std::to_string(controls);
    std::replace(name.begin(), name.end(), ' ', '_');
    table.addCase(name, {toolkit, backendName(backend), scenarioName(scenario), controls});
    auto const body = [=](benchmark::State& state) { run(state, backend, controls, scenario); };
    benchmark::RegisterBenchmark(name.c_str(), body)->Unit(benchmark::kMicrosecond);
}

void registerAll(FrameTableReporter& table) {
    for (Backend backend : {Backend::Null, Backend::Gl})
        for (int controls : kSizes) {
            for (Scenario scenario : kVurelScenarios)
                registerCase(table, "VUREL", backend, controls, scenario, runVurelDirect);
            for (Scenario scenario : kCachedScenarios)
                registerCase(table, kCachedName, backend, controls, scenario, runVurelCached);
            for (Scenario scenario : kImGuiScenarios)
                registerCase(table, "Dear ImGui", backend, controls, scenario, runImGui);
        }
}

}  // namespace

}  // namespace vurel_bench

int main(int argc, char** argv) {
    vurel_bench::FrameTableReporter table;
    vurel_bench::registerAll(table);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    vurel_bench::scenes().vurel.reset();
    vurel_bench::scenes().imgui.reset();
    vurel_bench::releaseSharedGlContext();
    table.printTables();
    return 0;
}
