#pragma once

#include "Align.h"
#include "Export.h"
#include "osg/Vec2i.h"
#include "osg/Vec4f.h"

namespace gui::skin {

class Skin;

// The look of one kind of widget as data: the common parameters that sizes,
// insets and the focus rectangle are read from. Per-state entries come with
// the painter.
class VUREL_EXPORT Data {
public:
    explicit Data(Skin* owner);
    virtual ~Data() = default;

    virtual void setOwner(Skin* owner) { owner_ = owner; }
    virtual Skin* getOwner() const { return owner_; }
    virtual void setMinSize(osg::Vec2i const& size);
    virtual osg::Vec2i const& getMinSize() const { return minSize_; }
    virtual void setMaxSize(osg::Vec2i const& size);
    virtual osg::Vec2i const& getMaxSize() const { return maxSize_; }
    virtual void setInsets(Insets const& insets);
    virtual Insets const& getInsets() const { return insets_; }
    virtual void setTextWrapping(bool wrapping);
    virtual bool getTextWrapping() const { return textWrapping_; }
    virtual void setUseEllipsis(bool use);
    virtual bool getUseEllipsis() const { return useEllipsis_; }
    virtual void setTextLineHeight(int height);
    virtual int getTextLineHeight() const { return textLineHeight_; }
    virtual void setFocusRectInsets(Insets const& insets);
    virtual Insets const& getFocusRectInsets() const { return focusRectInsets_; }
    virtual void setFocusRectColor(osg::Vec4f const& color);
    virtual osg::Vec4f const& getFocusRectColor() const { return focusRectColor_; }
    virtual void setClipInsets(Insets const& insets);
    virtual Insets const& getClipInsets() const { return clipInsets_; }
    virtual bool getClipInsetsEmpty() const;
    virtual void setLoaded() { loaded_ = true; }
    virtual bool getLoaded() const { return loaded_; }

    void copyTo(Data* target) const;

protected:
    virtual void copyParams_(Data* target) const;
    virtual void ownerSkinUpdateWidget(bool sizeChanged);

    osg::Vec2i minSize_;
    osg::Vec2i maxSize_;
    Insets insets_;
    bool textWrapping_ = false;
    bool useEllipsis_ = false;
    int textLineHeight_ = 0;
    Insets focusRectInsets_{2, 2, 2, 2};
    osg::Vec4f focusRectColor_;
    Insets clipInsets_;
    Skin* owner_;
    bool loaded_ = false;
};

}  // namespace gui::skin
