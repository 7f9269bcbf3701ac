#pragma once

#include <memory>
#include <vector>

#include <imgui.h>

#include "VurelScene.h"

namespace vurel_bench {

class FrameMeter;

// The same UI in Dear ImGui: the same windows, groups, rows and controls
// (FrameUi.h), rebuilt every frame as an immediate-mode UI is. On the null
// backend a frame ends with ImGui::Render (the draw lists are made, nothing
// is drawn); on the OpenGL backend its own OpenGL 3 backend draws the lists
// into the shared headless context.
class ImGuiScene {
public:
    ImGuiScene(Backend backend, int controls);
    ~ImGuiScene();
    ImGuiScene(ImGuiScene const&) = delete;
    ImGuiScene& operator=(ImGuiScene const&) = delete;

    bool isValid() const { return valid_; }
    Backend getBackend() const { return backend_; }
    int getControls() const { return controls_; }

    // The logic part: NewFrame, the windows, Render. The draw part: the
    // OpenGL 3 backend's RenderDrawData.
    // Road::None builds the frame and draws nothing; any other road draws it.
    void frame(FrameMeter& meter, Road road);

    void changeOneButton(int n) { changedText_ = n % 2; }
    void moveMouse(int n);
    void resizeMainWindow(int n) { mainGrown_ = n % 2 != 0; }
    int getMousePathLength() const { return static_cast<int>(mousePath_.size()); }
    void settle();

private:
    void buildWindow_(int index);
    void buildRow_(int firstControl, bool changing);
    void makeMousePath_();

    Backend backend_;
    int controls_;
    int windows_;
    bool valid_ = false;
    bool glReady_ = false;
    ImGuiContext* context_ = nullptr;
    std::unique_ptr<bool[]> checks_;
    int changedText_ = 1;
    bool mainGrown_ = false;
    ImVec2 mouse_{-1.0f, -1.0f};
    float mainRowY_ = 0.0f;
    std::vector<ImVec2> mousePath_;
};

}  // namespace vurel_bench
