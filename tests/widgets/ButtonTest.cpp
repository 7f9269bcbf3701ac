#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Button.h"
#include "CheckBox.h"
#include "ClickFixture.h"
#include "CloseButton.h"
#include "Panel.h"
#include "RadioButton.h"
#include "Skin/ButtonSkins.h"
#include "Skin/CheckBoxData.h"
#include "Skin/FocusRect.h"
#include "Skin/Text.h"
#include "Skin/WindowSkins.h"
#include "SwitchButton.h"
#include "ToggleButton.h"
#include "WidgetHandler.h"
#include "Window.h"
#include "WindowHeader.h"
#include "WindowsManager.h"
#include "orm/Lua.h"
#include "rast/Texture.h"

using gui::skin::Hover;
using gui::skin::Pressed;
using gui::skin::Released;

namespace {

// The text colours of test_skin.lua tell the looks apart.
osg::Vec4f const kReleasedText(0, 0, 0, 1);
osg::Vec4f const kHoverText(0, 0, 1, 1);
osg::Vec4f const kPressedText(1, 1, 1, 1);

class ButtonTest : public vurel_test::ClickFixture {
protected:
    void SetUp() override {
        ClickFixture::SetUp();
        window = new gui::Window();
        window->setPosition({100, 100});
        window->setSize({300, 200});
        window->setVisible(true);
        manager = gui().getWindowsManager(0);
    }

    template <class W>
    W* add(W* widget, osg::Vec2i position, osg::Vec2i size, gui::Panel* parent = nullptr) {
        widget->setPosition(position);
        widget->setSize(size);
        if (parent)
            parent->insertWidget(widget);
        else
            window->insertWidget(widget);
        return widget;
    }

    static osg::Vec4f textColor(gui::Widget const* widget) {
        gui::Text const* text = widget->getWidgetSkin()->getText();
        return text ? text->getColor() : osg::Vec4f();
    }

    static std::vector<int> states(std::vector<gui::ToggleButton*> const& buttons) {
        std::vector<int> out;
        for (gui::ToggleButton const* b : buttons)
            out.push_back(b->getState());
        return out;
    }

    gui::Window* window = nullptr;
    gui::WindowsManager* manager = nullptr;
};

}  // namespace

TEST_F(ButtonTest, APressEndsInAChangeOnlyWhenReleasedInside) {
    auto* button = add(new gui::Button(), {20, 20}, {80, 24});
    button->setText(L"Go");
    auto fired = countChanges(button);
    frame();
    EXPECT_EQ(button->getInteractiveState(), Released);
    EXPECT_EQ(textColor(button), kReleasedText);

    moveTo(button);
    EXPECT_EQ(button->getInteractiveState(), Hover);
    EXPECT_EQ(textColor(button), kHoverText);
    press();
    EXPECT_EQ(button->getInteractiveState(), Pressed);
    EXPECT_EQ(textColor(button), kPressedText);
    EXPECT_EQ(manager->getCapturedWidget(), button->handler()) << "the press holds the mouse";

    // Dragged out, the held button shows hover; released there, nothing fires.
    moveTo(button, {150, 100});
    EXPECT_EQ(button->getInteractiveState(), Hover);
    release();
    EXPECT_EQ(*fired, 0);
    EXPECT_EQ(manager->getCapturedWidget(), nullptr);
    EXPECT_EQ(button->getInteractiveState(), Released);
    moveTo(button, {150, 110});
    EXPECT_EQ(button->getInteractiveState(), Released);

    // Out and back in before the release: the change fires.
    moveTo(button);
    press();
    moveTo(button, {-30, 5});
    EXPECT_EQ(button->getInteractiveState(), Hover);
    moveTo(button, {10, 10});
    EXPECT_EQ(button->getInteractiveState(), Pressed);
    release();
    EXPECT_EQ(*fired, 1);
    EXPECT_EQ(button->getInteractiveState(), Hover);

    // Other mouse buttons do not press; a double click is a second press.
    press(gui::MouseButtonRight);
    EXPECT_FALSE(button->getMousePressed());
    release(gui::MouseButtonRight);
    EXPECT_EQ(*fired, 1);
    gui().mouseDown(gui::MouseButtonLeft);
    gui().mouseUp(gui::MouseButtonLeft);
    gui().mouseDown(gui::MouseButtonLeft);
    gui().mouseUp(gui::MouseButtonLeft);
    frame();
    EXPECT_EQ(*fired, 3);

    // A disabled button shows so and takes no clicks.
    button->setEnabled(false);
    frame();
    EXPECT_EQ(button->getInteractiveState(), gui::skin::Disabled);
    press();
    release();
    EXPECT_EQ(*fired, 3);
}

TEST_F(ButtonTest, SpaceAndReturnPressTheFocusedButton) {
    auto* first = add(new gui::Button(), {20, 20}, {80, 24});
    auto* second = add(new gui::Button(), {120, 20}, {80, 24});
    auto firstFired = countChanges(first);
    auto secondFired = countChanges(second);
    first->setFocused(true);
    frame();

    keyDown(gui::KeySpace);
    EXPECT_EQ(first->getInteractiveState(), Pressed) << "a held key shows pressed";
    keyUp(gui::KeySpace);
    keyDown(gui::KeyReturn);
    keyUp(gui::KeyReturn);
    EXPECT_EQ(*firstFired, 2);
    EXPECT_FALSE(first->onKeyDown(gui::KeyboardButton('a'), 0)) << "other keys pass on";
    EXPECT_FALSE(first->onKeyUp(gui::KeySpace, 0)) << "a key that went down elsewhere does nothing";
    EXPECT_EQ(*firstFired, 2);

    // The focus moves while Space is held: its release fires nowhere.
    keyDown(gui::KeySpace);
    second->setFocused(true);
    frame();
    EXPECT_EQ(first->getInteractiveState(), Released);
    keyUp(gui::KeySpace);
    first->setFocused(true);
    keyUp(gui::KeySpace);
    EXPECT_EQ(*firstFired, 2);
    EXPECT_EQ(*secondFired, 0);

    // Space held and a click on the same button: the click fires, and so does the key.
    keyDown(gui::KeySpace);
    moveTo(first);
    press();
    EXPECT_EQ(first->getInteractiveState(), Pressed);
    release();
    EXPECT_EQ(*firstFired, 3);
    EXPECT_EQ(first->getInteractiveState(), Pressed) << "the key is still down";
    keyUp(gui::KeySpace);
    EXPECT_EQ(*firstFired, 4);
}

TEST_F(ButtonTest, AToggleNeverReachesMixedByClicksAndSetStateFoldsToTheSign) {
    auto* toggle = add(new gui::ToggleButton(-1), {20, 20}, {80, 24});
    auto fired = countChanges(toggle);
    EXPECT_EQ(toggle->getState(), -1);
    EXPECT_EQ(toggle->getInnerState(), 3);
    std::vector<int> seen;
    for (int i = 0; i < 3; ++i) {
        click(toggle);
        seen.push_back(toggle->getState());
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 0, 1}));
    EXPECT_EQ(*fired, 3);
    EXPECT_EQ(toggle->getInnerState(), 2);

    // From code: folded to -1, 0, 1, silent, and no change is no repaint.
    toggle->setState(5);
    EXPECT_EQ(toggle->getState(), 1);
    frame();
    toggle->setState(1);
    EXPECT_FALSE(toggle->getDirty());
    toggle->setState(-7);
    EXPECT_EQ(toggle->getState(), -1);
    toggle->setState(0);
    EXPECT_EQ(toggle->getInnerState(), 1);
    EXPECT_EQ(*fired, 3);

    // A switch button alone in its group: on by the first click, and stays on.
    auto* single = add(new gui::SwitchButton(), {120, 20}, {10, 10});
    EXPECT_EQ(single->getSize(), osg::Vec2i(60, 20)) << "the limits of switchButtonSkin";
    auto singleFired = countChanges(single);
    click(single);
    click(single);
    EXPECT_EQ(single->getState(), 1);
    EXPECT_EQ(*singleFired, 1);
}

TEST_F(ButtonTest, SwitchButtonsUnderOneParentExcludeEachOther) {
    auto* group = add(new gui::Panel(), {10, 10}, {200, 150});
    std::vector<gui::ToggleButton*> radios;
    for (int i = 0; i < 3; ++i)
        radios.push_back(add(new gui::RadioButton(), {10, 10 + 30 * i}, {100, 20}, group));
    auto fired = countChanges(radios[1]);
    EXPECT_EQ(gui::SwitchButton::getGroupSize(group->handler()), 3);

    click(radios[1]);
    EXPECT_EQ(states(radios), (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(*fired, 1);
    click(radios[1]);
    EXPECT_EQ(states(radios), (std::vector<int>{0, 1, 0})) << "the selected member stays on";
    EXPECT_EQ(*fired, 1) << "and its click is silent";
    click(radios[0]);
    EXPECT_EQ(states(radios), (std::vector<int>{1, 0, 0}));

    // Without a parent a button is in no group; joining on turns the on member off.
    auto* late = new gui::RadioButton();
    late->setState(1);
    EXPECT_EQ(radios[0]->getState(), 1);
    group->insertWidget(late);
    EXPECT_EQ(states(radios), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(late->getState(), 1);

    // A mixed member spreads mixed when set on; an off member set on turns the others off.
    radios[0]->setState(-1);
    EXPECT_EQ(late->getState(), 0);
    radios[0]->setState(1);
    EXPECT_EQ(states(radios), (std::vector<int>{1, -1, -1}));
    EXPECT_EQ(late->getState(), -1);
    radios[0]->setState(0);
    EXPECT_EQ(states(radios), (std::vector<int>{0, 0, 0})) << "an on member set off turns all off";
    EXPECT_EQ(late->getState(), 0);
    radios[2]->setState(1);
    EXPECT_EQ(states(radios), (std::vector<int>{0, 0, 1}));

    // Members leave when moved, destroyed or reset.
    auto* other = add(new gui::Panel(), {220, 10}, {60, 60});
    other->insertWidget(late);
    EXPECT_EQ(gui::SwitchButton::getGroupSize(group->handler()), 3);
    EXPECT_EQ(gui::SwitchButton::getGroupSize(other->handler()), 1);
    gui::Widget::destroy(late);
    EXPECT_EQ(gui::SwitchButton::getGroupSize(other->handler()), 0);
    gui::Widget::destroy(radios[2]);
    radios.pop_back();
    EXPECT_EQ(gui::SwitchButton::getGroupSize(group->handler()), 2);
    radios[0]->setState(1);
    group->removeAllWidgets();
    EXPECT_EQ(gui::SwitchButton::getGroupSize(group->handler()), 0);
    EXPECT_EQ(radios[1]->getParent(), nullptr);
    radios[1]->setState(1);
    EXPECT_EQ(radios[0]->getState(), 1) << "no group binds them any more";
    for (gui::ToggleButton* radio : radios)
        gui::Widget::destroy(radio);
}

TEST_F(ButtonTest, ACheckBoxPaintsTheCheckOfItsStateAboveItsLabel) {
    auto* box = add(new gui::CheckBox(0), {20, 20}, {120, 20});
    box->setText(L"Sound");
    frame();
    gui::skin::CheckBoxSkin* skin = box->getCheckBoxSkin();
    ASSERT_NE(skin, nullptr);
    gui::skin::CheckBoxData* data = skin->getSkinData();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->getCheckSize(), 12);
    EXPECT_EQ(data->getCheckGap(), 4);
    EXPECT_EQ(skin->getCheckImage(), nullptr) << "off shows no check";

    box->setState(1);
    frame();
    ASSERT_NE(skin->getCheckImage(), nullptr);
    EXPECT_EQ(skin->getCheckImage()->getOrigin(), osg::Vec2i(4, 4)) << "insets 2, offset 2, centred";
    EXPECT_EQ(skin->getCheckImage()->getInfo().color.w, 1.0f);
    box->setState(-1);
    frame();
    ASSERT_NE(skin->getCheckImage(), nullptr);
    EXPECT_FLOAT_EQ(skin->getCheckImage()->getInfo().color.w, 128.0f / 255.0f) << "mixed has its own check";
    // Hover has no check of its own and shows that of released.
    moveTo(box);
    EXPECT_EQ(box->getInteractiveState(), Hover);
    ASSERT_NE(skin->getCheckImage(), nullptr);
    EXPECT_EQ(textColor(box), kHoverText);

    // The focus mark surrounds the label, from the right edge of the check.
    box->setTabOrder(1);
    box->setFocused(true);
    frame();
    ASSERT_NE(skin->getFocusRect(), nullptr);
    EXPECT_EQ(skin->getFocusRect()->getBounds(), osg::Recti(16, 0, 120, 20));

    // Drawn last inside the clip: background, label, then the check.
    backend().clearEvents();
    box->draw();
    std::vector<std::string> const& events = backend().getEvents();
    std::string const checkDraw =
        "drawQuads tex=" + std::to_string(skin->getCheckImage()->getTexture()->getId()) + " ";
    size_t lastQuads = 0, check = events.size();
    for (size_t i = 0; i < events.size(); ++i) {
        if (events[i].rfind("drawQuads", 0) == 0 || events[i].rfind("drawText", 0) == 0)
            lastQuads = i;
        if (events[i].rfind(checkDraw, 0) == 0)
            check = i;
    }
    EXPECT_EQ(check, lastQuads) << ::testing::PrintToString(events);

    // The preferred size makes room for the larger of picture and check.
    gui::Image::Info big;
    big.file = "skin/check";
    big.size = {30, 30};
    data->setCheck(&big, Released, 1);
    box->setText(L"");
    EXPECT_EQ(skin->calcSize(), osg::Vec2i(30 + 4, 30 + 4));

    // A radio button shows no check for mixed, which its skin leaves out.
    auto* radio = add(new gui::RadioButton(), {20, 50}, {120, 20});
    radio->setState(-1);
    frame();
    EXPECT_EQ(radio->getRadioButtonSkin()->getCheckImage(), nullptr);
    radio->setState(1);
    frame();
    EXPECT_NE(radio->getRadioButtonSkin()->getCheckImage(), nullptr);
}

TEST_F(ButtonTest, CheckDataWritesBackReadsAgainAndCopies) {
    auto* box = add(new gui::CheckBox(1), {20, 20}, {120, 20});
    gui::skin::CheckBoxData* data = box->getCheckBoxSkin()->getSkinData();
    data->setPictureGap(7);
    gui::Image::Info onlyCheck;
    onlyCheck.file = "skin/check";
    data->setCheck(&onlyCheck, Pressed, 5);

    lua_State* L = gui().getSkinLuaState();
    int const top = lua_gettop(L);
    lua_newtable(L);
    box->getWidgetSkin()->putIntoScript(L);
    auto* other = add(new gui::CheckBox(0), {20, 50}, {120, 20});
    gui::skin::CheckBoxData* otherData = other->getCheckBoxSkin()->getSkinData();
    otherData->setCheck(nullptr, Released, 2);
    ASSERT_EQ(otherData->getCheck(Released, 2), nullptr);
    other->getWidgetSkin()->loadFromScript(L);
    lua_settop(L, top);
    EXPECT_EQ(otherData->getPictureGap(), 7);
    EXPECT_EQ(otherData->getCheckGap(), 4);
    ASSERT_NE(otherData->getCheck(Released, 2), nullptr);
    EXPECT_EQ(otherData->getCheck(Released, 2)->size, osg::Vec2i(12, 12));
    ASSERT_NE(otherData->getCheck(Pressed, 5), nullptr) << "an entry with only a check is written too";
    EXPECT_EQ(otherData->getCheck(Pressed, 5)->file, "skin/check");
    EXPECT_EQ(otherData->getCheck(Released, 1), nullptr);

    // A clone has its own copy of the look, check marks included.
    auto* copy = static_cast<gui::CheckBox*>(box->clone());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getState(), 1);
    gui::skin::CheckBoxData* copied = copy->getCheckBoxSkin()->getSkinData();
    data->setCheck(nullptr, Released, 2);
    ASSERT_NE(copied->getCheck(Released, 2), nullptr);
    EXPECT_EQ(copied->getPictureGap(), 7);
    gui::Widget::destroy(copy);
}

TEST_F(ButtonTest, TheHeaderPlacesItsCloseButtonAsItsSkinSays) {
    frame();
    gui::WindowHeader* header = window->getHeader();
    gui::CloseButton* close = header->getCloseButton();
    ASSERT_NE(close, nullptr);
    EXPECT_FALSE(close->getFocusable());
    // The header's insets are 4 left and right; the button is a square of the
    // inner height, 5 pixels from the right end.
    EXPECT_EQ(close->getSize(), osg::Vec2i(20, 20));
    EXPECT_EQ(close->getPosition(), osg::Vec2i(4 + 292 - 20 - 5, 0));
    EXPECT_EQ(header->findWidgetAtScreenPoint(close->widgetToScreen({10, 10})), close) << "above the dragger";

    // It borrows the painter that the header skin loaded as "closeButton".
    gui::skin::ButtonSkin* skin = header->getHeaderSkin()->getCloseButtonSkin();
    EXPECT_EQ(close->getWidgetSkin(), skin);
    EXPECT_EQ(skin->getData()->getMinSize(), osg::Vec2i(12, 12));

    gui::skin::WindowHeaderData* data = header->getHeaderSkin()->getHeaderData();
    data->setCloseButtonText("\xc3\x97");
    frame();
    EXPECT_EQ(close->getText(), L"\u00d7");

    data->setHasCloseButton(false);
    frame();
    EXPECT_EQ(header->getCloseButton(), nullptr);
    EXPECT_FALSE(header->getHasCloseButton());
    EXPECT_EQ(skin->getWidget(), nullptr) << "the painter stays with the header skin, unbound";
    EXPECT_EQ(header->getWidgetCount(), 1) << "only the dragger is left";
    data->setHasCloseButton(true);
    frame();
    ASSERT_NE(header->getCloseButton(), nullptr);
    EXPECT_EQ(header->getCloseButton()->getText(), L"\u00d7");
}
