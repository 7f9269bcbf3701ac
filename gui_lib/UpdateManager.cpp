#include "UpdateManager.h"

#include <algorithm>

#include "Application.h"

namespace gui {

namespace {

UpdateManager* g_updateManager = nullptr;

bool contains(orm::vector<UpdateTarget*> const& list, UpdateTarget const* target) {
    return std::find(list.begin(), list.end(), target) != list.end();
}

void addOnce(orm::vector<UpdateTarget*>& list, UpdateTarget* target) {
    if (!contains(list, target))
        list.push_back(target);
}

void eraseAll(orm::vector<UpdateTarget*>& list, UpdateTarget const* target) {
    list.erase(std::remove(list.begin(), list.end(), target), list.end());
}

double applicationTime() {
    Application const* app = Application::get();
    return app ? app->getTime() : 0.0;
}

}  // namespace

UpdateManager* UpdateManager::get() { return g_updateManager; }

UpdateManager::UpdateManager() : startTime_(applicationTime()) {
    targets_.reserve(32);
    g_updateManager = this;
}

UpdateManager::~UpdateManager() {
    if (g_updateManager == this)
        g_updateManager = nullptr;
}

double UpdateManager::addTarget(UpdateTarget* target) {
    if (target)
        addOnce(updating_ ? toAdd_ : targets_, target);
    return getTime();
}

void UpdateManager::removeTarget(UpdateTarget* target) {
    if (!target)
        return;
    if (updating_)
        addOnce(toRemove_, target);
    else
        eraseAll(targets_, target);
}

void UpdateManager::updateTargets() {
    updating_ = true;
    double const time = getTime();
    // Indexing, not iterators: targets_ does not change during the pass, but
    // a target's update may read it.
    for (size_t i = 0; i < targets_.size(); ++i) {
        UpdateTarget* target = targets_[i];
        if (!toRemove_.empty() && contains(toRemove_, target))
            continue;
        target->update(time);
    }
    updating_ = false;
    for (UpdateTarget* target : toAdd_)
        addOnce(targets_, target);
    toAdd_.clear();
    for (UpdateTarget* target : toRemove_)
        eraseAll(targets_, target);
    toRemove_.clear();
}

double UpdateManager::getTime() const { return applicationTime() - startTime_; }

double UpdateManager::getModelTime() const { return modelTimeFunc_ ? modelTimeFunc_() : getTime(); }

bool UpdateManager::hasTarget(UpdateTarget const* target) const { return contains(targets_, target); }

}  // namespace gui
