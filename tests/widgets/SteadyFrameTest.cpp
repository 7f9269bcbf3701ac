#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "Button.h"
#include "CheckBox.h"
#include "GuiFixture.h"
#include "Panel.h"
#include "Static.h"
#include "Widget.h"
#include "Window.h"
#include "layouts/HorzLayout.h"
#include "layouts/VertLayout.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"

namespace {

// Frames of a settled UI over the null backend, with the skin of the frame
// benchmarks (framed backgrounds, DejaVu Sans text on every widget): after
// warm-up, a frame where nothing changed, one where a single control changed
// and one where the mouse moved over controls allocate nothing; with the
// windows drawn directly, and drawn through targets of their own, which a
// change draws again in part.
class SteadyFrameTest : public vurel_test::GuiFixture, public ::testing::WithParamInterface<bool> {
protected:
    static constexpr int kWindows = 2;
    static constexpr int kGroups = 2;
    static constexpr int kRows = 3;

    void SetUp() override {
        recordingBackend = false;
        skinFile = "../../bench/bench_skin.lua";
        viewport = {1280, 720};
        GuiFixture::SetUp();
        app->setSize(viewport);
        std::vector<uint8_t> const white(16 * 16 * 4, 255);
        rastRenderer::get()->getTextureManager()->addImage("bench/frame", {16, 16}, white.data());
        rastRenderer::get()->getTextureManager()->addImage("bench/check", {12, 12}, white.data());
        for (int w = 0; w < kWindows; ++w)
            buildWindow_(w);
        frame();
    }

    // Windows of groups of rows, each row a label, a button and a check box.
    void buildWindow_(int index) {
        auto* window = new gui::Window();
        window->setText(L"Window");
        window->setPosition({20 + 60 * index, 20 + 40 * index});
        window->setSize({420, 300});
        window->setDrawToTarget(GetParam());
        window->setLayout((new gui::VertLayout(4))->handler());
        for (int g = 0; g < kGroups; ++g) {
            auto* group = new gui::Panel();
            group->setLayout((new gui::VertLayout(2))->handler());
            window->insertWidget(group);
            for (int r = 0; r < kRows; ++r) {
                auto* row = new gui::Panel();
                row->setLayout((new gui::HorzLayout(4))->handler());
                group->insertWidget(row);
                auto* label = new gui::Static();
                label->setText(L"Label");
                row->insertWidget(label);
                auto* button = new gui::Button();
                button->setText(L"Apply");
                row->insertWidget(button);
                auto* check = new gui::CheckBox(r % 2);
                check->setText(L"Option");
                row->insertWidget(check);
                buttons.push_back(button);
                checks.push_back(check);
                rows.push_back(row);
            }
        }
        window->setVisible(true);
    }

    // Points along the first row of the top window, left to right and back,
    // crossing the label, the button and the check box.
    std::vector<osg::Vec2i> mousePath() const {
        gui::Widget const* row = rows[rows.size() - kGroups * kRows];
        int const y = row->getSize().y / 2;
        std::vector<osg::Vec2i> path;
        for (int x = -10; x < row->getSize().x + 10; x += 13)
            path.push_back(row->widgetToScreen({x, y}));
        for (size_t i = path.size(); i-- > 0;)
            path.push_back(path[i] + osg::Vec2i(0, 1));
        return path;
    }

    void moveFrames(std::vector<osg::Vec2i> const& path) {
        for (osg::Vec2i const& p : path) {
            gui().mouseMove(p.x, p.y);
            frame();
            for (gui::Button const* b : buttons)
                hovered |= b->getMouseInside();
        }
    }

    std::vector<gui::Panel*> rows;
    std::vector<gui::Button*> buttons;
    std::vector<gui::CheckBox*> checks;
    bool hovered = false;
};

TEST_P(SteadyFrameTest, SettledFramesAllocateNothing) {
    // The strings the application alternates are its own, made once.
    orm::basic_string<wchar_t> const texts[2] = {L"Cancel", L"Apply"};
    gui::Button* const changing = buttons.back();
    gui::CheckBox* const toggled = checks.back();
    auto changeFrame = [&](int n) {
        changing->setText(texts[n % 2]);
        toggled->setState((n / 2) % 2);
        frame();
    };
    std::vector<osg::Vec2i> const path = mousePath();
    ASSERT_GT(path.size(), 20u);

    // Warm-up: every state, text and hover that the measured frames show, twice.
    for (int n = 0; n < 8; ++n)
        changeFrame(n);
    moveFrames(path);
    moveFrames(path);
    for (int n = 0; n < 3; ++n)
        frame();
    ASSERT_TRUE(hovered) << "the path never crossed a button";
    ASSERT_EQ(gui::Widget::getRedrawQueueSize(), 0u);

    {
        vurel_test::AllocationCounter counter;
        for (int n = 0; n < 20; ++n)
            frame();
        EXPECT_EQ(counter.count(), 0u) << "idle frames";
        // Nothing entered the render-side list either: idle touches no widget.
        gui().processMessages();
        EXPECT_EQ(gui::Widget::getDoRedrawQueueSize(), 0u);
    }
    {
        vurel_test::AllocationCounter counter;
        for (int n = 0; n < 8; ++n)
            changeFrame(n);
        EXPECT_EQ(counter.count(), 0u) << "frames where one button's text and one check box changed";
    }
    EXPECT_EQ(changing->getText(), texts[1]);
    hovered = false;
    {
        vurel_test::AllocationCounter counter;
        moveFrames(path);
        EXPECT_EQ(counter.count(), 0u) << "frames where the mouse moved over controls";
    }
    EXPECT_TRUE(hovered);
}

INSTANTIATE_TEST_SUITE_P(Windows, SteadyFrameTest, ::testing::Values(false, true),
                         [](::testing::TestParamInfo<bool> const& info) { return info.param ? "Cached" : "Direct"; });

// A window that logs its name when drawn.
class LoggedWindow : public gui::Window {
public:
    LoggedWindow(std::vector<std::string>& log, std::string name) : log_(log), name_(std::move(name)) {
        setSize({100, 80});
        setVisible(true);
    }

protected:
    void draw_() override {
        log_.push_back(name_);
        gui::Window::draw_();
    }

private:
    std::vector<std::string>& log_;
    std::string name_;
};

using SteadyWindowsTest = vurel_test::GuiFixture;

// Idle frames reuse the manager's snapshot of the window stack; every change
// of the stack still reaches the next frame's drawing.
TEST_F(SteadyWindowsTest, DrawingFollowsEveryChangeOfTheStack) {
    std::vector<std::string> log;
    auto drawn = [&] {
        log.clear();
        frame();
        return log;
    };
    auto* a = new LoggedWindow(log, "a");
    auto* b = new LoggedWindow(log, "b");
    auto* c = new LoggedWindow(log, "c");
    using Names = std::vector<std::string>;
    EXPECT_EQ(drawn(), (Names{"a", "b", "c"}));
    EXPECT_EQ(drawn(), (Names{"a", "b", "c"}));
    a->setFocused(true);
    EXPECT_EQ(drawn(), (Names{"b", "c", "a"}));
    b->setVisible(false);
    EXPECT_EQ(drawn(), (Names{"c", "a"}));
    c->kill();
    EXPECT_EQ(drawn(), (Names{"a"}));
    b->setVisible(true);
    EXPECT_EQ(drawn(), (Names{"a", "b"}));
    gui::Widget::destroy(a);
    EXPECT_EQ(drawn(), (Names{"b"}));
}

}  // namespace
