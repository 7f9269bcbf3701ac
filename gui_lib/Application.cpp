#include "Application.h"

#include <algorithm>

#include "KeyboardButtons.h"

namespace gui {

Application* Application::instance_ = nullptr;

Application::Application() { registerKeyboardButtonsNames(); }

Application::~Application() {
    if (instance_ == this)
        instance_ = nullptr;
}

void Application::destroy() {
    delete instance_;
    instance_ = nullptr;
}

bool Application::createMainWindow(int width, int height, bool fullScreen) {
    requestedSize_ = osg::Vec2i(width, height);
    size_ = requestedSize_;
    fullScreen_ = fullScreen;
    return createMainWindow_(width, height, fullScreen);
}

void Application::addUpdateCallback(UpdateCallback const& callback) {
    if (std::find(updateCallbacks_.begin(), updateCallbacks_.end(), callback) == updateCallbacks_.end())
        updateCallbacks_.push_back(callback);
}

void Application::removeUpdateCallback(UpdateCallback const& callback) {
    updateCallbacks_.erase(std::remove(updateCallbacks_.begin(), updateCallbacks_.end(), callback),
                           updateCallbacks_.end());
}

void Application::onQuit() {
    if (onQuitCallback_)
        onQuitCallback_();
    else
        quit();
}

void Application::onActivate(bool active) {
    active_ = active;
    if (onActivateCallback_)
        onActivateCallback_(active);
}

void Application::resetCallbacks() {
    updateCallbacks_.clear();
    onQuitCallback_ = nullptr;
    onActivateCallback_ = nullptr;
}

void Application::runUpdateCallbacks_() {
    // A callback may remove itself or others; run over a snapshot that keeps them alive.
    if (updateCallbacks_.empty())
        return;
    for (size_t i = 0; i < updateCallbacks_.size(); ++i) {
        UpdateCallback const callback = updateCallbacks_[i];
        if (callback && *callback)
            (*callback)();
    }
}

}  // namespace gui
