#pragma once

#include "Container.h"

namespace gui {

class WindowBase;

// The client area of a window: where the application's widgets live.
class VUREL_EXPORT WindowView : public Container {
public:
    explicit WindowView(WindowBase& window);

    WindowBase& getWindow() const { return window_; }
    void insertWidget(Widget* widget, int index = -1) { insertWidget_(widget, index); }
    void removeWidget(Widget* widget) { removeWidget_(widget); }
    void removeAllWidgets() { removeAllWidgets_(); }
    void clear() { clear_(); }

protected:
    WindowBase& window_;
};

}  // namespace gui
