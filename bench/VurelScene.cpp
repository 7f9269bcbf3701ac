#include "VurelScene.h"

#include <cstdint>

#include "Button.h"
#include "CheckBox.h"
#include "FrameMeter.h"
#include "FrameUi.h"
#include "GUI.h"
#include "Panel.h"
#include "SharedGl.h"
#include "Static.h"
#include "UpdateManager.h"
#include "WidgetHandler.h"
#include "Window.h"
#include "WindowsManager.h"
#include "app/EglContext.h"
#include "app/HeadlessApplication.h"
#include "layouts/HorzLayout.h"
#include "layouts/Layout.h"
#include "layouts/VertLayout.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"
#include "rast/Texture.h"
#include "rast/backends/gl/GlBackend.h"
#include "rast/backends/null/NullBackend.h"

namespace vurel_bench {

namespace {

orm::basic_string<wchar_t> wide(char const* text) {
    orm::basic_string<wchar_t> out;
    for (char const* c = text; *c; ++c)
        out.push_back(static_cast<wchar_t>(*c));
    return out;
}

// A square picture with a darker rim of `rim` pixels, or a filled mark
// inside a transparent edge of `rim` pixels.
std::vector<uint8_t> picture(int side, int rim, bool mark) {
    std::vector<uint8_t> rgba(size_t(side) * size_t(side) * 4);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            bool const edge = x < rim || y < rim || x >= side - rim || y >= side - rim;
            uint8_t* p = &rgba[(size_t(y) * size_t(side) + size_t(x)) * 4];
            p[0] = p[1] = p[2] = edge && !mark ? 160 : 255;
            p[3] = mark && edge ? 0 : 255;
        }
    return rgba;
}

gui::Panel* makePanel(gui::Layout* layout) {
    auto* panel = new gui::Panel();
    panel->setLayout(layout->handler());
    return panel;
}

// Children fill the width of a column; a row shares its width among its controls.
gui::Layout* columnLayout(int gap) {
    auto* layout = new gui::VertLayout(gap);
    layout->setHorzAlign(gui::Align(gui::Align::Stretch));
    return layout;
}

gui::Layout* rowLayout(int gap) {
    auto* layout = new gui::HorzLayout(gap);
    layout->setHorzAlign(gui::Align(gui::Align::Stretch));
    layout->setVertAlign(gui::Align(gui::Align::Stretch));
    return layout;
}

gui::Widget* makeControl(ControlKind kind, int index) {
    gui::Widget* control = nullptr;
    switch (kind) {
    case ControlKind::Label:
        control = new gui::Static();
        break;
    case ControlKind::Button:
        control = new gui::Button();
        break;
    case ControlKind::CheckBox:
        control = new gui::CheckBox(index % 3 == 0 ? 1 : 0);
        break;
    }
    control->setText(wide(controlText(kind, index)));
    return control;
}

}  // namespace

VurelScene::VurelScene(Backend backend, int controls, bool cachedWindows)
    : backend_(backend), controls_(controls), cachedWindows_(cachedWindows) {
    app_ = std::make_unique<gui::HeadlessApplication>(osg::Vec2i(kScreenWidth, kScreenHeight));
    if (!createRenderer_())
        return;
    registerPictures_();
    gui::GUI::create(VUREL_BENCH_DIR "/bench_skin.lua", {kScreenWidth, kScreenHeight}, 1.0f);
    changeTexts_[0] = wide(kChangeTexts[0]);
    changeTexts_[1] = wide(kChangeTexts[1]);
    int const windows = windowCount(controls);
    for (int i = 0; i < windows; ++i)
        buildWindow_(i);
    FrameMeter meter;
    frame(meter, Road::Direct);
    makeMousePath_();
    valid_ = true;
}

VurelScene::~VurelScene() {
    gui::GUI::destroy();
    if (rastRenderer::get())
        rastRenderer::destroy();
    app_.reset();
}

bool VurelScene::createRenderer_() {
    if (backend_ == Backend::Null) {
        rastRenderer::create(std::make_unique<rastNullBackend>());
        return true;
    }
    gui::EglContext* context = sharedGlContext();
    if (!context)
        return false;
    auto gl = std::make_unique<rastGlBackend>(VUREL_ASSET_DIR);
    if (!gl->isValid())
        return false;
    gl->setDefaultTarget(context->getFrameBuffer(), kScreenWidth, kScreenHeight);
    gl_ = gl.get();
    rastRenderer::create(std::move(gl));
    return true;
}

void VurelScene::registerPictures_() {
    rastTextureManager* textures = rastRenderer::get()->getTextureManager();
    textures->addImage("bench/frame", {16, 16}, picture(16, 4, false).data());
    textures->addImage("bench/check", {12, 12}, picture(12, 2, true).data());
}

void VurelScene::buildWindow_(int index) {
    auto* window = new gui::Window();
    window->setText(wide("Window"));
    window->setPosition({windowX(index), windowY(index)});
    window->setDrawToTarget(cachedWindows_);
    auto* columns = new gui::HorzLayout(6);
    columns->setHorzAlign(gui::Align(gui::Align::Stretch));
    columns->setVertAlign(gui::Align(gui::Align::Stretch));
    window->setLayout(columns->handler());
    int control = index * kControlsPerWindow;
    for (int c = 0; c < kColumns; ++c) {
        gui::Panel* column = makePanel(columnLayout(4));
        window->insertWidget(column);
        for (int g = 0; g < kGroupsPerColumn; ++g) {
            gui::Panel* group = makePanel(columnLayout(2));
            column->insertWidget(group);
            for (int r = 0; r < kRowsPerGroup; ++r) {
                gui::Panel* row = makePanel(rowLayout(4));
                group->insertWidget(row);
                if (c == 0 && g == 0 && r == 0)
                    mainRow_ = row;
                for (ControlKind kind : kRowControls)
                    row->insertWidget(makeControl(kind, control++));
            }
        }
    }
    window->setSize(window->getPrefSize());
    window->setVisible(true);
    windows_.push_back(window);
}

int VurelScene::getWidgetCount() const { return static_cast<int>(gui::WidgetHandler::getAliveCount()); }

// ---------------------------------------------------------------- what changes

void VurelScene::makeMousePath_() {
    gui::Window* main = windows_.back();
    mainSize_ = main->getSize();
    // The first button of the main window is the one that changes; the
    // mouse crosses the window through the middle of its row.
    gui::Panel* row = mainRow_;
    if (!row)
        return;
    changingButton_ = static_cast<gui::Button*>(row->getWidget(1));
    changingButton_->setText(changeTexts_[1]);
    int const y = row->widgetToScreen({0, row->getSize().y / 2}).y;
    osg::Vec2i const left = main->getPosition();
    for (int x = left.x + 2; x < left.x + mainSize_.x - 2; x += kMouseStep)
        mousePath_.emplace_back(x, y);
    // Back one pixel lower, so that no two positions in a row are equal.
    for (size_t i = mousePath_.size(); i-- > 0;)
        mousePath_.push_back(mousePath_[i] + osg::Vec2i(0, 1));
}

void VurelScene::changeOneButton(int n) {
    if (changingButton_)
        changingButton_->setText(changeTexts_[n % 2]);
}

void VurelScene::moveMouse(int n) {
    if (mousePath_.empty())
        return;
    osg::Vec2i const p = mousePath_[size_t(n) % mousePath_.size()];
    gui::GUI::get()->mouseMove(p.x, p.y);
}

void VurelScene::resizeMainWindow(int n) {
    osg::Vec2i const grow = n % 2 ? osg::Vec2i(kResizeX, kResizeY) : osg::Vec2i();
    windows_.back()->setSize(mainSize_ + grow);
}

void VurelScene::settle() {
    gui::GUI::get()->mouseMove(2, 2);
    windows_.back()->setSize(mainSize_);
    changeOneButton(1);
    FrameMeter meter;
    frame(meter, Road::None);
    frame(meter, Road::Direct);
}

// ---------------------------------------------------------------- the frame

void VurelScene::frame(FrameMeter& meter, Road road) {
    gui::GUI& gui = *gui::GUI::get();
    rastRenderer& renderer = *rastRenderer::get();
    renderer.getBackend().resetFrameStats();
    app_->advanceTime(1.0 / 60.0);
    gui.processMessages();
    gui::UpdateManager::get()->updateTargets();
    gui.doRedraw();

    meter.drawBegins();
    if (gl_ && road != Road::None) {
        gl_->bindFrameBuffer(0);
        gl_->clear(osg::Vec4f(0.1f, 0.1f, 0.12f, 1.0f));
    }
    if (road == Road::Recorded) {
        record_();
        meter.replayBegins();
        replay_();
    } else if (road == Road::Direct) {
        gui.draw();
    }
    renderer.endFrame();
    meter.finishBegins();
    if (gl_)
        finishGl();
    meter.frameEnds(renderer.getBackend().getFrameStats().drawCalls);
}

// As GUI::draw sets the renderer up, recorded.
void VurelScene::record_() {
    osg::Recti const screen(0, 0, kScreenWidth, kScreenHeight);
    gui::GraphicCommandViewportGuard viewport(commands_, screen);
    gui::GraphicCommandClipRectGuard clip(commands_, screen);
    gui::GraphicCommandProjectionMatrixGuard projection(commands_);
    projection.makeOrtho2D(0.0f, float(kScreenWidth), float(kScreenHeight), 0.0f);
    gui::GraphicCommandModelViewMatrixGuard modelView(commands_);
    modelView.setIdentity();
    gui::GraphicCommandShaderTechniqueGuard technique(commands_, rastRenderer::TechniqueNormal);
    gui::GUI::get()->getWindowsManager(0)->make(&commands_);
}

// As an application's render side does: every doRedraw, every draw, then
// back to the pools from the end, so the next frame reuses the same commands.
void VurelScene::replay_() {
    rastShader* shader = rastRenderer::get()->getShader();
    shader->resetPositionShift();
    shader->turnOnDrawQuads();
    auto const& list = commands_.getCommands();
    for (gui::GraphicCommand* command : list)
        command->doRedraw();
    for (gui::GraphicCommand* command : list)
        command->draw();
    for (size_t i = list.size(); i-- > 0;)
        list[i]->release();
    for (gui::GraphicCommandParse* command : commands_.getParseCommands())
        command->release();
    commands_.clear();
}

}  // namespace vurel_bench
