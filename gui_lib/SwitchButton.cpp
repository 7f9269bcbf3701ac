#include "SwitchButton.h"

#include <algorithm>
#include <unordered_map>

#include "Skin/ButtonSkins.h"

namespace gui {

namespace {

using Members = orm::vector<SwitchButton*>;

// The groups of the process, keyed by the parent's handle, members in the
// order they joined. Handles are never reused, so a key never names another
// parent, and the map keeps no parent alive. An entry lives only while its
// list has members.
std::unordered_map<WidgetHandler const*, Members>& switchGroups() {
    static std::unordered_map<WidgetHandler const*, Members> groups;
    return groups;
}

Members* findGroup(WidgetHandler const* parent) {
    auto it = switchGroups().find(parent);
    return it != switchGroups().end() ? &it->second : nullptr;
}

// While one rule runs, the members it changes do not run theirs: a mixed
// member and one that is on would otherwise call each other without end,
// each meeting a state the other has not stored yet.
bool applyingGroupRule = false;

}  // namespace

SwitchButton::SwitchButton(bool noSkin) : ToggleButton(0, true) {
    if (noSkin)
        return;
    setSkin_(new skin::ToggleButtonSkin(this));
    skin_->load("switchButtonSkin");
}

SwitchButton::~SwitchButton() { leaveGroup_(); }

Widget* SwitchButton::clone() const {
    auto* copy = new SwitchButton(false);
    if (skin_)
        skin_->copyTo(copy->getWidgetSkin());
    copyParams(copy);
    copy->setState(getState());
    return copy;
}

void SwitchButton::copyParams(SwitchButton* target) const {
    if (!target)
        return;
    ToggleButton::copyParams(target);
    target->setState(getState());
}

int SwitchButton::getGroupSize(WidgetHandler const* parent) {
    Members const* members = findGroup(parent);
    return members ? static_cast<int>(members->size()) : 0;
}

// ---------------------------------------------------------------- state

void SwitchButton::applyGroupRule_() {
    if (applyingGroupRule)
        return;
    Members* members = findGroup(getParent());
    if (!members)
        return;
    int const target = getState() == -1 ? -1 : 0;
    applyingGroupRule = true;
    // setState raises no callback, so the list cannot change meanwhile.
    for (size_t i = 0; i < members->size(); ++i)
        if ((*members)[i] != this)
            (*members)[i]->setState(target);
    applyingGroupRule = false;
}

void SwitchButton::changeState_() {
    applyGroupRule_();
    // The member that is on stays on: a click on it is silent.
    if (state_ > 0)
        return;
    state_ = 1;
    setDirty(DirtySelf);
    onChange_();
}

void SwitchButton::onStateChanged_(int state) {
    // The rule sees the state before the change.
    applyGroupRule_();
    ToggleButton::onStateChanged_(state);
}

// ---------------------------------------------------------------- group membership

void SwitchButton::onParentChanged_(WidgetHandler* parent) {
    leaveGroup_();
    ToggleButton::onParentChanged_(parent);
    joinGroup_();
}

void SwitchButton::resetParent() {
    leaveGroup_();
    parent_ = nullptr;
}

void SwitchButton::joinGroup_() {
    WidgetHandler const* parent = getParent();
    if (!parent)
        return;
    Members* members = findGroup(parent);
    if (!members) {
        switchGroups()[parent].push_back(this);
        return;
    }
    if (std::find(members->begin(), members->end(), this) != members->end())
        return;
    // A button that joins on turns the others off (or mixed, joining mixed).
    if (state_ != 0)
        applyGroupRule_();
    members->push_back(this);
}

void SwitchButton::leaveGroup_() {
    auto it = switchGroups().find(getParent());
    if (it == switchGroups().end())
        return;
    Members& members = it->second;
    auto self = std::find(members.begin(), members.end(), this);
    if (self == members.end())
        return;
    members.erase(self);
    if (members.empty())
        switchGroups().erase(it);
}

}  // namespace gui
