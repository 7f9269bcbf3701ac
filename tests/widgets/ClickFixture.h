#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "SkinFixture.h"
#include "Widget.h"
#include "rast/Font.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"

namespace vurel_test {

// A GUI with tests/data/test_skin.lua, its pictures and font, driven by
// input through gui::GUI the way an application feeds it.
class ClickFixture : public SkinFixture {
protected:
    void SetUp() override {
        SkinFixture::SetUp();
        std::vector<uint8_t> const white(12 * 12 * 4, 255);
        rastRenderer::get()->getTextureManager()->addImage("skin/check", {12, 12}, white.data());
    }

    void moveTo(osg::Vec2i const& screen) {
        gui().mouseMove(screen.x, screen.y);
        frame();
    }
    // A point of the widget, in its own coordinates.
    void moveTo(gui::Widget const* widget, osg::Vec2i const& local = {5, 5}) {
        moveTo(widget->widgetToScreen(local));
    }
    // Presses a second apart, so that none turns into a double click.
    void press(gui::MouseButton button = gui::MouseButtonLeft) {
        app->advanceTime(1.0);
        gui().mouseDown(button);
        frame();
    }
    void release(gui::MouseButton button = gui::MouseButtonLeft) {
        gui().mouseUp(button);
        frame();
    }
    void click(gui::Widget const* widget) {
        moveTo(widget);
        press();
        release();
    }
    void keyDown(gui::KeyboardButton key) {
        gui().keyDown(key, 0);
        frame();
    }
    void keyUp(gui::KeyboardButton key) {
        gui().keyUp(key, 0);
        frame();
    }

    // A counter of the widget's "widget change" callbacks.
    std::shared_ptr<int> countChanges(gui::Widget* widget) {
        auto count = std::make_shared<int>(0);
        widget->addWidgetCallback(gui::getWidgetCallbackType(gui::Widget::changeCallbackName),
                                  std::make_shared<std::function<void()>>([count] { ++*count; }));
        return count;
    }
};

}  // namespace vurel_test
