#include <gtest/gtest.h>

#include <cstdint>
#include <algorithm>
#include <string>
#include <vector>

#include "GuiFixture.h"
#include "Panel.h"
#include "Skin/GraphicCommands.h"
#include "Skin/StaticSkin.h"
#include "Static.h"
#include "TextureView.h"
#include "rast/Renderer.h"
#include "rast/Texture.h"

using vurel_test::GuiFixture;

namespace {

class StaticTest : public GuiFixture {
protected:
    void SetUp() override {
        skinFile = "test_skin.lua";
        GuiFixture::SetUp();
    }

    // The model-view and clip events of one widget drawn directly, and the same recorded and replayed.
    std::pair<std::vector<std::string>, std::vector<std::string>> bothRoads(gui::Widget& w) {
        gui().processMessages();
        gui().doRedraw();
        backend().clearEvents();
        w.draw();
        auto direct = backend().getEvents({"modelView", "pushClipRect", "drawQuads"});
        backend().clearEvents();
        gui::GraphicCommands commands;
        w.make(&commands);
        for (auto* c : commands.getCommands())
            c->doRedraw();
        for (auto* c : commands.getCommands())
            c->draw();
        for (size_t i = commands.getCommands().size(); i-- > 0;)
            commands.getCommands()[i]->release();
        commands.clear();
        return {direct, backend().getEvents({"modelView", "pushClipRect", "drawQuads"})};
    }
};

}  // namespace

TEST_F(StaticTest, TurningTakesTheUnclippedPathAboutThePivot) {
    auto* label = new gui::Static();
    label->setPosition({40, 30});
    label->setSize({20, 10});
    EXPECT_NE(dynamic_cast<gui::skin::StaticSkin*>(label->getWidgetSkin()), nullptr);

    auto [plain, plainRecorded] = bothRoads(*label);
    EXPECT_EQ(plain, plainRecorded);
    EXPECT_EQ(plain.front(), "modelView 40 30");
    EXPECT_EQ(std::count_if(plain.begin(), plain.end(), [](auto const& e) { return e.rfind("pushClipRect", 0) == 0; }),
              1);

    // A full turn still takes the turning path: no clip, and a rotated matrix.
    label->setAngle(360);
    label->setPivotPoint({10, 5});
    EXPECT_FALSE(label->getDirty()) << "turning needs no repaint";
    auto [turned, turnedRecorded] = bothRoads(*label);
    EXPECT_EQ(turned, turnedRecorded);
    ASSERT_FALSE(turned.empty());
    EXPECT_EQ(turned.front().rfind("modelView", 0), 0u);
    EXPECT_NE(turned.front().find("rotated"), std::string::npos);
    for (auto const& e : turned)
        EXPECT_NE(e.rfind("pushClipRect", 0), 0u) << "a turned static is never clipped";

    // A quarter turn about the pivot (50, 35 on screen): the widget's origin,
    // 10 left and 5 above the pivot, lands 5 left of and 10 below it.
    label->setAngle(90);
    auto [quarter, quarterRecorded] = bothRoads(*label);
    EXPECT_EQ(quarter.front(), "modelView 45 45 rotated");
    EXPECT_EQ(quarter, quarterRecorded);
    gui::Widget::destroy(label);

    gui::Static bare(true);
    EXPECT_EQ(bare.getWidgetSkin(), nullptr);
}

TEST_F(StaticTest, ATextureViewShowsButNeverReleasesItsTexture) {
    std::vector<uint8_t> pixels(8 * 8 * 4, 200);
    rastTextureManager& textures = *rastRenderer::get()->getTextureManager();
    textures.addImage("view.png", {8, 8}, pixels.data());
    rastTexture* texture = textures.getTexture("view.png");
    ASSERT_NE(texture, nullptr);
    {
        gui::TextureView view;
        view.setSize({16, 16});
        view.setTexture(texture);
        auto [direct, recorded] = bothRoads(view);
        EXPECT_EQ(direct, recorded);
        EXPECT_EQ(std::count_if(direct.begin(), direct.end(),
                                [](auto const& e) { return e.rfind("drawQuads", 0) == 0; }),
                  1);
    }
    EXPECT_EQ(textures.getReferenceCount(texture), 1) << "still the caller's";
    textures.releaseTexture(texture);
}
