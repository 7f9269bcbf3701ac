#pragma once

#include "Widget.h"

namespace gui {

// The press machine shared by every clickable control. A click of the primary
// mouse button and a press of Space or Return both end in changeState_; the
// look follows from three flags and the enabled state:
// - mousePressed_: button 1 went down here and has not come up;
// - mouseInside_: the pointer is over the widget (kept up to date during a
//   press through the mouse capture);
// - keyPressed_: Space or Return is held down here.
// A press dragged outside shows "hover", a held key "pressed". ButtonBase
// draws nothing of its own.
class VUREL_EXPORT ButtonBase : public Widget {
public:
    ButtonBase() = default;

    int getInteractiveState() const override;
    // The whole rectangle takes the mouse, with or without callbacks.
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const&) const override { return true; }
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    // A double click is a second press.
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    // The capture was taken away: the press ends without a change.
    void onMouseReleased() override;
    bool onKeyDown(KeyboardButton button, int value) override;
    bool onKeyUp(KeyboardButton button, int value) override;

    bool getMousePressed() const { return mousePressed_; }
    bool getMouseInside() const { return mouseInside_; }
    bool getKeyPressed() const { return keyPressed_; }

protected:
    void onFocusChanged_(bool focused) override;

    // A completed click or key press; raises "widget change".
    virtual void changeState_();

    static bool isPressKey_(KeyboardButton button) { return button == KeySpace || button == KeyReturn; }

    bool mousePressed_ = false;
    bool mouseInside_ = false;
    bool keyPressed_ = false;
};

}  // namespace gui
