#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "AllocationCounter.h"
#include "RecordingRenderer.h"
#include "Skin/Bkg.h"
#include "Skin/FocusRect.h"
#include "Skin/Image.h"
#include "rast/Texture.h"
#include "rast/backends/null/NullBackend.h"

using namespace gui;

namespace {

// The three primitives of one skin, rebuilt and drawn on both roads each frame.
struct Primitives {
    Primitives() {
        Bkg::Info info;
        info.file = "frame";
        info.insets = Insets(2, 2, 2, 2);
        info.colors = orm::vector<osg::Vec4f>(Bkg::CellCount, osg::Vec4f(1, 1, 1, 1));
        bkg->set(info);
        image.setTexture("frame", osg::Recti(0, 0, 4, 4));
        image.setTileHorizontally(true);
        image.setTileVertically(true);
        focus.setColor({1, 1, 1, 1});
    }

    // The size alternates between frames, so every stage has work to do.
    void frame(int n, GraphicCommands& commands) {
        osg::Vec2i const size(n % 2 ? 60 : 61, 40);
        bkg->setSize(size);
        bkg->redraw();
        image.setDirty(true);
        image.redraw(size);
        focus.setBounds(osg::Recti(0, 0, size.x, size.y));
        focus.redraw();

        bkg->doRedraw();
        image.doRedraw();
        focus.doRedraw();
        bkg->draw();
        image.draw();
        focus.draw();

        bkg->make(&commands);
        image.make(&commands);
        focus.make(&commands);
        for (GraphicCommand* c : commands.getCommands())
            c->doRedraw();
        for (GraphicCommand* c : commands.getCommands())
            c->draw();
        for (auto it = commands.getCommands().rbegin(); it != commands.getCommands().rend(); ++it)
            (*it)->release();
        commands.clear();
    }

    std::unique_ptr<Bkg> bkg = std::make_unique<Bkg>();
    Image image;
    FocusRect focus;
};

}  // namespace

TEST(PrimitivesFrame, SteadyFramesAllocateNothing) {
    rastRenderer::create(std::make_unique<rastNullBackend>());
    std::vector<unsigned char> pixels(16 * 16 * 4, 0x80);
    rastRenderer::get()->getTextureManager()->addImage("frame", {16, 16}, pixels.data());
    {
        Primitives p;
        GraphicCommands commands;
        for (int n = 0; n < 2; ++n)
            p.frame(n, commands);
        ASSERT_GT(p.image.getQuads().getQuadCount(), 100);

        vurel_test::AllocationCounter counter;
        for (int n = 2; n < 6; ++n)
            p.frame(n, commands);
        EXPECT_EQ(counter.count(), 0u);
    }
    rastRenderer::destroy();
}
