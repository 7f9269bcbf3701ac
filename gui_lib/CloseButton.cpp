#include "CloseButton.h"

#include "Skin/ButtonSkins.h"
#include "WidgetHandler.h"
#include "WindowBase.h"

namespace gui {

CloseButton::CloseButton(WindowBase& window, skin::ButtonSkin* skin) : Button(true), window_(window) {
    if (skin)
        skin->setWidget(this);
    skin_ = skin;
}

CloseButton::~CloseButton() {
    // The header's skin owns the painter: unbind it and keep it alive.
    if (auto* skin = dynamic_cast<skin::ButtonSkin*>(skin_))
        skin->setWidget(nullptr);
    skin_ = nullptr;
}

void CloseButton::onChange_() {
    WidgetHandler* const self = handler_;
    Button::onChange_();
    if (WidgetHandler::get(self))
        window_.close();
}

}  // namespace gui
