#include "app/HeadlessApplication.h"

#include "GUI.h"
#include "UpdateManager.h"
#include "rast/Renderer.h"

namespace gui {

HeadlessApplication::HeadlessApplication(osg::Vec2i const& size) {
    size_ = size;
    requestedSize_ = size;
    instance_ = this;
}

HeadlessApplication::~HeadlessApplication() = default;

void HeadlessApplication::setKeyPressed(KeyboardButton button, bool pressed) {
    if (pressed)
        pressed_.insert(button);
    else
        pressed_.erase(button);
}

bool HeadlessApplication::createMainWindow_(int width, int height, bool) {
    size_ = osg::Vec2i(width, height);
    return true;
}

void HeadlessApplication::runFrame() {
    GUI* gui = GUI::get();
    if (!gui)
        return;
    gui->processMessages();
    if (UpdateManager* updates = UpdateManager::get())
        updates->updateTargets();
    update();
    gui->doRedraw();
    gui->draw();
    draw();
    runUpdateCallbacks_();
    if (rastRenderer* renderer = rastRenderer::get())
        renderer->endFrame();
}

int HeadlessApplication::run() {
    double const frameTime = 1.0 / (framerate_ > 0 ? framerate_ : 60);
    while (getRunning()) {
        runFrame();
        advanceTime(frameTime);
    }
    return 0;
}

}  // namespace gui
