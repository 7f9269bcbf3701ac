#include "Skin/TooltipSkin.h"

#include "GUI.h"
#include "Skin/LuaUtil.h"
#include "Skin/Text.h"
#include "TextUtil.h"
#include "Widget.h"

namespace gui::skin {

TooltipData::TooltipData(Skin* owner) : Data(owner) {}

void TooltipData::setStartTime(double seconds) {
    startTime_ = seconds;
    ownerSkinUpdateWidget(false);
}

void TooltipData::setDuration(double seconds) {
    duration_ = seconds;
    ownerSkinUpdateWidget(false);
}

void TooltipData::setOffset(osg::Vec2i const& offset) {
    offset_ = offset;
    ownerSkinUpdateWidget(false);
}

void TooltipData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getField(L, -1, "startTime", startTime_);
    luautil::getField(L, -1, "duration", duration_);
    luautil::getField(L, -1, "offset", offset_);
}

void TooltipData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setField(L, "startTime", startTime_);
    luautil::setField(L, "duration", duration_);
    luautil::setField(L, "offset", offset_);
}

void TooltipData::copyParams_(Data* target) const {
    Data::copyParams_(target);
    if (auto* t = dynamic_cast<TooltipData*>(target)) {
        t->startTime_ = startTime_;
        t->duration_ = duration_;
        t->offset_ = offset_;
    }
}

TooltipSkin::TooltipSkin(Widget* widget) : Skin(widget, false) { setSkinData(new TooltipData(this), true); }

TooltipData* TooltipSkin::getTooltipData() const { return dynamic_cast<TooltipData*>(getData()); }

osg::Vec2i TooltipSkin::calcTextSize_(InteractiveState state, int inner) const {
    Data const* data = getData();
    Text::Info const* info = data ? data->getText(state, inner) : nullptr;
    if (!info || !widget_)
        return {};
    Text measure;
    measure.set(*info);
    measure.setWrapping(true);
    measure.setInsets(data->getInsets());
    // A tooltip is as wide as its text needs, up to the whole screen.
    osg::Vec2i const limit = GUI::get() ? GUI::get()->getScreenSize() : osg::Vec2i(1 << 16, 1 << 16);
    orm::basic_string<wchar_t> const& text = widget_->getText();
    if (textutil::getTextHasTabs(text))
        return measure.calcSize(textutil::replaceTabsBySpaces(text), limit);
    return measure.calcSize(text, limit);
}

}  // namespace gui::skin
