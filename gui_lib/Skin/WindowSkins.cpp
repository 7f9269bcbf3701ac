#include "Skin/WindowSkins.h"

#include "Skin/ButtonSkins.h"
#include "Skin/LuaUtil.h"

#include "WindowBase.h"
#include "WindowHeader.h"
#include "WindowView.h"

namespace gui::skin {

// ---------------------------------------------------------------- WindowData

WindowData::WindowData(Skin* owner) : Data(owner) {}

void WindowData::setHeaderHeight(int height) {
    headerHeight_ = height;
    ownerSkinUpdateWidget(true);
}

void WindowData::copyParams_(Data* target) const {
    Data::copyParams_(target);
    if (auto* window = dynamic_cast<WindowData*>(target))
        window->headerHeight_ = headerHeight_;
}

// ---------------------------------------------------------------- WindowHeaderData

WindowHeaderData::WindowHeaderData(Skin* owner) : Data(owner) {}

void WindowHeaderData::setHasCloseButton(bool has) {
    hasCloseButton_ = has;
    ownerSkinUpdateWidget(true);
}

void WindowHeaderData::setCloseButtonHorzAlign(Align const& align) {
    closeButtonHorzAlign_ = align;
    ownerSkinUpdateWidget(true);
}

void WindowHeaderData::setCloseButtonVertAlign(Align const& align) {
    closeButtonVertAlign_ = align;
    ownerSkinUpdateWidget(true);
}

void WindowHeaderData::setCloseButtonText(orm::basic_string<char> const& text) {
    closeButtonText_ = text;
    ownerSkinUpdateWidget(true);
}

void WindowHeaderData::copyParams_(Data* target) const {
    Data::copyParams_(target);
    if (auto* header = dynamic_cast<WindowHeaderData*>(target)) {
        header->hasCloseButton_ = hasCloseButton_;
        header->closeButtonHorzAlign_ = closeButtonHorzAlign_;
        header->closeButtonVertAlign_ = closeButtonVertAlign_;
        header->closeButtonText_ = closeButtonText_;
    }
}

// ---------------------------------------------------------------- WindowBaseSkin

WindowBaseSkin::WindowBaseSkin(WindowBase* window, bool createData) : Skin(window, false), window_(window) {
    if (createData) {
        data_ = new WindowData(this);
        ownsData_ = true;
    }
}

Skin* WindowBaseSkin::getHeaderSkin() const {
    Widget const* header = window_ ? window_->getHeader() : nullptr;
    return header ? header->getWidgetSkin() : nullptr;
}

Skin* WindowBaseSkin::getViewSkin() const {
    Widget const* view = window_ ? window_->getView() : nullptr;
    return view ? view->getWidgetSkin() : nullptr;
}

void WindowBaseSkin::copyTo(Skin* target) const {
    Skin::copyTo(target);
    auto* window = dynamic_cast<WindowBaseSkin*>(target);
    if (!window || window == this)
        return;
    if (Skin const* header = getHeaderSkin())
        header->copyTo(window->getHeaderSkin());
    if (Skin const* view = getViewSkin())
        view->copyTo(window->getViewSkin());
}

// ---------------------------------------------------------------- WindowHeaderSkin

WindowHeaderSkin::WindowHeaderSkin(WindowHeader* header)
    : Skin(header, false), closeButtonSkin_(new ButtonSkin(nullptr)) {
    data_ = new WindowHeaderData(this);
    ownsData_ = true;
}

// The header's children, the close button among them, are gone by now.
WindowHeaderSkin::~WindowHeaderSkin() { delete closeButtonSkin_; }

void WindowHeaderSkin::copyTo(Skin* target) const {
    Skin::copyTo(target);
    auto* header = dynamic_cast<WindowHeaderSkin*>(target);
    if (header && header != this)
        closeButtonSkin_->copyTo(header->closeButtonSkin_);
}

void WindowHeaderSkin::loadSubSkins_(lua_State* L) {
    Skin::loadSubSkins_(L);
    loadSubSkin_(L, "closeButton", closeButtonSkin_);
}

void WindowHeaderSkin::unloadSubSkins_(lua_State* L) const {
    Skin::unloadSubSkins_(L);
    unloadSubSkin_(L, "closeButton", closeButtonSkin_);
}

// Null when other data was set in place of the header's own.
WindowHeaderData* WindowHeaderSkin::getHeaderData() const { return dynamic_cast<WindowHeaderData*>(data_); }

}  // namespace gui::skin

namespace gui::skin {

void WindowData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getField(L, -1, "headerHeight", headerHeight_);
}

void WindowData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setField(L, "headerHeight", headerHeight_);
}

void WindowHeaderData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getField(L, -1, "hasCloseButton", hasCloseButton_);
    luautil::getField(L, -1, "closeButtonHorzAlign", closeButtonHorzAlign_);
    luautil::getField(L, -1, "closeButtonVertAlign", closeButtonVertAlign_);
    luautil::getField(L, -1, "closeButtonText", closeButtonText_);
}

void WindowHeaderData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setField(L, "hasCloseButton", hasCloseButton_);
    luautil::setField(L, "closeButtonHorzAlign", closeButtonHorzAlign_);
    luautil::setField(L, "closeButtonVertAlign", closeButtonVertAlign_);
    luautil::setField(L, "closeButtonText", closeButtonText_);
}

void WindowBaseSkin::loadSubSkins_(lua_State* L) {
    Skin::loadSubSkins_(L);
    loadSubSkin_(L, "header", getHeaderSkin());
    loadSubSkin_(L, "view", getViewSkin());
}

void WindowBaseSkin::unloadSubSkins_(lua_State* L) const {
    Skin::unloadSubSkins_(L);
    unloadSubSkin_(L, "header", getHeaderSkin());
    unloadSubSkin_(L, "view", getViewSkin());
}

}  // namespace gui::skin
