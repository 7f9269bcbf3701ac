#pragma once

#include <functional>

#include "Export.h"
#include "orm/Allocator.h"

namespace gui {

// Something that changes with time rather than with input.
class VUREL_EXPORT UpdateTarget {
public:
    virtual ~UpdateTarget() = default;
    virtual void update(double time) = 0;
};

// Calls every registered target once a frame. Targets add and remove
// themselves and each other from inside `update`; such changes wait for the
// end of the pass, except that a removed target gets no further call.
class VUREL_EXPORT UpdateManager {
public:
    static UpdateManager* get();

    // Answers the current time, as getTime does.
    double addTarget(UpdateTarget* target);
    void removeTarget(UpdateTarget* target);
    void updateTargets();

    // Seconds since the manager was made, from the application's clock.
    double getTime() const;
    // The model clock, when the application runs one; else getTime.
    double getModelTime() const;
    void setModelTimeFunc(std::function<double()> func) { modelTimeFunc_ = std::move(func); }

    bool hasTarget(UpdateTarget const* target) const;

private:
    friend class GUI;
    UpdateManager();
    ~UpdateManager();

    orm::vector<UpdateTarget*> targets_;
    orm::vector<UpdateTarget*> toAdd_;
    orm::vector<UpdateTarget*> toRemove_;
    bool updating_ = false;
    double startTime_ = 0.0;
    std::function<double()> modelTimeFunc_;
};

}  // namespace gui
