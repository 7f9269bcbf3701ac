#include "Skin/SkinData.h"

#include "Skin/LuaUtil.h"
#include "Skin/Skin.h"

namespace gui::skin {

namespace {

constexpr char const* kStateNames[InteractiveStateCount] = {"released", "hover", "pressed", "disabled"};

// Sizes below 1 mean "no limit" and are stored as 0.
void clampLimit(osg::Vec2i& size) {
    if (size.x < 1)
        size.x = 0;
    if (size.y < 1)
        size.y = 0;
}

}  // namespace

Data::Data(Skin* owner) : owner_(owner) {}

char const* Data::getInteractiveStateName_(int state) {
    if (state < 0 || state >= InteractiveStateCount)
        return nullptr;
    return kStateNames[state];
}

void Data::ownerSkinUpdateWidget(bool sizeChanged) {
    if (owner_)
        owner_->updateWidget(sizeChanged);
}

// ---------------------------------------------------------------- parameters

void Data::setMinSize(osg::Vec2i const& size) {
    minSize_ = size;
    ownerSkinUpdateWidget(true);
}

void Data::setMaxSize(osg::Vec2i const& size) {
    maxSize_ = size;
    ownerSkinUpdateWidget(true);
}

void Data::setInsets(Insets const& insets) {
    insets_ = insets;
    ownerSkinUpdateWidget(true);
}

void Data::setTextWrapping(bool wrapping) {
    textWrapping_ = wrapping;
    ownerSkinUpdateWidget(false);
}

void Data::setUseEllipsis(bool use) {
    useEllipsis_ = use;
    ownerSkinUpdateWidget(false);
}

void Data::setTextLineHeight(int height) {
    textLineHeight_ = height;
    ownerSkinUpdateWidget(false);
}

void Data::setFocusRectInsets(Insets const& insets) {
    focusRectInsets_ = insets;
    ownerSkinUpdateWidget(false);
}

void Data::setFocusRectColor(osg::Vec4f const& color) {
    focusRectColor_ = color;
    ownerSkinUpdateWidget(false);
}

void Data::setClipInsets(Insets const& insets) {
    clipInsets_ = insets;
    ownerSkinUpdateWidget(false);
}

bool Data::getClipInsetsEmpty() const {
    return clipInsets_.left == 0 && clipInsets_.top == 0 && clipInsets_.right == 0 && clipInsets_.bottom == 0;
}

// ---------------------------------------------------------------- state lookup

StateInfo const* Data::findStateInfo_(InteractiveState interactive, int inner) const {
    auto table = states_.find(interactive);
    if (table == states_.end()) {
        // A state with no table at all looks like released.
        if (interactive == Released)
            return nullptr;
        table = states_.find(Released);
        if (table == states_.end())
            return nullptr;
    }
    InnerStates const& entries = table->second;
    auto entry = entries.find(inner);
    if (entry != entries.end())
        return entry->second.get();
    if (inner == 1)
        return nullptr;
    entry = entries.find(1);
    return entry != entries.end() ? entry->second.get() : nullptr;
}

StateInfo const* Data::findPartOwner_(InteractiveState interactive, int inner, bool StateInfo::*hasPart) const {
    StateInfo const* info = findStateInfo_(interactive, inner);
    if (info && info->*hasPart)
        return info;
    if (interactive == Released)
        return nullptr;
    info = findStateInfo_(Released, inner);
    return info && info->*hasPart ? info : nullptr;
}

Bkg::Info const* Data::getBkg(InteractiveState interactive, int inner) const {
    StateInfo const* info = findPartOwner_(interactive, inner, &StateInfo::hasBkg);
    return info ? &info->bkg : nullptr;
}

Image::Info const* Data::getImage(InteractiveState interactive, int inner) const {
    StateInfo const* info = findPartOwner_(interactive, inner, &StateInfo::hasPicture);
    return info ? &info->picture : nullptr;
}

Text::Info const* Data::getText(InteractiveState interactive, int inner) const {
    StateInfo const* info = findPartOwner_(interactive, inner, &StateInfo::hasText);
    return info ? &info->text : nullptr;
}

StateInfo* Data::getEntry_(InteractiveState interactive, int inner, bool create) {
    auto table = states_.find(interactive);
    if (table == states_.end()) {
        if (!create)
            return nullptr;
        table = states_.emplace(interactive, InnerStates()).first;
    }
    auto entry = table->second.find(inner);
    if (entry != table->second.end())
        return entry->second.get();
    if (!create)
        return nullptr;
    return table->second.emplace(inner, std::make_shared<StateInfo>()).first->second.get();
}

void Data::setBkg(Bkg::Info const* info, InteractiveState interactive, int inner) {
    StateInfo* entry = getEntry_(interactive, inner, info != nullptr);
    if (!entry)
        return;
    entry->hasBkg = info != nullptr;
    if (info)
        entry->bkg = *info;
    ownerSkinUpdateWidget(false);
}

void Data::setImage(Image::Info const* info, InteractiveState interactive, int inner) {
    StateInfo* entry = getEntry_(interactive, inner, info != nullptr);
    if (!entry)
        return;
    entry->hasPicture = info != nullptr;
    if (info)
        entry->picture = *info;
    // The picture of the default state counts in the preferred size.
    ownerSkinUpdateWidget(true);
}

void Data::setText(Text::Info const* info, InteractiveState interactive, int inner) {
    StateInfo* entry = getEntry_(interactive, inner, info != nullptr);
    if (!entry)
        return;
    entry->hasText = info != nullptr;
    if (info)
        entry->text = *info;
    ownerSkinUpdateWidget(true);
}

// ---------------------------------------------------------------- Lua

void Data::loadParams(lua_State* L) {
    if (lua_type(L, -1) != LUA_TTABLE)
        return;
    luautil::StackGuard guard(L);
    lua_pushstring(L, "params");
    lua_gettable(L, -2);
    loadParamsFromTable(L);
}

void Data::loadParamsFromTable(lua_State* L) {
    if (lua_type(L, -1) == LUA_TTABLE)
        loadParams_(L);
}

void Data::loadParams_(lua_State* L) {
    luautil::getField(L, -1, "minSize", minSize_);
    luautil::getField(L, -1, "maxSize", maxSize_);
    clampLimit(minSize_);
    clampLimit(maxSize_);
    luautil::getField(L, -1, "insets", insets_);
    luautil::getField(L, -1, "textWrapping", textWrapping_);
    luautil::getField(L, -1, "useEllipsis", useEllipsis_);
    luautil::getField(L, -1, "textLineHeight", textLineHeight_);
    luautil::getField(L, -1, "focusRectInsets", focusRectInsets_);
    osg::Vec4f color;
    if (luautil::getColorField(L, -1, "focusRectColor", color))
        focusRectColor_ = color;
    luautil::getField(L, -1, "clipInsets", clipInsets_);
}

void Data::loadStates(lua_State* L) {
    if (lua_type(L, -1) != LUA_TTABLE)
        return;
    luautil::StackGuard guard(L);
    lua_pushstring(L, "states");
    lua_gettable(L, -2);
    if (lua_type(L, -1) != LUA_TTABLE)
        return;
    for (int state = Released; state < InteractiveStateCount; ++state)
        loadState_(L, static_cast<InteractiveState>(state));
}

void Data::loadState_(lua_State* L, InteractiveState state) {
    char const* name = getInteractiveStateName_(state);
    if (!name || lua_type(L, -1) != LUA_TTABLE)
        return;
    luautil::StackGuard guard(L);
    lua_pushstring(L, name);
    lua_gettable(L, -2);
    if (lua_type(L, -1) != LUA_TTABLE)
        return;
    InnerStates& entries = states_[state];
    lua_pushnil(L);
    while (lua_next(L, -2) != 0) {
        // Key at -2, value at -1. Keys that are no number, and values that
        // are no table, are skipped.
        if (lua_type(L, -2) == LUA_TNUMBER && lua_type(L, -1) == LUA_TTABLE) {
            int const inner = static_cast<int>(lua_tointeger(L, -2));
            std::shared_ptr<StateInfo>& entry = entries[inner];
            if (!entry)
                entry = std::make_shared<StateInfo>();
            entry->loadFromLua(L);
        }
        lua_pop(L, 1);
    }
}

void Data::unloadParams(lua_State* L) const {
    lua_createtable(L, 0, 9);
    unloadParams_(L);
    lua_setfield(L, -2, "params");
}

void Data::unloadParamsToTable(lua_State* L) const { unloadParams_(L); }

void Data::unloadParams_(lua_State* L) const {
    luautil::setField(L, "minSize", minSize_);
    luautil::setField(L, "maxSize", maxSize_);
    luautil::setField(L, "insets", insets_);
    luautil::setField(L, "textWrapping", textWrapping_);
    luautil::setField(L, "useEllipsis", useEllipsis_);
    luautil::setField(L, "textLineHeight", textLineHeight_);
    luautil::setField(L, "focusRectInsets", focusRectInsets_);
    luautil::setColorField(L, "focusRectColor", focusRectColor_);
    luautil::setField(L, "clipInsets", clipInsets_);
}

void Data::unloadStates(lua_State* L) const {
    lua_createtable(L, 0, InteractiveStateCount);
    for (auto const& [state, entries] : states_)
        unloadState_(L, static_cast<InteractiveState>(state), &entries);
    lua_setfield(L, -2, "states");
}

void Data::unloadState_(lua_State* L, InteractiveState state, InnerStates const* innerStates) const {
    char const* name = getInteractiveStateName_(state);
    if (!name)
        return;
    if (!innerStates) {
        lua_pushnil(L);
    } else {
        lua_createtable(L, 0, static_cast<int>(innerStates->size()));
        for (auto const& [inner, entry] : *innerStates) {
            lua_pushinteger(L, inner);
            if (entry)
                luautil::setValue(L, *entry);
            else
                lua_pushnil(L);
            lua_settable(L, -3);
        }
    }
    lua_setfield(L, -2, name);
}

// ---------------------------------------------------------------- copy

void Data::copyParams_(Data* target) const {
    target->minSize_ = minSize_;
    target->maxSize_ = maxSize_;
    target->insets_ = insets_;
    target->textWrapping_ = textWrapping_;
    target->useEllipsis_ = useEllipsis_;
    target->textLineHeight_ = textLineHeight_;
    target->focusRectInsets_ = focusRectInsets_;
    target->focusRectColor_ = focusRectColor_;
    target->clipInsets_ = clipInsets_;
}

void Data::copyState_(Data* target, InteractiveState interactive, int inner) const {
    target->setBkg(getBkg(interactive, inner), interactive, inner);
    target->setImage(getImage(interactive, inner), interactive, inner);
    target->setText(getText(interactive, inner), interactive, inner);
}

void Data::copyTo(Data* target) const {
    if (!target || target == this)
        return;
    copyParams_(target);
    for (auto const& [interactive, entries] : states_)
        for (auto const& entry : entries)
            copyState_(target, static_cast<InteractiveState>(interactive), entry.first);
    target->setLoaded();
}

}  // namespace gui::skin
