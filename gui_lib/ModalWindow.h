#pragma once

#include "WindowBase.h"

namespace gui {

// A window that blocks all others of its surface while shown. With lock flow
// (the default) showing it runs a nested loop of the application until it is
// hidden, so the caller of setVisible(true) continues after the dialog ends.
class VUREL_EXPORT ModalWindow : public WindowBase {
public:
    // With `subclassSkin` the subclass brings the painter instead of "modalWindowSkin".
    explicit ModalWindow(bool subclassSkin = false);
    ~ModalWindow() override;

    char const* getWidgetType() const override { return "ModalWindow"; }
    Widget* clone() const override;
    // Hides the window; the running nested loop then ends and kills it.
    void kill() override;

    void setLockFlow(bool lockFlow) { lockFlow_ = lockFlow; }
    bool getLockFlow() const { return lockFlow_; }
    bool getKilled() const { return killed_; }

    // Copies by hand what the dialog needs, leaving `visible` alone: showing
    // a modal window would block.
    void copyParams(ModalWindow* target) const;

protected:
    void onVisibleChanged_(bool visible) override;

    virtual void onCloseButton_() { onClose_(); }
    virtual void doModal_();

    bool killed_ = false;
    bool lockFlow_ = true;
};

}  // namespace gui
