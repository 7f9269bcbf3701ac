#pragma once

#include "Button.h"

namespace gui {

class WindowBase;

// The close button of a window's header. Its skin belongs to the header's
// skin: the button only borrows it while it lives. A click closes the window.
class VUREL_EXPORT CloseButton : public Button {
public:
    // Binds `skin` (may be null) to this button for its lifetime.
    CloseButton(WindowBase& window, skin::ButtonSkin* skin);
    ~CloseButton() override;

    // A close button belongs to its window and is never copied alone.
    Widget* clone() const override { return nullptr; }
    bool getFocusable() const override { return false; }

    WindowBase& getWindow() const { return window_; }

protected:
    // "widget change", then the window's close.
    void onChange_() override;

    WindowBase& window_;
};

}  // namespace gui
