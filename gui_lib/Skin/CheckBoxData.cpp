#include "Skin/CheckBoxData.h"

#include "Skin/LuaUtil.h"

namespace gui::skin {

// ---------------------------------------------------------------- CheckBoxStateInfo

void CheckBoxStateInfo::loadFromLua(lua_State* L) {
    StateInfo::loadFromLua(L);
    hasCheck = luautil::getField(L, -1, "check", check);
}

void CheckBoxStateInfo::saveToLua(lua_State* L) const {
    StateInfo::saveToLua(L);
    if (hasCheck)
        luautil::setField(L, "check", check);
}

// ---------------------------------------------------------------- parameters

CheckBoxData::CheckBoxData(Skin* owner) : Data(owner) {}

void CheckBoxData::setCheckSize(int size) {
    checkSize_ = size;
    ownerSkinUpdateWidget(true);
}

void CheckBoxData::setCheckGap(int gap) {
    checkGap_ = gap;
    ownerSkinUpdateWidget(true);
}

void CheckBoxData::setPictureSize(int size) {
    pictureSize_ = size;
    ownerSkinUpdateWidget(true);
}

void CheckBoxData::setPictureGap(int gap) {
    pictureGap_ = gap;
    ownerSkinUpdateWidget(true);
}

void CheckBoxData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getField(L, -1, "checkSize", checkSize_);
    luautil::getField(L, -1, "checkGap", checkGap_);
    luautil::getField(L, -1, "pictureSize", pictureSize_);
    luautil::getField(L, -1, "pictureGap", pictureGap_);
}

void CheckBoxData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setField(L, "checkSize", checkSize_);
    luautil::setField(L, "checkGap", checkGap_);
    luautil::setField(L, "pictureSize", pictureSize_);
    luautil::setField(L, "pictureGap", pictureGap_);
}

void CheckBoxData::copyParams_(Data* target) const {
    Data::copyParams_(target);
    if (auto* data = dynamic_cast<CheckBoxData*>(target)) {
        data->checkSize_ = checkSize_;
        data->checkGap_ = checkGap_;
        data->pictureSize_ = pictureSize_;
        data->pictureGap_ = pictureGap_;
    }
}

// ---------------------------------------------------------------- check entries

CheckBoxStateInfo* CheckBoxData::getCheckEntry_(InteractiveState interactive, int inner, bool create) {
    auto table = states_.find(interactive);
    if (table == states_.end()) {
        if (!create)
            return nullptr;
        table = states_.emplace(interactive, InnerStates()).first;
    }
    auto found = table->second.find(inner);
    if (found == table->second.end()) {
        if (!create)
            return nullptr;
        found = table->second.emplace(inner, nullptr).first;
    }
    std::shared_ptr<StateInfo>& entry = found->second;
    if (auto* check = dynamic_cast<CheckBoxStateInfo*>(entry.get()))
        return check;
    auto upgraded = std::make_shared<CheckBoxStateInfo>();
    if (entry)
        static_cast<StateInfo&>(*upgraded) = *entry;
    entry = upgraded;
    return upgraded.get();
}

CheckBoxStateInfo const* CheckBoxData::findCheckOwner_(InteractiveState interactive, int inner) const {
    auto const* info = dynamic_cast<CheckBoxStateInfo const*>(findStateInfo_(interactive, inner));
    if (info && info->hasCheck)
        return info;
    if (interactive == Released)
        return nullptr;
    info = dynamic_cast<CheckBoxStateInfo const*>(findStateInfo_(Released, inner));
    return info && info->hasCheck ? info : nullptr;
}

Image::Info const* CheckBoxData::getCheck(InteractiveState interactive, int inner) const {
    CheckBoxStateInfo const* info = findCheckOwner_(interactive, inner);
    return info ? &info->check : nullptr;
}

void CheckBoxData::setCheck(Image::Info const* info, InteractiveState interactive, int inner) {
    CheckBoxStateInfo* entry = getCheckEntry_(interactive, inner, info != nullptr);
    if (!entry)
        return;
    entry->hasCheck = info != nullptr;
    if (info)
        entry->check = *info;
    ownerSkinUpdateWidget(true);
}

// ---------------------------------------------------------------- Lua and copy

void CheckBoxData::loadState_(lua_State* L, InteractiveState state) {
    char const* name = getInteractiveStateName_(state);
    if (!name || lua_type(L, -1) != LUA_TTABLE)
        return;
    luautil::StackGuard guard(L);
    lua_pushstring(L, name);
    lua_gettable(L, -2);
    if (lua_type(L, -1) != LUA_TTABLE)
        return;
    states_[state];
    lua_pushnil(L);
    while (lua_next(L, -2) != 0) {
        // Key at -2, value at -1; keys that are no number are skipped.
        if (lua_type(L, -2) == LUA_TNUMBER && lua_type(L, -1) == LUA_TTABLE) {
            int const inner = static_cast<int>(lua_tointeger(L, -2));
            getCheckEntry_(state, inner, true)->loadFromLua(L);
        }
        lua_pop(L, 1);
    }
}

void CheckBoxData::unloadState_(lua_State* L, InteractiveState state, InnerStates const* innerStates) const {
    char const* name = getInteractiveStateName_(state);
    if (!name)
        return;
    if (!innerStates) {
        lua_pushnil(L);
        lua_setfield(L, -2, name);
        return;
    }
    lua_createtable(L, 0, static_cast<int>(innerStates->size()));
    for (auto const& [inner, entry] : *innerStates) {
        lua_pushinteger(L, inner);
        auto const* check = dynamic_cast<CheckBoxStateInfo const*>(entry.get());
        if (check && check->hasCheck) {
            // An entry with only a check mark is still written.
            lua_createtable(L, 0, 4);
            check->saveToLua(L);
        } else if (entry) {
            luautil::setValue(L, *entry);
        } else {
            lua_pushnil(L);
        }
        lua_settable(L, -3);
    }
    lua_setfield(L, -2, name);
}

void CheckBoxData::copyState_(Data* target, InteractiveState interactive, int inner) const {
    auto* data = dynamic_cast<CheckBoxData*>(target);
    // The target's entry becomes a check box entry before the parts go in.
    if (data)
        data->getCheckEntry_(interactive, inner, true);
    Data::copyState_(target, interactive, inner);
    if (data)
        data->setCheck(getCheck(interactive, inner), interactive, inner);
}

}  // namespace gui::skin
