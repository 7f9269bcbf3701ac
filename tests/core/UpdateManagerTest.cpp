#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "GuiFixture.h"
#include "UpdateManager.h"

using vurel_test::GuiFixture;

namespace {

// A target that records its calls and runs an action from inside update.
struct Target : gui::UpdateTarget {
    explicit Target(std::vector<int>& log, int id) : log(log), id(id) {}
    void update(double) override {
        log.push_back(id);
        if (action)
            action();
    }
    std::vector<int>& log;
    int id;
    std::function<void()> action;
};

}  // namespace

TEST_F(GuiFixture, UpdateTargetsAddedAndRemovedDuringAPass) {
    gui::UpdateManager& manager = *gui::UpdateManager::get();
    std::vector<int> log;
    Target a(log, 1), b(log, 2), c(log, 3), late(log, 4);

    manager.addTarget(&a);
    manager.addTarget(&a);  // twice is once
    manager.addTarget(&b);
    manager.addTarget(&c);

    // a removes itself and the later c, and adds `late`: b runs, c does not, late waits a pass.
    a.action = [&] {
        manager.removeTarget(&a);
        manager.removeTarget(&c);
        manager.addTarget(&late);
    };
    manager.updateTargets();
    EXPECT_EQ(log, (std::vector<int>{1, 2}));

    log.clear();
    manager.updateTargets();
    EXPECT_EQ(log, (std::vector<int>{2, 4}));

    // Added and removed in the same pass: removed.
    log.clear();
    b.action = [&] {
        manager.addTarget(&c);
        manager.removeTarget(&c);
    };
    manager.updateTargets();
    manager.updateTargets();
    EXPECT_EQ(log, (std::vector<int>{2, 4, 2, 4}));
    EXPECT_FALSE(manager.hasTarget(&c));
    manager.removeTarget(&b);
    manager.removeTarget(&late);
}

TEST_F(GuiFixture, UpdateClockAndModelClock) {
    gui::UpdateManager& manager = *gui::UpdateManager::get();
    app->setTime(12.5);  // the manager started at 0
    std::vector<int> log;
    Target t(log, 1);
    double seen = -1;
    struct Clock : gui::UpdateTarget {
        double* seen;
        void update(double time) override { *seen = time; }
    } clock;
    clock.seen = &seen;
    EXPECT_DOUBLE_EQ(manager.addTarget(&clock), 12.5);
    manager.updateTargets();
    EXPECT_DOUBLE_EQ(seen, 12.5);
    EXPECT_DOUBLE_EQ(manager.getModelTime(), manager.getTime());
    manager.setModelTimeFunc([] { return 99.0; });
    EXPECT_DOUBLE_EQ(manager.getModelTime(), 99.0);
    manager.removeTarget(&clock);
}

TEST(ApplicationBase, RunningQuitAndCallbacks) {
    vurel_test::TestApplication app;
    EXPECT_EQ(gui::Application::get(), &app);
    EXPECT_TRUE(app.getRunning());
    EXPECT_FALSE(app.getActive());
    EXPECT_TRUE(app.getScreenshotExtention().empty());

    // With a quit callback, onQuit leaves the loop running until the callback quits.
    int asked = 0;
    app.setOnQuitCallback([&] { ++asked; });
    app.onQuit();
    EXPECT_TRUE(app.getRunning());
    EXPECT_EQ(asked, 1);
    app.resetCallbacks();
    app.onQuit();
    EXPECT_FALSE(app.getRunning());

    bool activeSeen = false;
    app.setOnActivateCallback([&](bool a) { activeSeen = a; });
    app.onActivate(true);
    EXPECT_TRUE(app.getActive());
    EXPECT_TRUE(activeSeen);

    EXPECT_TRUE(app.createMainWindow(320, 200, true));
    EXPECT_EQ(app.getRequestedSize(), osg::Vec2i(320, 200));
    EXPECT_TRUE(app.getFullScreen());
}
