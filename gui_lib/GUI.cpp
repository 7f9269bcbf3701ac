#include "GUI.h"

#include <algorithm>
#include <cmath>

#include "Application.h"
#include "LuaBinding.h"
#include "Message.h"
#include "Skin/Image.h"
#include "Skin/LuaUtil.h"
#include "Skin/Skin.h"
#include "UpdateManager.h"
#include "Widget.h"
#include "WidgetHandler.h"
#include "OffscreenWindow.h"
#include "WindowBase.h"
#include "WindowsManager.h"
#include "orm/Log.h"
#include "orm/Lua.h"
#include "rast/Font.h"
#include "rast/Renderer.h"
#include "rast/Shader.h"

namespace gui {

namespace {

GUI* g_gui = nullptr;

osg::Vec2i identityMouseFunc(int x, int y) { return {x, y}; }

template <class List, class T>
void addOnce(List& list, T const& item) {
    if (std::find(list.begin(), list.end(), item) == list.end())
        list.push_back(item);
}

template <class List, class T>
void removeAll(List& list, T const& item) {
    list.erase(std::remove(list.begin(), list.end(), item), list.end());
}

int truncate(float v) { return static_cast<int>(v); }

}  // namespace

// ---------------------------------------------------------------- lifecycle

void GUI::create(orm::basic_string<char> const& skinFile, osg::Vec2i const& viewportSize, float scale) {
    if (g_gui)
        return;
    GUI* gui = new GUI(viewportSize, scale);
    // Stored before the skin loads, so that everything below can reach it.
    g_gui = gui;
    gui->initSkinLuaState_(skinFile);
    gui->createSurface();
    new UpdateManager();
}

void GUI::destroy() {
    delete g_gui;
    g_gui = nullptr;
}

GUI* GUI::get() { return g_gui; }

GUI::GUI(osg::Vec2i const& viewportSize, float scale) : viewportSize_(viewportSize) {
    rastRenderer* renderer = rastRenderer::get();
    if (!renderer)
        throw Exception("GUI render not created!\n");
    renderer->setScale(scale > 0.0f ? scale : 1.0f);
    recomputeScreenGeometry_();
    messagePool_ = new GuiMessagePool();
    bkgPicture_ = new Image();
    messageQueue_.reserve(64);
    mouseListeners_.reserve(4);
}

GUI::~GUI() {
    if (skinLuaState_) {
        ORM_lua_close(skinLuaState_);
        skinLuaState_ = nullptr;
    }
    // Every widget and layout still alive dies here; destructors must not touch
    // Lua. Widgets first: a container destroys its own layout through the
    // layout's handle, which must still be there; orphan layouts go after.
    WidgetHandler::shutdown();
    LayoutHandler::shutdown();
    for (GuiSurface& surface : surfaces_)
        delete surface.manager;
    surfaces_.clear();
    delete UpdateManager::get();
    delete bkgPicture_;
    bkgPicture_ = nullptr;
    delete messagePool_;
    messagePool_ = nullptr;
    if (g_gui == this)
        g_gui = nullptr;
}

void GUI::initSkinLuaState_(orm::basic_string<char> const& file) {
    skinLuaState_ = ORM_lua_open("gui::GUI::initSkinLuaState_");
    ORM_lua_openlibs(skinLuaState_);
    lua::openBinding(skinLuaState_);
    lua_State* L = skinLuaState_;
    int status = ORM_lua_loadfile(L, file.c_str());
    if (status == 0)
        status = ORM_lua_pcall(L, 0, LUA_MULTRET, 0);
    if (status != 0) {
        char const* error = L ? lua_tostring(L, -1) : nullptr;
        orm::basic_string<char> text = "Cannot load gui skin from " + file + "!\nError:" + (error ? error : "") + "\n";
        if (L)
            lua_pop(L, 1);
        throw Exception(text);
    }
    // The script's results are of no use; the "Skin" table stays on the stack.
    lua_settop(L, 0);
    lua_getfield(L, LUA_GLOBALSINDEX, "Skin");
    if (!lua_istable(L, -1)) {
        lua_pop(L, 1);
        throw Exception("Global Skin table not loaded!\n");
    }
}

void GUI::loadSkin(orm::basic_string<char> const& name, skin::Skin& skin) {
    lua_State* L = skinLuaState_;
    if (!L)
        return;
    luautil::StackGuard guard(L);
    lua_getfield(L, LUA_GLOBALSINDEX, "Skin");
    if (!lua_istable(L, -1))
        return;
    lua_pushlstring(L, name.data(), name.size());
    lua_gettable(L, -2);
    if (lua_type(L, -1) != LUA_TFUNCTION)
        return;
    if (ORM_lua_pcall(L, 0, 1, 0) != 0) {
        char const* error = lua_tostring(L, -1);
        orm_vlogf("VUREL", 64, "Skin loading failed! Error: %s\n", error ? error : "");
        return;
    }
    if (lua_istable(L, -1))
        skin.loadFromScript(L);
}

// ---------------------------------------------------------------- surfaces

int GUI::createSurface() {
    int const id = static_cast<int>(surfaces_.size());
    surfaces_.push_back(GuiSurface{new WindowsManager(id), identityMouseFunc});
    return id;
}

bool GUI::getSurfaceIdValid(int surfaceId) const {
    return surfaceId >= 0 && static_cast<size_t>(surfaceId) < surfaces_.size();
}

WindowsManager* GUI::getWindowsManager(int surfaceId) const {
    return getSurfaceIdValid(surfaceId) ? surfaces_[static_cast<size_t>(surfaceId)].manager : nullptr;
}

void GUI::setSurfaceMouseFunc(int surfaceId, SurfaceMouseFunc func) {
    if (!getSurfaceIdValid(surfaceId))
        return;
    surfaces_[static_cast<size_t>(surfaceId)].mouseFunc = func ? std::move(func) : SurfaceMouseFunc(identityMouseFunc);
}

void GUI::setSurfaceMouseCursorCallback(int surfaceId, MouseCursorCallback callback) {
    if (WindowsManager* manager = getWindowsManager(surfaceId))
        manager->setMouseCursorCallback(std::move(callback));
}

osg::Vec2i GUI::surfacePosition_(size_t surfaceId, osg::Vec2i const& position) const {
    return surfaces_[surfaceId].mouseFunc(position.x, position.y);
}

// ---------------------------------------------------------------- geometry

float GUI::rendererScale_() const {
    rastRenderer const* renderer = rastRenderer::get();
    return renderer ? renderer->getScale() : 1.0f;
}

void GUI::recomputeScreenGeometry_() {
    float const s = rendererScale_();
    screenSize_ = {truncate(static_cast<float>(viewportSize_.x) / s), truncate(static_cast<float>(viewportSize_.y) / s)};
    screenPosition_ = {truncate(static_cast<float>(viewportPosition_.x) / s),
                       truncate(static_cast<float>(viewportPosition_.y) / s)};
}

void GUI::setViewportPosition(osg::Vec2i const& position) {
    viewportPosition_ = position;
    recomputeScreenGeometry_();
}

void GUI::setViewportSize(osg::Vec2i const& size) {
    viewportSize_ = size;
    recomputeScreenGeometry_();
}

float GUI::getScaleFactor() const { return 1.0f / rendererScale_(); }

osg::Vec2i GUI::getMousePosition(int surfaceId) const {
    if (!getSurfaceIdValid(surfaceId))
        return mousePosition_;
    return surfacePosition_(static_cast<size_t>(surfaceId), mousePosition_);
}

osg::Vec2i GUI::convertFromRawScreenPosition(int x, int y) const {
    float const s = rendererScale_();
    return {truncate((static_cast<float>(x) * mouseScale_.x + static_cast<float>(mouseOffset_.x)) / s -
                     static_cast<float>(screenPosition_.x)),
            truncate((static_cast<float>(y) * mouseScale_.y + static_cast<float>(mouseOffset_.y)) / s -
                     static_cast<float>(screenPosition_.y))};
}

osg::Vec2i GUI::convertToRawScreenPosition(int x, int y) const {
    float const s = rendererScale_();
    return {truncate((static_cast<float>(x + screenPosition_.x) * s - static_cast<float>(mouseOffset_.x)) /
                     mouseScale_.x),
            truncate((static_cast<float>(y + screenPosition_.y) * s - static_cast<float>(mouseOffset_.y)) /
                     mouseScale_.y)};
}

osg::Recti GUI::screenToViewport(osg::Recti const& rect) const {
    float const s = rendererScale_();
    osg::Recti out;
    out.min.x = truncate(static_cast<float>(rect.min.x) * s + static_cast<float>(screenPosition_.x));
    out.min.y = truncate(static_cast<float>(rect.min.y) * s + static_cast<float>(screenPosition_.y));
    out.max.x = out.min.x + truncate(static_cast<float>(rect.max.x - rect.min.x) * s);
    out.max.y = out.min.y + truncate(static_cast<float>(rect.max.y - rect.min.y) * s);
    return out;
}

osg::Recti GUI::viewportToScreen(osg::Recti const& rect) const {
    float const s = rendererScale_();
    osg::Recti out;
    out.min.x = truncate(static_cast<float>(rect.min.x) / s - static_cast<float>(screenPosition_.x));
    out.min.y = truncate(static_cast<float>(rect.min.y) / s - static_cast<float>(screenPosition_.y));
    out.max.x = out.min.x + truncate(static_cast<float>(rect.max.x - rect.min.x) / s);
    out.max.y = out.min.y + truncate(static_cast<float>(rect.max.y - rect.min.y) / s);
    return out;
}

bool GUI::getHasMouseInputAtScreenPoint(int x, int y) const {
    WindowsManager const* manager = getWindowsManager(0);
    return manager && manager->getHasMouseInputAtScreenPoint(convertFromRawScreenPosition(x, y));
}

// ---------------------------------------------------------------- frame

void GUI::processMessages() {
    // Messages posted while these are delivered wait for the next call.
    boost::container::small_vector<Message*, 32> messages(messageQueue_.begin(),
                                                          messageQueue_.begin() + static_cast<long>(messageCount_));
    messageCount_ = 0;
    for (size_t i = 0; i < messages.size(); ++i) {
        try {
            messages[i]->process();
        } catch (...) {
            // Nothing is lost: the failed message goes back to its pool and the
            // undelivered ones are queued again, ahead of anything newer.
            messages[i]->release(*messagePool_);
            messages.erase(messages.begin(), messages.begin() + static_cast<long>(i) + 1);
            messageQueue_.insert(messageQueue_.begin(), messages.begin(), messages.end());
            messageCount_ += messages.size();
            throw;
        }
        messages[i]->release(*messagePool_);
    }
    redrawWidgets_();
}

void GUI::redrawWidgets_() { Widget::redrawAll(); }

void GUI::doRedrawWidgets_() { Widget::doRedrawAll(); }

void GUI::parse() {
    for (GuiSurface& surface : surfaces_)
        surface.manager->parse();
}

void GUI::redraw(bool all) {
    if (all)
        for (GuiSurface& surface : surfaces_)
            surface.manager->setAllWindowsDirty(2);
    redrawWidgets_();
}

void GUI::setDebugDraw(bool debugDraw) {
    debugDraw_ = debugDraw;
    for (GuiSurface& surface : surfaces_)
        surface.manager->setAllWindowsDirty(2);
}

void GUI::doRedraw() {
    rastRenderer* renderer = rastRenderer::get();
    renderer->getFontManager()->doRedraw();
    bkgPicture_->doRedraw();
    for (GuiSurface& surface : surfaces_)
        surface.manager->rebuildHandles();
    doRedrawWidgets_();
    renderer->endRedraw();
}

void GUI::draw() {
    rastRenderer* renderer = rastRenderer::get();
    Application const* app = Application::get();
    osg::Vec2i const size = app ? app->getSize() : viewportSize_;
    float const s = renderer->getScale();

    rastRenderer::ViewportGuard viewport(osg::Recti(0, 0, size.x, size.y));
    // Clip rectangles are in units like positions; the renderer scales them to pixels.
    rastRenderer::ClipRectGuard clip(osg::Recti(0, 0, static_cast<int>(std::ceil(static_cast<float>(size.x) / s)),
                                                static_cast<int>(std::ceil(static_cast<float>(size.y) / s))));
    rastRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, static_cast<float>(size.x) / s, static_cast<float>(size.y) / s, 0.0f);
    rastRenderer::ModelViewMatrixGuard modelView;
    modelView.makeIdentity().setTranslate(static_cast<float>(screenPosition_.x), static_cast<float>(screenPosition_.y),
                                          0.0f);
    rastRenderer::ShaderTechniqueGuard technique(drawToTargetVR_ ? rastRenderer::TechniqueAlternative
                                                                 : rastRenderer::TechniqueNormal);
    rastShader* shader = renderer->getShader();
    shader->resetPositionShift();
    shader->turnOnDrawQuads();
    bkgPicture_->draw();
    surfaces_[0].manager->draw();
}

template <class DrawFn>
void GUI::drawIntoTarget_(osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity,
                          DrawFn const& drawContent) {
    rastRenderer* renderer = rastRenderer::get();
    float const s = renderer->getScale();
    rastRenderer::ProjectionMatrixGuard projection;
    rastRenderer::ViewportGuard viewport(osg::Recti(0, 0, size.x, size.y));
    // Targets have their own origin; clip rectangles scale with the target.
    osg::Vec2i const savedScreenPosition = screenPosition_;
    screenPosition_ = {};
    offscreenScaleFactor_ = scale / s;
    projection.makeOrtho2D(0.0f, static_cast<float>(size.x) / scale.x, static_cast<float>(size.y) / scale.y, 0.0f);
    {
        rastRenderer::ModelViewMatrixGuard modelView;
        modelView.setIdentity();
        rastRenderer::ShaderTechniqueGuard technique(rastRenderer::TechniqueNormal);
        rastShader* shader = renderer->getShader();
        shader->turnOnDrawQuads();
        shader->setGamma(gamma);
        shader->setIntensity(intensity);
        drawContent();
        shader->setGamma(1.0f);
        shader->setIntensity(1.0f);
    }
    offscreenScaleFactor_ = {1.0f, 1.0f};
    screenPosition_ = savedScreenPosition;
}

void GUI::drawToSurface(int surfaceId, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma,
                        float intensity) {
    WindowsManager* manager = getWindowsManager(surfaceId);
    if (!manager)
        return;
    drawIntoTarget_(size, scale, gamma, intensity, [manager] { manager->draw(); });
}

void GUI::drawOffscreenWindow(OffscreenWindow* window, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma,
                              float intensity) {
    if (!window)
        return;
    drawIntoTarget_(size, scale, gamma, intensity, [window] { window->draw(); });
}

void GUI::setBkgPicture(orm::basic_string<char> const& file, bool resizeToFill) {
    bkgPicture_->setTexture(file, osg::Recti());
    bkgPicture_->setAlign(Align2(Align(Align::Center, 0), Align(Align::Center, 0)));
    bkgPicture_->setResizeToFill(resizeToFill);
    bkgPicture_->redraw(screenSize_);
}

// ---------------------------------------------------------------- input

void GUI::post_(Message* message) {
    if (messageCount_ < messageQueue_.size())
        messageQueue_[messageCount_] = message;
    else
        messageQueue_.push_back(message);
    ++messageCount_;
}

void GUI::keyDown(KeyboardButton button, int value) { post_(messagePool_->takeKeyDown(button, value)); }

void GUI::keyUp(KeyboardButton button, int value) {
    // Print screen is answered at once, so the picture shows the state before
    // any queued input.
    if (button == KeyPrintScreen && makeScreenShotCallback_)
        makeScreenShotCallback_(nullptr);
    post_(messagePool_->takeKeyUp(button, value));
}

void GUI::onChar(KeyboardButton button, int value) { post_(messagePool_->takeChar(button, value)); }

void GUI::mouseDown(MouseButton button) { post_(messagePool_->takeMouseDown(button)); }

void GUI::mouseUp(MouseButton button) { post_(messagePool_->takeMouseUp(button)); }

void GUI::mouseMove(int x, int y) {
    osg::Vec2i const position = convertFromRawScreenPosition(x, y);
    if (position == mousePosition_)
        return;
    post_(messagePool_->takeMouseMove(position));
}

void GUI::mouseWheel(int delta) { post_(messagePool_->takeMouseWheel(delta)); }

void GUI::rawKeyInput(RawKeyInfo const& info) { post_(messagePool_->takeRawKeyInput(info)); }

void GUI::rawMouseInput(RawMouseInfo info) {
    osg::Vec2i const position = convertFromRawScreenPosition(info.x, info.y);
    info.x = position.x;
    info.y = position.y;
    post_(messagePool_->takeRawMouseInput(info));
}

void GUI::killWindow(WindowBase* window) { post_(messagePool_->takeKillWindow(window)); }

void GUI::addUserMessage(UserFunction function) { post_(messagePool_->takeUserCallback(std::move(function))); }

// ---------------------------------------------------------------- delivery

bool GUI::processKeyboardCallbacks(KeyboardButton button, int value, bool down) const {
    // A callback may remove others while it runs: those removed are skipped.
    boost::container::small_vector<KeyboardCallback, 8> const snapshot(keyboardCallbacks_.begin(),
                                                                       keyboardCallbacks_.end());
    bool handled = false;
    for (KeyboardCallback const& callback : snapshot) {
        if (std::find(keyboardCallbacks_.begin(), keyboardCallbacks_.end(), callback) == keyboardCallbacks_.end())
            continue;
        if ((*callback)(button, value, down))
            handled = true;
    }
    return handled;
}

void GUI::onKeyDownMessage(KeyboardButton button, int value) {
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onKeyDown(button, value))
            return;
}

void GUI::onKeyUpMessage(KeyboardButton button, int value) {
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onKeyUp(button, value))
            return;
}

void GUI::onCharMessage(KeyboardButton button, int value) {
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onChar(button, value))
            return;
}

void GUI::onMouseMoveMessage(osg::Vec2i const& position) {
    mousePosition_ = position;
    for (size_t i = 0; i < mouseListeners_.size(); ++i)
        mouseListeners_[i]->onMouseMove(position.x, position.y);
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onMouseMove(surfacePosition_(i, position)))
            return;
}

void GUI::onMouseDownMessage(MouseButton button) {
    Application const* app = Application::get();
    double const now = app ? app->getTime() : 0.0;
    // Strictly within the time and with the same button; the position does
    // not matter. A third quick press is a double click again.
    bool const isDouble = button == lastClickButton_ && doubleClickTime_ > now - lastClickTime_;
    lastClickTime_ = now;
    lastClickButton_ = button;
    for (size_t i = 0; i < mouseListeners_.size(); ++i) {
        if (isDouble)
            mouseListeners_[i]->onMouseDoubleClick(mousePosition_.x, mousePosition_.y, button);
        else
            mouseListeners_[i]->onMouseDown(mousePosition_.x, mousePosition_.y, button);
    }
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onMouseDown(button, isDouble))
            return;
}

void GUI::onMouseUpMessage(MouseButton button) {
    for (size_t i = 0; i < mouseListeners_.size(); ++i)
        mouseListeners_[i]->onMouseUp(mousePosition_.x, mousePosition_.y, button);
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onMouseUp(button))
            return;
}

void GUI::onMouseWheelMessage(int delta) {
    for (size_t i = 0; i < mouseListeners_.size(); ++i)
        mouseListeners_[i]->onMouseWheel(mousePosition_.x, mousePosition_.y, delta);
    for (size_t i = 0; i < surfaces_.size(); ++i)
        if (surfaces_[i].manager->onMouseWheel(delta))
            return;
}

void GUI::onRawKeyInputMessage(RawKeyInfo const& info) {
    for (size_t i = 0; i < rawKeyListeners_.size(); ++i)
        rawKeyListeners_[i]->onRawKeyInput(info);
}

void GUI::onRawMouseInputMessage(RawMouseInfo const& info) {
    for (size_t i = 0; i < rawMouseListeners_.size(); ++i)
        rawMouseListeners_[i]->onRawMouseInput(info);
}

void GUI::deleteWindow_(WindowBase* window) { delete window; }

// ---------------------------------------------------------------- registration

void GUI::addKeyboardCallback(KeyboardCallback const& callback) {
    if (callback)
        addOnce(keyboardCallbacks_, callback);
}

void GUI::removeKeyboardCallback(KeyboardCallback const& callback) { removeAll(keyboardCallbacks_, callback); }

void GUI::addMouseListener(MouseListener* listener) {
    if (listener)
        addOnce(mouseListeners_, listener);
}

void GUI::removeMouseListener(MouseListener* listener) { removeAll(mouseListeners_, listener); }

void GUI::addRawKeyListener(RawKeyListener* listener) {
    if (listener)
        addOnce(rawKeyListeners_, listener);
}

void GUI::removeRawKeyListener(RawKeyListener* listener) { removeAll(rawKeyListeners_, listener); }

void GUI::addRawMouseListener(RawMouseListener* listener) {
    if (listener)
        addOnce(rawMouseListeners_, listener);
}

void GUI::removeRawMouseListener(RawMouseListener* listener) { removeAll(rawMouseListeners_, listener); }

// ---------------------------------------------------------------- clipping guard

GUI::DisableClippingGuard::DisableClippingGuard() { GUI::get()->enableClipping(false); }

GUI::DisableClippingGuard::~DisableClippingGuard() { GUI::get()->enableClipping(true); }

}  // namespace gui
