#pragma once

#include <memory>
#include <vector>

#include "Skin/GraphicCommands.h"
#include "orm/String.h"
#include "osg/Vec2i.h"

class rastGlBackend;

namespace gui {
class Button;
class HeadlessApplication;
class Panel;
class Window;
}  // namespace gui

namespace vurel_bench {

class FrameMeter;

enum class Backend { Null, Gl };

// How a frame ends: drawn directly, recorded and replayed, or not at all
// (warm-up frames, which build what drawing needs but draw nothing).
enum class Road { Direct, Recorded, None };

// The benchmark UI in VUREL: an application, a renderer over the null or the
// OpenGL backend (the shared headless context), the toolkit with
// bench_skin.lua, and windows of controls in nested layouts (FrameUi.h).
// With `cachedWindows` every window draws through a render target of its
// own: its widgets are drawn into it only when one of them changed, and a
// frame draws each window as one picture. One scene exists at a time: the
// toolkit and the renderer are process-wide.
class VurelScene {
public:
    VurelScene(Backend backend, int controls, bool cachedWindows);
    ~VurelScene();
    VurelScene(VurelScene const&) = delete;
    VurelScene& operator=(VurelScene const&) = delete;

    // False when the OpenGL backend was asked for and there is no context.
    bool isValid() const { return valid_; }
    Backend getBackend() const { return backend_; }
    int getControls() const { return controls_; }
    bool getCachedWindows() const { return cachedWindows_; }
    // Every widget alive: controls, their containers, window parts, the tooltip.
    int getWidgetCount() const;

    // One frame as an application runs it. The logic part: processMessages,
    // updateTargets, doRedraw. The draw part: draw, or on the recorded road
    // `make` of every window into one list and its replay.
    void frame(FrameMeter& meter, Road road);

    // What changes before frame `n` of each benchmark.
    void changeOneButton(int n);
    void moveMouse(int n);
    void resizeMainWindow(int n);
    // Frames in one round trip of the mouse across the main window.
    int getMousePathLength() const { return static_cast<int>(mousePath_.size()); }
    // Back to the state after building: mouse away, main window and button as made.
    void settle();

private:
    bool createRenderer_();
    void registerPictures_();
    void buildWindow_(int index);
    void makeMousePath_();
    void record_();
    void replay_();

    Backend backend_;
    int controls_;
    bool cachedWindows_;
    bool valid_ = false;
    std::unique_ptr<gui::HeadlessApplication> app_;
    rastGlBackend* gl_ = nullptr;  // owned by the renderer
    std::vector<gui::Window*> windows_;
    // The first row of the last window made, which is on top: the main window.
    gui::Panel* mainRow_ = nullptr;
    gui::Button* changingButton_ = nullptr;
    osg::Vec2i mainSize_;
    std::vector<osg::Vec2i> mousePath_;
    orm::basic_string<wchar_t> changeTexts_[2];
    gui::GraphicCommands commands_;
};

}  // namespace vurel_bench
