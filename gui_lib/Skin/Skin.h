#pragma once

#include <memory>

#include "Export.h"
#include "orm/String.h"
#include "osg/Vec2i.h"

class rastFrameBuffer;

namespace gui {
class GraphicCommands;
class Widget;
}  // namespace gui

namespace gui::skin {

class Data;
class ShaderEffect;

// The painter of one widget. It owns the widget's drawing primitives, decides
// from its Data what they look like in the widget's present state, and draws
// them in a fixed order: background, then (clipped by the clip insets)
// picture, text and the widget's children.
class VUREL_EXPORT Skin {
public:
    Skin(Widget* widget, bool createData);
    virtual ~Skin();
    Skin(Skin const&) = delete;
    Skin& operator=(Skin const&) = delete;

    virtual osg::Vec2i calcSize() const;
    // Loads the skin named `name` from the skin script.
    virtual void load(orm::basic_string<char> const& name);
    virtual void redraw() { redraw_(); }
    virtual void doRedraw();
    virtual void draw();
    virtual void drawFocusRect() {}
    virtual void make(GraphicCommands* commands);
    virtual void makeFocusRect(GraphicCommands*) {}
    // The data changed: the widget repaints, and re-validates its size when asked.
    virtual void updateWidget(bool sizeChanged);
    virtual void setTextChanged() { textChanged_ = true; }
    virtual void setSizeChanged() { sizeChanged_ = true; }
    virtual void beginClipByInsets();
    virtual void endClipByInsets();
    virtual void copyTo(Skin* target) const;
    virtual void setShaderEffect(ShaderEffect* effect) { shaderEffect_ = effect; }
    virtual Widget* getWidget() const { return widget_; }

    Data* getData() const { return data_; }
    void setSkinData(Data* data, bool owns);
    // Whether the widget must be drawn through a render target.
    bool getNeedsTarget() const { return shaderEffect_ != nullptr; }

protected:
    virtual void redraw_();
    virtual void draw_();
    virtual void drawChildren_();
    virtual void make_(GraphicCommands* commands);
    virtual void makeChildren_(GraphicCommands* commands);
    virtual void makeBeginClipByInsets(GraphicCommands* commands);
    virtual void makeEndClipByInsets(GraphicCommands* commands);

    Widget* widget_;
    Data* data_ = nullptr;
    bool textChanged_ = true;
    bool sizeChanged_ = true;
    bool ownsData_ = true;
    ShaderEffect* shaderEffect_ = nullptr;
};

}  // namespace gui::skin
