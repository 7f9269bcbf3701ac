#pragma once

#include "Container.h"

namespace gui {

// The plain public container: a skinned rectangle whose children the
// application inserts and removes.
class VUREL_EXPORT Panel : public Container {
public:
    Panel();

    char const* getWidgetType() const override { return "Panel"; }
    Widget* clone() const override;

    void insertWidget(Widget* widget, int index = -1) { insertWidget_(widget, index); }
    void removeWidget(Widget* widget) { removeWidget_(widget); }
    void removeAllWidgets() { removeAllWidgets_(); }
    void clear() { clear_(); }
    int getWidgetIndex(Widget const* widget) const { return getWidgetIndex_(widget); }

    // The work of Container, then a clone of every child at the end of the target.
    void copyParams(Panel* target) const;
};

}  // namespace gui
