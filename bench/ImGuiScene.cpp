#include "ImGuiScene.h"

#include <cstdio>

#include <imgui_impl_opengl3.h>

#include "FrameMeter.h"
#include "FrameUi.h"
#include "HeapCounter.h"
#include "SharedGl.h"
#include "rast/Font.h"

namespace vurel_bench {

namespace {

// A window as large as VUREL's window of the same content.
constexpr float kWindowWidth = 800.0f;
constexpr float kWindowHeight = 410.0f;
constexpr float kFontSize = 13.0f;

int countDrawCalls(ImDrawData const* data) {
    int calls = 0;
    for (int i = 0; data && i < data->CmdListsCount; ++i)
        for (ImDrawCmd const& command : data->CmdLists[i]->CmdBuffer)
            if (!command.UserCallback)
                ++calls;
    return calls;
}

}  // namespace

ImGuiScene::ImGuiScene(Backend backend, int controls)
    : backend_(backend), controls_(controls), windows_(windowCount(controls)) {
    ImGui::SetAllocatorFunctions(imguiAlloc, imguiFree);
    context_ = ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;
    io.DisplaySize = ImVec2(float(kScreenWidth), float(kScreenHeight));
    io.Fonts->AddFontFromFileTTF(rastFontManager::kDefaultFontFile, kFontSize);
    if (backend == Backend::Gl) {
        if (!sharedGlContext() || !ImGui_ImplOpenGL3_Init("#version 330 core"))
            return;
        glReady_ = true;
    } else {
        unsigned char* pixels = nullptr;
        int width = 0, height = 0;
        io.Fonts->GetTexDataAsRGBA32(&pixels, &width, &height);
        io.Fonts->SetTexID(reinterpret_cast<ImTextureID>(intptr_t(1)));
    }
    checks_ = std::make_unique<bool[]>(size_t(windows_) * kControlsPerWindow);
    for (int i = 0; i < windows_ * kControlsPerWindow; ++i)
        checks_[size_t(i)] = i % 3 == 0;
    FrameMeter meter;
    frame(meter, Road::Direct);
    makeMousePath_();
    valid_ = true;
}

ImGuiScene::~ImGuiScene() {
    if (glReady_)
        ImGui_ImplOpenGL3_Shutdown();
    ImGui::DestroyContext(context_);
}

void ImGuiScene::frame(FrameMeter& meter, Road road) {
    ImGuiIO& io = ImGui::GetIO();
    io.DeltaTime = 1.0f / 60.0f;
    io.MousePos = mouse_;
    if (glReady_)
        ImGui_ImplOpenGL3_NewFrame();
    ImGui::NewFrame();
    for (int i = 0; i < windows_; ++i)
        buildWindow_(i);
    ImGui::Render();

    meter.drawBegins();
    ImDrawData* data = ImGui::GetDrawData();
    bool const draw = glReady_ && road != Road::None;
    if (draw) {
        clearSharedTarget();
        ImGui_ImplOpenGL3_RenderDrawData(data);
    }
    meter.finishBegins();
    if (draw)
        finishGl();
    meter.frameEnds(countDrawCalls(data));
}

void ImGuiScene::buildWindow_(int index) {
    bool const main = index == windows_ - 1;
    ImVec2 size(kWindowWidth, kWindowHeight);
    if (main && mainGrown_)
        size = ImVec2(size.x + kResizeX, size.y + kResizeY);
    ImGui::SetNextWindowPos(ImVec2(float(windowX(index)), float(windowY(index))), ImGuiCond_Always);
    ImGui::SetNextWindowSize(size, ImGuiCond_Always);
    char title[32];
    std::snprintf(title, sizeof title, "Window##%d", index);
    ImGui::Begin(title, nullptr, ImGuiWindowFlags_NoSavedSettings);
    int control = index * kControlsPerWindow;
    for (int c = 0; c < kColumns; ++c) {
        if (c > 0)
            ImGui::SameLine();
        ImGui::BeginGroup();
        for (int g = 0; g < kGroupsPerColumn; ++g) {
            ImGui::BeginGroup();
            for (int r = 0; r < kRowsPerGroup; ++r) {
                bool const first = main && c == 0 && g == 0 && r == 0;
                if (first)
                    mainRowY_ = ImGui::GetCursorScreenPos().y + ImGui::GetFrameHeight() / 2;
                buildRow_(control, first);
                control += kControlsPerRow;
            }
            ImGui::EndGroup();
        }
        ImGui::EndGroup();
    }
    ImGui::End();
}

void ImGuiScene::buildRow_(int firstControl, bool changing) {
    for (int k = 0; k < kControlsPerRow; ++k) {
        int const control = firstControl + k;
        ControlKind const kind = kRowControls[k];
        if (k > 0)
            ImGui::SameLine();
        ImGui::PushID(control);
        char const* text = changing && k == 1 ? kChangeTexts[changedText_] : controlText(kind, control);
        switch (kind) {
        case ControlKind::Label:
            ImGui::TextUnformatted(text);
            break;
        case ControlKind::Button:
            ImGui::Button(text);
            break;
        case ControlKind::CheckBox:
            ImGui::Checkbox(text, &checks_[size_t(control)]);
            break;
        }
        ImGui::PopID();
    }
}

void ImGuiScene::makeMousePath_() {
    float const left = float(windowX(windows_ - 1));
    for (float x = left + 2; x < left + kWindowWidth - 2; x += kMouseStep)
        mousePath_.emplace_back(x, mainRowY_);
    for (size_t i = mousePath_.size(); i-- > 0;)
        mousePath_.emplace_back(mousePath_[i].x, mousePath_[i].y + 1);
}

void ImGuiScene::moveMouse(int n) {
    if (!mousePath_.empty())
        mouse_ = mousePath_[size_t(n) % mousePath_.size()];
}

void ImGuiScene::settle() {
    mouse_ = ImVec2(2, 2);
    changedText_ = 1;
    mainGrown_ = false;
    FrameMeter meter;
    frame(meter, Road::None);
    frame(meter, Road::Direct);
}

}  // namespace vurel_bench
