#pragma once

#include "Export.h"
#include "Skin/Skin.h"

namespace gui {
class Button;
class CheckBox;
class RadioButton;
class ToggleButton;
}  // namespace gui

namespace gui::skin {

class CheckBoxData;

// The painter of a push button: the common look with the ordinary Data.
class VUREL_EXPORT ButtonSkin : public Skin {
public:
    explicit ButtonSkin(Button* button);

    // Paints another button from now on; null leaves the painter unbound.
    void setWidget(Button* button);
};

// The painter of toggles and switch buttons, keyed off, on and mixed by the
// inner states 1, 2 and 3.
class VUREL_EXPORT ToggleButtonSkin : public Skin {
public:
    explicit ToggleButtonSkin(ToggleButton* button);
};

// The common painter of check boxes and radio buttons: the look of Skin plus
// a check mark, a picture that each state entry may carry and that places
// itself by its own alignment. The mark is drawn over picture and text.
class VUREL_EXPORT CheckBaseSkin : public Skin {
public:
    ~CheckBaseSkin() override;

    void doRedraw() override;
    CheckBoxData* getSkinData() const;
    // The check mark as it stands; null when the present state has none.
    Image const* getCheckImage() const { return checkImage_; }

protected:
    explicit CheckBaseSkin(ToggleButton* button);

    // The larger of the common picture and the check mark, per axis.
    osg::Vec2i calcPictureSize_(InteractiveState state, int inner) const override;
    // Around the label: from the right edge of the mark to the widget's edge.
    osg::Recti getFocusRectBounds_() const override;
    void redraw_() override;
    void draw_() override;
    void make_(GraphicCommands* commands) override;

    virtual void redrawCheck_(InteractiveState state, int inner);
    virtual void drawCheck_();
    virtual void makeCheck_(GraphicCommands* commands);

    Image* checkImage_ = nullptr;
};

class VUREL_EXPORT CheckBoxSkin : public CheckBaseSkin {
public:
    explicit CheckBoxSkin(CheckBox* checkBox);
};

class VUREL_EXPORT RadioButtonSkin : public CheckBaseSkin {
public:
    explicit RadioButtonSkin(RadioButton* radioButton);
};

}  // namespace gui::skin
