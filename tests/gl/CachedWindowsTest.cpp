#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GlFixture.h"
#include "GuiFixture.h"
#include "HeadlessSession.h"
#include "Scene.h"
#include "Script.h"
#include "WindowBase.h"

// Windows drawn through render targets of their own, which changes draw
// again only in part, must look exactly as windows drawn directly: the
// gallery's scripted session (hover, tooltip, a pressed check box, a modal
// dialog over the rest) against the same reference picture.

namespace vurel_test {
namespace {

TEST(CachedWindows, AScriptedSessionLooksAsWhenDrawnDirectly) {
    std::error_code error;
    std::filesystem::path const saved = std::filesystem::current_path(error);
    std::filesystem::current_path(gallery::Scene::rootDir(), error);

    {
        gallery::HeadlessSession session(1.0f, gallery::Scene::defaultSkinFile());
        std::string message;
        ASSERT_TRUE(session.start(message)) << message;
        if (!session.hasGl())
            GTEST_SKIP() << "no EGL context with OpenGL 3.3 core here";
        gallery::Scene& scene = *session.getScene();
        int cached = 0;
        for (char const* name : {"main", "tools", "overlay", "notice", "dialog", "popup"})
            if (gui::WindowBase* window = scene.getWindow(name)) {
                window->setDrawToTarget(true);
                ++cached;
            }
        ASSERT_GE(cached, 3);

        gallery::Script script;
        ASSERT_TRUE(script.load(dataPath("gallery_script.txt"), message)) << message;
        session.play(script);

        std::vector<uint8_t> pixels;
        int width = 0, height = 0;
        ASSERT_TRUE(session.readPixels(pixels, width, height));
        expectGoldenPicture("gallery", pixels, width, height, 12);
    }
    std::filesystem::current_path(saved, error);
}

}  // namespace
}  // namespace vurel_test
