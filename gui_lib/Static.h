#pragma once

#include "Widget.h"

namespace gui {

// The plain label and picture widget: text and pictures come from its skin.
// It can turn about a pivot point; a turned static is never clipped.
class VUREL_EXPORT Static : public Widget {
public:
    // With `noSkin` a derived class brings its own skin.
    explicit Static(bool noSkin = false);

    char const* getWidgetType() const override { return "Static"; }
    Widget* clone() const override;
    void copyParams(Static* target) const;

    // Degrees, clockwise on screen.
    virtual void setAngle(double degrees);
    virtual double getAngle() const { return angleDegrees_; }
    // The point to turn about, in the widget's own coordinates.
    virtual void setPivotPoint(osg::Vec2i const& pivot);
    virtual osg::Vec2i const& getPivotPoint() const { return pivotPoint_; }

protected:
    virtual void onAngleChanged_(double degrees);
    virtual void onPivotPointChanged_(osg::Vec2i const& pivot);
    void drawModelView_() override;
    void makeModelView_(GraphicCommands* commands) override;

    double angleDegrees_ = 0.0;
    double angleRadians_ = 0.0;
    osg::Vec2i pivotPoint_;
};

}  // namespace gui
