#pragma once

#include <memory>
#include <span>

#include "Export.h"
#include "Skin/Image.h"
#include "Skin/StateInfo.h"
#include "orm/String.h"
#include "osg/Rect.h"
#include "osg/Vec2i.h"

class rastFrameBuffer;
struct lua_State;

namespace gui {
class FocusRect;
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
//
// Phases, as everywhere: `redraw` (logic side) rebuilds the primitives from
// the state table, `doRedraw` moves them into renderer objects and renders
// the target, `draw` only draws and `make` records the same draws.
//
// A widget that asks for it (zoom, opacity, an effect, or its own flag) is
// drawn into a render target first, and the target is then drawn as one
// picture, or handed to the shader effect.
class VUREL_EXPORT Skin {
public:
    Skin(Widget* widget, bool createData);
    virtual ~Skin();
    Skin(Skin const&) = delete;
    Skin& operator=(Skin const&) = delete;

    // The preferred size: the larger of text and picture of the default
    // state, plus the insets; (0, 0) without data.
    virtual osg::Vec2i calcSize() const;
    // Loads the skin named `name` from the skin script of gui::GUI.
    virtual void load(orm::basic_string<char> const& name);
    // Reads the skin table on top of the Lua stack, then updates the widget.
    virtual void loadFromScript(lua_State* L);
    // Writes this skin into the table on top of the Lua stack.
    virtual void putIntoScript(lua_State* L) const;
    virtual void redraw();
    virtual void doRedraw();
    virtual void draw();
    virtual void drawFocusRect();
    virtual void make(GraphicCommands* commands);
    virtual void makeFocusRect(GraphicCommands* commands);
    // The data changed: the widget repaints, and re-validates its size when asked.
    virtual void updateWidget(bool sizeChanged);
    virtual void setTextChanged() { textChanged_ = true; }
    virtual void setSizeChanged() { sizeChanged_ = true; }
    virtual void beginClipByInsets();
    virtual void endClipByInsets();
    virtual void copyTo(Skin* target) const;
    // Lets go of the present effect (giving it back) and takes `effect`; null removes it.
    virtual void setShaderEffect(ShaderEffect* effect);
    virtual Widget* getWidget() const { return widget_; }

    Data* getData() const { return data_; }
    void setSkinData(Data* data, bool owns);
    // Whether the widget must be drawn through a target.
    bool getNeedsTarget() const { return shaderEffect_ != nullptr; }
    ShaderEffect* getShaderEffect() const { return shaderEffect_; }

    std::shared_ptr<Image> const& getTargetImage() const { return targetImage_; }
    std::shared_ptr<rastFrameBuffer> const& getTarget() const { return target_; }
    int getTargetMips() const { return targetMips_; }
    void setTargetMips(int mips);
    int getTargetMsaa() const { return targetMsaa_; }
    void setTargetMsaa(int msaa);
    // The size of the target when there is one, else the size asked for.
    osg::Vec2i getTargetSize() const;
    // (0, 0) makes the target as big as the widget's non-zoomed size.
    void setTargetSize(osg::Vec2i const& size);
    // The laid-out lines of the text, brought up to date first.
    std::span<orm::basic_string<wchar_t> const> getTextLines();

    // The primitives as they stand, for widget skins and tests; null when the
    // present state has no such part.
    Bkg const* getBkg() const { return bkg_; }
    Text const* getText() const { return text_; }
    Image const* getImage() const { return image_; }
    FocusRect const* getFocusRect() const { return focusRect_; }

protected:
    virtual osg::Vec2i getWidgetNonZoomedSize_() const;
    virtual osg::Vec2i calcPictureSize_(InteractiveState state, int inner) const;
    virtual osg::Vec2i calcImageSize_(Image::Info const& info) const;
    virtual osg::Vec2i calcBkgSize_(InteractiveState state, int inner) const;
    virtual osg::Vec2i calcTextSize_(InteractiveState state, int inner) const;
    virtual osg::Vec2i calcTextSize2_(orm::basic_string<wchar_t> const& text, Text::Info const* info,
                                      osg::Vec2i const& size) const;
    virtual osg::Recti getFocusRectBounds_() const;
    virtual bool getFocusRectVisible_() const;
    virtual void redraw_();
    virtual void redrawBkg_(InteractiveState state, int inner);
    virtual void redrawText_(InteractiveState state, int inner);
    virtual void redrawImage_(Image*& image, Image::Info const* info);
    virtual void redrawImage_(InteractiveState state, int inner);
    virtual void redrawFocusRect_();
    virtual void draw_();
    virtual void drawBkg_();
    virtual void drawText_();
    virtual void drawImage_();
    virtual void drawChildren_();
    virtual void drawToTarget_(osg::Vec2i const& size);
    // Draws again only `damage` (in the widget's units) of a target that holds the rest.
    void drawPartToTarget_(osg::Vec2i const& size, osg::Recti const& damage);
    virtual void make_(GraphicCommands* commands);
    virtual void makeBkg_(GraphicCommands* commands);
    virtual void makeText_(GraphicCommands* commands);
    virtual void makeImage_(GraphicCommands* commands);
    virtual void makeChildren_(GraphicCommands* commands);
    virtual void makeBeginClipByInsets(GraphicCommands* commands);
    virtual void makeEndClipByInsets(GraphicCommands* commands);
    // Lua: the skin table, or the "skins" table for sub-skins, is on top of the stack.
    virtual void loadSkin_(lua_State* L);
    virtual void loadSkinData_(lua_State* L);
    virtual void loadSubSkins_(lua_State*) {}
    virtual void loadSubSkin_(lua_State* L, char const* name, Data& data);
    virtual void loadSubSkin_(lua_State* L, char const* name, Skin* skin);
    virtual void unloadSkin_(lua_State* L) const;
    virtual void unloadSkinData_(lua_State* L) const;
    virtual void unloadSubSkins_(lua_State*) const {}
    virtual void unloadSubSkin_(lua_State* L, char const* name, Data const& data) const;
    virtual void unloadSubSkin_(lua_State* L, char const* name, Skin const* skin) const;
    virtual void clearSkinData_();
    virtual void createTarget_();
    virtual void doRedrawTarget_();
    virtual void updateTarget_();
    // Whether text lines below the bottom edge may go without a string.
    virtual bool deleteInvisibleTextLines() { return true; }

    void deleteTarget_();
    // A picture the present state does not show leaves its slot but is kept
    // for the next state that shows one, so that a picture turned off and on
    // again (a check mark) costs no allocation; it is set afresh when taken.
    void putImageAside_(Image*& image);
    Image* takeImage_();

    Widget* widget_;
    Data* data_ = nullptr;
    Bkg* bkg_ = nullptr;
    Text* text_ = nullptr;
    Image* image_ = nullptr;
    Image* spareImage_ = nullptr;
    FocusRect* focusRect_ = nullptr;
    bool textChanged_ = true;
    bool sizeChanged_ = true;
    bool ownsData_ = true;
    std::shared_ptr<rastFrameBuffer> target_;
    bool targetIsNew_ = false;  // made since it was last drawn: drawn whole
    std::shared_ptr<Image> targetImage_;
    ShaderEffect* shaderEffect_ = nullptr;
    int targetMsaa_ = 0;
    int targetMips_ = 1;
    osg::Vec2i targetSize_;
    // The nested list of the recorded road through the target, kept so that
    // steady frames reuse its storage.
    std::unique_ptr<GraphicCommands> targetCommands_;
};

}  // namespace gui::skin
