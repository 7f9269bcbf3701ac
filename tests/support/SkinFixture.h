#pragma once

#include <cstdint>
#include <vector>

#include "GuiFixture.h"
#include "rast/Font.h"
#include "rast/Texture.h"

namespace vurel_test {

// A GUI over the recording backend with tests/data/test_skin.lua, the
// pictures it names and its fixed-width font.
class SkinFixture : public GuiFixture {
protected:
    void SetUp() override {
        skinFile = "test_skin.lua";
        GuiFixture::SetUp();
        rastRenderer* renderer = rastRenderer::get();
        renderer->getFontManager()->registerFixedWidthFont("fixed", 8, 16, 12, -4);
        std::vector<uint8_t> const white(16 * 8 * 4, 255);
        renderer->getTextureManager()->addImage("skin/frame", {8, 8}, white.data());
        renderer->getTextureManager()->addImage("skin/icon", {16, 8}, white.data());
    }

    // The logic and render stages of a frame, without drawing.
    void update() {
        gui().processMessages();
        gui().doRedraw();
    }
};

}  // namespace vurel_test
