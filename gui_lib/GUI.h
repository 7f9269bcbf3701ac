#pragma once

#include <functional>
#include <memory>
#include <stdexcept>

#include <boost/container/small_vector.hpp>

#include "Export.h"
#include "InputTypes.h"
#include "orm/Allocator.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2f.h"
#include "osg/Vec2i.h"

struct lua_State;

namespace gui {

class GraphicCommands;
class GuiMessagePool;
class Image;
class Message;
class OffscreenWindow;
class WindowBase;
class Widget;
class WindowsManager;

namespace skin {
class Skin;
}  // namespace skin

// The root of the toolkit, one per process. It owns the surfaces (each an
// independent stack of windows with its own mouse mapping), the input queue,
// the background picture, the skin script's Lua state, and the coordinate
// model that turns raw device positions into toolkit positions.
//
// Once a frame the application calls processMessages, then
// UpdateManager::updateTargets, doRedraw and draw.
class VUREL_EXPORT GUI {
public:
    class VUREL_EXPORT Exception : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    // Turns clipping off while it lives. The end always turns clipping on,
    // whatever it was before.
    class VUREL_EXPORT DisableClippingGuard {
    public:
        DisableClippingGuard();
        ~DisableClippingGuard();
        DisableClippingGuard(DisableClippingGuard const&) = delete;
        DisableClippingGuard& operator=(DisableClippingGuard const&) = delete;
    };

    class VUREL_EXPORT MouseListener {
    public:
        virtual ~MouseListener() = default;
        virtual void onMouseMove(int /*x*/, int /*y*/) {}
        virtual void onMouseDown(int /*x*/, int /*y*/, MouseButton) {}
        virtual void onMouseDoubleClick(int /*x*/, int /*y*/, MouseButton) {}
        virtual void onMouseUp(int /*x*/, int /*y*/, MouseButton) {}
        virtual void onMouseWheel(int /*x*/, int /*y*/, int /*delta*/) {}
    };

    class VUREL_EXPORT RawKeyListener {
    public:
        virtual ~RawKeyListener() = default;
        virtual void onRawKeyInput(RawKeyInfo const&) {}
    };

    class VUREL_EXPORT RawMouseListener {
    public:
        virtual ~RawMouseListener() = default;
        virtual void onRawMouseInput(RawMouseInfo const&) {}
    };

    using KeyboardCallback = std::shared_ptr<std::function<bool(KeyboardButton, int, bool)>>;
    using UserFunction = std::shared_ptr<std::function<void()>>;
    using SurfaceMouseFunc = std::function<osg::Vec2i(int, int)>;
    using MouseCursorCallback = std::function<void(bool, int, WindowBase*)>;

    // Lifecycle. `create` needs the application and the renderer to exist; it
    // throws Exception when the renderer is missing or the skin script cannot
    // be loaded. A second call keeps the first instance.
    static void create(orm::basic_string<char> const& skinFile, osg::Vec2i const& viewportSize, float scale);
    static void destroy();
    static GUI* get();

    // Surfaces.
    int createSurface();
    bool getSurfaceIdValid(int surfaceId) const;
    WindowsManager* getWindowsManager(int surfaceId) const;
    void setSurfaceMouseFunc(int surfaceId, SurfaceMouseFunc func);
    void setSurfaceMouseCursorCallback(int surfaceId, MouseCursorCallback callback);
    int getSurfaceCount() const { return static_cast<int>(surfaces_.size()); }

    // Geometry: raw viewport pixels and toolkit units.
    void setViewportPosition(osg::Vec2i const& position);
    void setViewportSize(osg::Vec2i const& size);
    osg::Vec2i const& getViewportPosition() const { return viewportPosition_; }
    osg::Vec2i const& getViewportSize() const { return viewportSize_; }
    osg::Vec2i const& getScreenPosition() const { return screenPosition_; }
    osg::Vec2i const& getScreenSize() const { return screenSize_; }
    float getScaleFactor() const;
    void setMouseScale(osg::Vec2f const& scale) { mouseScale_ = scale; }
    osg::Vec2f const& getMouseScale() const { return mouseScale_; }
    void setMouseOffset(osg::Vec2i const& offset) { mouseOffset_ = offset; }
    osg::Vec2i const& getMouseOffset() const { return mouseOffset_; }
    osg::Vec2f const& getOffscreenScaleFactor() const { return offscreenScaleFactor_; }
    osg::Vec2i getMousePosition(int surfaceId) const;
    osg::Vec2i convertFromRawScreenPosition(int x, int y) const;
    osg::Vec2i convertToRawScreenPosition(int x, int y) const;
    osg::Recti screenToViewport(osg::Recti const& rect) const;
    osg::Recti viewportToScreen(osg::Recti const& rect) const;

    // The frame.
    void processMessages();
    void parse();
    void redraw(bool all);
    void doRedraw();
    void draw();
    void drawToSurface(int surfaceId, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity);
    void drawOffscreenWindow(OffscreenWindow* window, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma,
                             float intensity);
    // Kept for applications written against it; it does nothing and calls nothing back.
    void sumbitGraphicCommands(void (*)(GraphicCommands*)) {}

    // Settings.
    void setBkgPicture(orm::basic_string<char> const& file, bool resizeToFill);
    void setDebugDraw(bool debugDraw);
    bool getDebugDraw() const { return debugDraw_; }
    void enableClipping(bool enabled) { clippingEnabled_ = enabled; }
    bool getClippingEnabled() const { return clippingEnabled_; }
    void setDoubleClickTime(double seconds) { doubleClickTime_ = seconds; }
    double getDoubleClickTime() const { return doubleClickTime_; }
    void setTabSpacesCount(int count) { tabSpacesCount_ = count < 0 ? 0 : count; }
    int getTabSpacesCount() const { return tabSpacesCount_; }
    void setTargetWidget(Widget* widget) { targetWidget_ = widget; }
    Widget* getTargetWidget() const { return targetWidget_; }
    void setDrawToTargetVR(bool vr) { drawToTargetVR_ = vr; }
    bool getDrawToTargetVR() const { return drawToTargetVR_; }
    void setMakeScreenShotCallback(void (*callback)(char const*)) { makeScreenShotCallback_ = callback; }
    auto getMakeScreenShotCallback() const { return makeScreenShotCallback_; }

    // Queries.
    bool getHasMouseInputAtScreenPoint(int x, int y) const;
    lua_State* getSkinLuaState() const { return skinLuaState_; }

    // Runs the skin function `name` of the script's "Skin" table and loads the
    // table it returns into `skin`. A missing function leaves the skin alone;
    // a failing one is logged. The Lua stack is left as it was.
    void loadSkin(orm::basic_string<char> const& name, skin::Skin& skin);
    // Builds a whole window from a resource script; null when it cannot.
    WindowBase* createWindowFromResource(char const* resource);
    // Builds the contents of a resource into an existing window.
    void loadWindowFromResource(char const* resource, WindowBase* window);

    // Input. Each call only queues a message; processMessages delivers it.
    void keyDown(KeyboardButton button, int value);
    void keyUp(KeyboardButton button, int value);
    void onChar(KeyboardButton button, int value);
    void mouseDown(MouseButton button);
    void mouseUp(MouseButton button);
    void mouseMove(int x, int y);
    void mouseWheel(int delta);
    void rawKeyInput(RawKeyInfo const& info);
    void rawMouseInput(RawMouseInfo info);
    // Deletes the window at the next processMessages. Queue it once only.
    void killWindow(WindowBase* window);
    void addUserMessage(UserFunction function);

    // Delivery, called by the messages.
    void onKeyDownMessage(KeyboardButton button, int value);
    void onKeyUpMessage(KeyboardButton button, int value);
    void onCharMessage(KeyboardButton button, int value);
    void onMouseDownMessage(MouseButton button);
    void onMouseUpMessage(MouseButton button);
    void onMouseMoveMessage(osg::Vec2i const& position);
    void onMouseWheelMessage(int delta);
    void onRawKeyInputMessage(RawKeyInfo const& info);
    void onRawMouseInputMessage(RawMouseInfo const& info);
    bool processKeyboardCallbacks(KeyboardButton button, int value, bool down) const;

    // Registration; adding twice does nothing, removing what is absent does nothing.
    void addKeyboardCallback(KeyboardCallback const& callback);
    void removeKeyboardCallback(KeyboardCallback const& callback);
    void addMouseListener(MouseListener* listener);
    void removeMouseListener(MouseListener* listener);
    void addRawKeyListener(RawKeyListener* listener);
    void removeRawKeyListener(RawKeyListener* listener);
    void addRawMouseListener(RawMouseListener* listener);
    void removeRawMouseListener(RawMouseListener* listener);

    // Number of messages waiting for the next processMessages.
    size_t getQueuedMessageCount() const { return messageCount_; }

protected:
    GUI(osg::Vec2i const& viewportSize, float scale);
    ~GUI();

    // Opens the Lua state and runs the skin script; throws Exception on failure.
    void initSkinLuaState_(orm::basic_string<char> const& file);

private:
    friend class MessageKillWindow;

    struct GuiSurface {
        WindowsManager* manager = nullptr;
        SurfaceMouseFunc mouseFunc;
    };

    void post_(Message* message);
    void deleteWindow_(WindowBase* window);
    osg::Vec2i surfacePosition_(size_t surfaceId, osg::Vec2i const& position) const;
    float rendererScale_() const;
    void recomputeScreenGeometry_();
    // Widget redraw and render stages; the widget tree hooks in here.
    void redrawWidgets_();
    // Draws into the target now bound, at `size` pixels and `scale` pixels per unit.
    template <class DrawFn>
    void drawIntoTarget_(osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity,
                         DrawFn const& drawContent);
    void doRedrawWidgets_();

    orm::vector<GuiSurface> surfaces_;
    osg::Vec2i viewportPosition_;
    osg::Vec2i viewportSize_;
    osg::Vec2i screenPosition_;
    osg::Vec2i screenSize_;
    osg::Vec2i mouseOffset_;
    osg::Vec2f mouseScale_{1.0f, 1.0f};
    osg::Vec2f offscreenScaleFactor_{1.0f, 1.0f};
    double doubleClickTime_ = 0.3;
    osg::Vec2i mousePosition_;
    MouseButton lastClickButton_ = MouseButtonNone;
    double lastClickTime_ = 0.0;
    bool clippingEnabled_ = true;
    orm::vector<Message*> messageQueue_;
    size_t messageCount_ = 0;
    GuiMessagePool* messagePool_ = nullptr;
    boost::container::small_vector<KeyboardCallback, 8> keyboardCallbacks_;
    orm::vector<MouseListener*> mouseListeners_;
    orm::vector<RawMouseListener*> rawMouseListeners_;
    orm::vector<RawKeyListener*> rawKeyListeners_;
    Image* bkgPicture_ = nullptr;
    int tabSpacesCount_ = 4;
    bool debugDraw_ = false;
    void (*makeScreenShotCallback_)(char const*) = nullptr;
    Widget* targetWidget_ = nullptr;
    lua_State* skinLuaState_ = nullptr;
    bool drawToTargetVR_ = false;
};

}  // namespace gui
