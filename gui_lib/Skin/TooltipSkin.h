#pragma once

#include "Export.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"

namespace gui::skin {

// The look and timing of tooltips.
class VUREL_EXPORT TooltipData : public Data {
public:
    explicit TooltipData(Skin* owner);

    // Seconds the mouse must rest before the tooltip shows.
    virtual void setStartTime(double seconds);
    virtual double getStartTime() const { return startTime_; }
    // Seconds, counted from the start of the rest, after which it goes.
    virtual void setDuration(double seconds);
    virtual double getDuration() const { return duration_; }
    // Kept and written back for applications; placement follows the cursor.
    virtual void setOffset(osg::Vec2i const& offset);
    virtual osg::Vec2i const& getOffset() const { return offset_; }

protected:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* target) const override;

    double startTime_ = 0.5;
    double duration_ = 4.0;
    osg::Vec2i offset_{0, 20};
};

// The painter of the tooltip: text wraps within the screen.
class VUREL_EXPORT TooltipSkin : public Skin {
public:
    explicit TooltipSkin(Widget* widget);

    TooltipData* getTooltipData() const;

protected:
    osg::Vec2i calcTextSize_(InteractiveState state, int inner) const override;
};

}  // namespace gui::skin
