#pragma once

#include "Align.h"
#include "Export.h"
#include "Skin/Skin.h"
#include "Skin/SkinData.h"
#include "orm/String.h"

namespace gui {
class WindowBase;
class WindowHeader;
}  // namespace gui

namespace gui::skin {

class ButtonSkin;

// The look of a window: the common data plus the height of its title header.
class VUREL_EXPORT WindowData : public Data {
public:
    explicit WindowData(Skin* owner);

    virtual void setHeaderHeight(int height);
    virtual int getHeaderHeight() const { return headerHeight_; }

protected:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* target) const override;

    int headerHeight_ = 20;
};

// The look of a window's title header and where its close button sits.
class VUREL_EXPORT WindowHeaderData : public Data {
public:
    explicit WindowHeaderData(Skin* owner);

    virtual void setHasCloseButton(bool has);
    virtual bool getHasCloseButton() const { return hasCloseButton_; }
    virtual void setCloseButtonHorzAlign(Align const& align);
    virtual Align const& getCloseButtonHorzAlign() const { return closeButtonHorzAlign_; }
    virtual void setCloseButtonVertAlign(Align const& align);
    virtual Align const& getCloseButtonVertAlign() const { return closeButtonVertAlign_; }
    // UTF-8; the button shows it converted to a wide string.
    virtual void setCloseButtonText(orm::basic_string<char> const& text);
    virtual orm::basic_string<char> const& getCloseButtonText() const { return closeButtonText_; }

protected:
    void loadParams_(lua_State* L) override;
    void unloadParams_(lua_State* L) const override;
    void copyParams_(Data* target) const override;

    bool hasCloseButton_ = true;
    Align closeButtonHorzAlign_{Align::Max, -5};
    Align closeButtonVertAlign_{Align::Center, 0};
    orm::basic_string<char> closeButtonText_;
};

// The painter of a window. The window's header and view keep skins of their
// own; this one reaches them so that copying a window's look copies all three.
class VUREL_EXPORT WindowBaseSkin : public Skin {
public:
    // With `createData` the skin makes a WindowData; without, a subclass brings its data.
    WindowBaseSkin(WindowBase* window, bool createData);

    Skin* getHeaderSkin() const;
    Skin* getViewSkin() const;
    void copyTo(Skin* target) const override;

protected:
    // The "header" and "view" entries of "skins" load straight into the
    // skins of the window's header and view.
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

    WindowBase* window_;
};

// The painter of a window's title header, owning its WindowHeaderData and the
// painter of the close button, which the button borrows while it lives.
class VUREL_EXPORT WindowHeaderSkin : public Skin {
public:
    explicit WindowHeaderSkin(WindowHeader* header);
    ~WindowHeaderSkin() override;

    WindowHeaderData* getHeaderData() const;
    ButtonSkin* getCloseButtonSkin() const { return closeButtonSkin_; }
    // The work of Skin, then the close button's look.
    void copyTo(Skin* target) const override;

protected:
    // The "closeButton" entry of "skins" loads into the close button's painter.
    void loadSubSkins_(lua_State* L) override;
    void unloadSubSkins_(lua_State* L) const override;

    ButtonSkin* closeButtonSkin_;
};

}  // namespace gui::skin
