#pragma once

#include "Container.h"

namespace gui {

// The top of a widget tree, shown on one surface by its WindowsManager.
class VUREL_EXPORT WindowBase : public Container {
public:
    static char const* const closeCallbackName;

    WindowBase();
    ~WindowBase() override;

    virtual void setSurfaceId(int surfaceId);
    virtual int getSurfaceId() const { return surfaceId_; }

protected:
    int surfaceId_ = 0;
};

}  // namespace gui
