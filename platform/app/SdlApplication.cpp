#include "app/SdlApplication.h"

#include <SDL.h>

#include <memory>

#include "GUI.h"
#include "UpdateManager.h"
#include "app/SdlInput.h"
#include "orm/Log.h"
#include "orm/Utf8.h"
#include "rast/Renderer.h"
#include "rast/backends/gl/GlBackend.h"
#include "rast/backends/null/NullBackend.h"

namespace gui {

namespace {

SDL_SystemCursor systemCursor(int cursorId) {
    switch (cursorId) {
    case 36:
    case 41:
        return SDL_SYSTEM_CURSOR_SIZEWE;
    case 39:
        return SDL_SYSTEM_CURSOR_SIZENS;
    case 38:
        return SDL_SYSTEM_CURSOR_SIZENESW;
    case 40:
        return SDL_SYSTEM_CURSOR_SIZENWSE;
    default:
        return SDL_SYSTEM_CURSOR_ARROW;
    }
}

}  // namespace

SdlApplication::SdlApplication(orm::basic_string<char> assetDir) : assetDir_(std::move(assetDir)) {
    instance_ = this;
}

SdlApplication::~SdlApplication() {
    // The renderer's textures and fonts go back to the context, so it goes first.
    if (ownBackend_ && rastRenderer::get() && &rastRenderer::get()->getBackend() == ownBackend_)
        rastRenderer::destroy();
    destroyWindow_();
    for (auto& [id, cursor] : cursors_)
        SDL_FreeCursor(cursor);
    if (videoReady_)
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

bool SdlApplication::init() {
    if (videoReady_)
        return true;
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
        orm_vlogf("VUREL", 16, "SdlApplication: no video: %s", SDL_GetError());
        return false;
    }
    videoReady_ = true;
    return true;
}

rastGlBackend* SdlApplication::getGlBackend() const {
    rastRenderer* renderer = rastRenderer::get();
    return backend_ && renderer && &renderer->getBackend() == backend_ ? backend_ : nullptr;
}

// ---------------------------------------------------------------------------
// Window, context and renderer

bool SdlApplication::createMainWindow_(int width, int height, bool fullScreen) {
    size_ = osg::Vec2i(width, height);
    bool const created = window_ ? true : createWindow_(width, height, fullScreen);
    if (!rastRenderer::get())
        createRenderer_();
    if (window_) {
        SDL_SetWindowSize(window_, width, height);
        setFullScreen(fullScreen);
        onResized_();
    }
    return created && window_ != nullptr;
}

bool SdlApplication::createWindow_(int width, int height, bool fullScreen) {
    if (!videoReady_ && !init())
        return false;
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    Uint32 const flags = SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | (fullScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
    window_ = SDL_CreateWindow("VUREL", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height, flags);
    if (!window_) {
        orm_vlogf("VUREL", 16, "SdlApplication: no OpenGL window: %s", SDL_GetError());
        // A window without pixels still brings input.
        window_ = SDL_CreateWindow("VUREL", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height,
                                   flags & ~Uint32(SDL_WINDOW_OPENGL));
        return false;
    }
    glContext_ = SDL_GL_CreateContext(window_);
    if (!glContext_) {
        orm_vlogf("VUREL", 16, "SdlApplication: no OpenGL 3.3 core context: %s", SDL_GetError());
        return false;
    }
    SDL_GL_SetSwapInterval(1);
    return true;
}

void SdlApplication::createRenderer_() {
    std::unique_ptr<rastBackend> backend;
    if (glContext_ && SDL_GL_MakeCurrent(window_, glContext_) == 0) {
        auto gl = std::make_unique<rastGlBackend>(assetDir_.c_str());
        if (gl->isValid()) {
            backend_ = gl.get();
            backend = std::move(gl);
        }
    }
    if (!backend) {
        orm_vlogf("VUREL", 16, "SdlApplication: no OpenGL; running without drawing");
        backend = std::make_unique<rastNullBackend>();
    }
    ownBackend_ = backend.get();
    rastRenderer::create(std::move(backend));
}

void SdlApplication::destroyWindow_() {
    if (glContext_)
        SDL_GL_DeleteContext(glContext_);
    if (window_)
        SDL_DestroyWindow(window_);
    glContext_ = nullptr;
    window_ = nullptr;
}

void SdlApplication::onResized_() {
    if (!window_)
        return;
    int width = 0, height = 0;
    SDL_GetWindowSize(window_, &width, &height);
    size_ = osg::Vec2i(width, height);
    if (rastGlBackend* gl = getGlBackend()) {
        // The frame buffer may have more pixels than the window has points.
        int drawableWidth = 0, drawableHeight = 0;
        SDL_GL_GetDrawableSize(window_, &drawableWidth, &drawableHeight);
        gl->setDefaultTarget(0, drawableWidth, drawableHeight);
    }
    if (GUI* gui = GUI::get())
        gui->setViewportSize(size_);
}

void SdlApplication::setFullScreen(bool fullScreen) {
    fullScreen_ = fullScreen;
    if (window_)
        SDL_SetWindowFullscreen(window_, fullScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
}

void SdlApplication::setWindowTitle(orm::basic_string<char> const& title) {
    if (window_)
        SDL_SetWindowTitle(window_, title.c_str());
}

void SdlApplication::setWindowPosition(osg::Vec2i const& position) {
    if (window_)
        SDL_SetWindowPosition(window_, position.x, position.y);
}

osg::Vec2i SdlApplication::getWindowPosition() const {
    osg::Vec2i position;
    if (window_)
        SDL_GetWindowPosition(window_, &position.x, &position.y);
    return position;
}

void SdlApplication::setWindowSize(osg::Vec2i const& size) {
    if (!window_) {
        size_ = size;
        return;
    }
    SDL_SetWindowSize(window_, size.x, size.y);
    onResized_();
}

osg::Vec2i SdlApplication::getDesktopSize() const {
    SDL_DisplayMode mode;
    if (videoReady_ && SDL_GetDesktopDisplayMode(0, &mode) == 0)
        return {mode.w, mode.h};
    return size_;
}

// ---------------------------------------------------------------------------
// The loop

int SdlApplication::run() {
    while (getRunning())
        runFrame();
    return 0;
}

void SdlApplication::runFrame() {
    processEvents();
    drawFrame_();
    swapBuffers();
    // Without a window there is no swap to wait for.
    if (!window_ || !hasGl())
        SDL_Delay(static_cast<Uint32>(1000 / (framerate_ > 0 ? framerate_ : 60)));
}

void SdlApplication::drawFrame_() {
    rastGlBackend* gl = getGlBackend();
    if (gl) {
        gl->bindFrameBuffer(0);
        gl->popClipRect(nullptr);
        gl->clear(clearColor_);
    }
    if (GUI* gui = GUI::get()) {
        gui->processMessages();
        if (UpdateManager* updates = UpdateManager::get())
            updates->updateTargets();
        update();
        gui->doRedraw();
        gui->draw();
    } else {
        update();
    }
    draw();
    runUpdateCallbacks_();
    if (rastRenderer* renderer = rastRenderer::get())
        renderer->endFrame();
    if (gl && !pendingScreenshot_.empty()) {
        gl->writePng(pendingScreenshot_.c_str());
        pendingScreenshot_.clear();
    }
}

void SdlApplication::swapBuffers() {
    if (window_ && glContext_)
        SDL_GL_SwapWindow(window_);
}

bool SdlApplication::makeScreenshot(char const* file) {
    if (!file || !*file || !hasGl())
        return false;
    pendingScreenshot_ = file;
    return true;
}

double SdlApplication::getTime() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

// ---------------------------------------------------------------------------
// Events

void SdlApplication::processEvents() {
    if (!videoReady_)
        return;
    SDL_Event event;
    while (SDL_PollEvent(&event))
        handleEvent(event);
}

void SdlApplication::handleEvent(SDL_Event const& event) {
    GUI* gui = GUI::get();
    switch (event.type) {
    case SDL_QUIT:
        onQuit();
        break;
    case SDL_WINDOWEVENT:
        onWindowEvent_(event);
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        onKey_(event, event.type == SDL_KEYDOWN);
        break;
    case SDL_TEXTINPUT:
        onText_(event.text.text);
        break;
    case SDL_MOUSEMOTION:
        mouse_ = osg::Vec2i(event.motion.x, event.motion.y);
        if (gui)
            gui->mouseMove(mouse_.x, mouse_.y);
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        if (!gui)
            break;
        if (mouse_ != osg::Vec2i(event.button.x, event.button.y)) {
            mouse_ = osg::Vec2i(event.button.x, event.button.y);
            gui->mouseMove(mouse_.x, mouse_.y);
        }
        if (event.type == SDL_MOUSEBUTTONDOWN)
            gui->mouseDown(translateSdlButton(event.button.button));
        else
            gui->mouseUp(translateSdlButton(event.button.button));
        break;
    case SDL_MOUSEWHEEL:
        if (gui && event.wheel.y != 0)
            gui->mouseWheel(event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.wheel.y : event.wheel.y);
        break;
    default:
        break;
    }
}

void SdlApplication::onWindowEvent_(SDL_Event const& event) {
    switch (event.window.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED:
        onResized_();
        break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
        onActivate(true);
        break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
        // Keys released while away never report back.
        pressed_.clear();
        onActivate(false);
        break;
    case SDL_WINDOWEVENT_CLOSE:
        onQuit();
        break;
    default:
        break;
    }
}

void SdlApplication::onKey_(SDL_Event const& event, bool down) {
    KeyboardButton const key = translateSdlKey(event.key.keysym.sym);
    if (key == KeyNone)
        return;
    int const modifiers = event.key.keysym.mod;
    GUI* gui = GUI::get();
    if (!down) {
        pressed_.erase(key);
        if (gui)
            gui->keyUp(key, modifiers);
        return;
    }
    pressed_.insert(key);
    lastKey_ = key;
    if (!gui)
        return;
    gui->keyDown(key, modifiers);
    // Ctrl with a letter brings no text, yet editors take their commands from characters.
    bool const ctrl = (modifiers & KMOD_CTRL) != 0 && (modifiers & KMOD_ALT) == 0;
    if (ctrl && key >= 'a' && key <= 'z')
        gui->onChar(key, key & 0x1F);
}

void SdlApplication::onText_(char const* utf8) {
    GUI* gui = GUI::get();
    if (!gui || !utf8)
        return;
    Uint32* codePoints = SDL_iconv_utf8_ucs4(utf8);
    if (!codePoints)
        return;
    for (Uint32 const* cp = codePoints; *cp; ++cp)
        gui->onChar(lastKey_, static_cast<int>(*cp));
    SDL_free(codePoints);
}

// ---------------------------------------------------------------------------
// Cursor and clipboard

void SdlApplication::setMouseCursor(int cursorId) {
    cursorId_ = cursorId;
    if (!videoReady_)
        return;
    SDL_SystemCursor const kind = systemCursor(cursorId);
    SDL_Cursor*& cursor = cursors_[kind];
    if (!cursor)
        cursor = SDL_CreateSystemCursor(kind);
    if (cursor)
        SDL_SetCursor(cursor);
}

void SdlApplication::showMouseCursor(bool show) {
    if (videoReady_)
        SDL_ShowCursor(show ? SDL_ENABLE : SDL_DISABLE);
}

void SdlApplication::setMousePosition(osg::Vec2i const& position) {
    mouse_ = position;
    if (window_)
        SDL_WarpMouseInWindow(window_, position.x, position.y);
}

void SdlApplication::setMouseCapture(bool capture) {
    if (videoReady_)
        SDL_CaptureMouse(capture ? SDL_TRUE : SDL_FALSE);
}

void SdlApplication::setClipboardText(orm::basic_string<wchar_t> const& text) {
    clipboard_ = text;
    if (videoReady_)
        SDL_SetClipboardText(orm::iconv_wchar_to_utf8(text).c_str());
}

orm::basic_string<wchar_t> SdlApplication::getClipboardText() const {
    if (!videoReady_ || !SDL_HasClipboardText())
        return clipboard_;
    char* text = SDL_GetClipboardText();
    if (!text)
        return clipboard_;
    orm::basic_string<wchar_t> result = orm::iconv_utf8_to_wchar(text);
    SDL_free(text);
    return result;
}

}  // namespace gui
