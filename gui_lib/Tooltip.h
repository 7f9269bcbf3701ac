#pragma once

#include "UpdateManager.h"
#include "Widget.h"

namespace gui {

class WindowsManager;

namespace skin {
class TooltipSkin;
}

// The one tooltip of a surface, drawn after all windows. Its manager decides
// the text and skin; a TooltipUpdateTarget decides when it shows.
class VUREL_EXPORT Tooltip : public Widget {
public:
    explicit Tooltip(WindowsManager* manager);

    char const* getWidgetType() const override { return "Tooltip"; }
    int getRootSurfaceId() const override;
    // Under the mouse cursor, or above it near the bottom; kept on screen.
    osg::Vec2i calcScreenPosition() const;
    skin::TooltipSkin* getTooltipSkin_() const;

protected:
    void onTextChanged_(orm::basic_string<wchar_t> const& text) override;

    WindowsManager* manager_;
};

// Shows the tooltip once the mouse has rested for the skin's start time, and
// hides it after the skin's duration.
class VUREL_EXPORT TooltipUpdateTarget : public UpdateTarget {
public:
    TooltipUpdateTarget(Tooltip* tooltip, WindowsManager* manager);
    ~TooltipUpdateTarget() override;

    void update(double time) override;
    // The mouse moved: the rest starts again, sooner if a tooltip just went.
    void restart();
    void hide();

private:
    double getStartTime_() const;
    double getDuration_() const;

    WidgetHandler* tooltip_;
    WindowsManager* manager_;
    double startedAt_ = 0.0;
    double lastHiddenAt_ = 0.0;
};

}  // namespace gui
