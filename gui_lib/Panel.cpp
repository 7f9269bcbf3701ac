#include "Panel.h"

#include "Skin/Skin.h"
#include "WidgetHandler.h"

namespace gui {

Panel::Panel() {
    setSkin_(new skin::Skin(this, true));
    skin_->load("panelSkin");
}

Widget* Panel::clone() const {
    auto* copy = new Panel();
    skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    return copy;
}

void Panel::copyParams(Panel* target) const {
    if (!target)
        return;
    Container::copyParams(target);
    for (WidgetHandler* handle : widgets_)
        if (Widget const* child = WidgetHandler::get(handle))
            if (Widget* copy = child->clone())
                target->insertWidget(copy, -1);
}

}  // namespace gui
