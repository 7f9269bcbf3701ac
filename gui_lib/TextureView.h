#pragma once

#include "Skin/Image.h"
#include "Widget.h"

class rastTexture;

namespace gui {

// Shows a texture set from code (a render target, a video frame), turned
// about a pivot point like a Static, through a picture of its own.
class VUREL_EXPORT TextureView : public Widget {
public:
    TextureView();

    char const* getWidgetType() const override { return "TextureView"; }
    Widget* clone() const override;
    void copyParams(TextureView* target) const;

    virtual void setAngle(double degrees);
    virtual double getAngle() const { return angleDegrees_; }
    virtual void setPivotPoint(osg::Vec2i const& pivot);
    virtual osg::Vec2i const& getPivotPoint() const { return pivotPoint_; }

    void setImageInfo(Image::Info const& info);
    Image::Info const& getImageInfo() const { return imageInfo_; }
    // The view shows the texture but never releases it.
    void setTexture(rastTexture* texture);

    void doRedraw() override;

protected:
    virtual void onAngleChanged_(double degrees);
    virtual void onPivotPointChanged_(osg::Vec2i const& pivot);
    void redraw_() override;
    void drawModelView_() override;
    void makeModelView_(GraphicCommands* commands) override;

    double angleDegrees_ = 0.0;
    double angleRadians_ = 0.0;
    osg::Vec2i pivotPoint_;
    Image::Info imageInfo_;
    Image image_;
};

}  // namespace gui
