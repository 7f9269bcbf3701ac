#include "GuiFixture.h"

#include "UpdateManager.h"
#include "rast/backends/null/NullBackend.h"

namespace vurel_test {

std::string dataPath(std::string const& name) { return std::string(VUREL_TEST_DATA_DIR) + "/" + name; }

void GuiFixture::SetUp() {
    app = std::make_unique<TestApplication>();
    if (recordingBackend)
        rastRenderer::create(std::make_unique<rastRecordingBackend>());
    else
        rastRenderer::create(std::make_unique<rastNullBackend>());
    gui::GUI::create(dataPath(skinFile), viewport, scale);
}

void GuiFixture::TearDown() {
    gui::GUI::destroy();
    rastRenderer::destroy();
    app.reset();
}

void GuiFixture::frame() {
    gui().processMessages();
    gui::UpdateManager::get()->updateTargets();
    gui().doRedraw();
    gui().draw();
}

rastRecordingBackend& GuiFixture::backend() {
    return static_cast<rastRecordingBackend&>(rastRenderer::get()->getBackend());
}

}  // namespace vurel_test
