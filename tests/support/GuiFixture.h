#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "GUI.h"
#include "TestApplication.h"
#include "rast/Renderer.h"
#include "rast/backends/recording/RecordingBackend.h"

namespace vurel_test {

// Path of a file under tests/data.
std::string dataPath(std::string const& name);

// A test application, a renderer over the recording backend and a gui::GUI
// made from the minimal skin script (or `skinFile`). Torn down in the order
// an application would use.
class GuiFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Runs one frame as an application's loop does.
    void frame();

    rastRecordingBackend& backend();
    gui::GUI& gui() { return *gui::GUI::get(); }

    std::unique_ptr<TestApplication> app;
    float scale = 1.0f;
    // The null backend, for tests that count allocations or time.
    bool recordingBackend = true;
    osg::Vec2i viewport{800, 600};
    // The skin script under tests/data; a subclass may name another before SetUp.
    std::string skinFile = "minimal_skin.lua";
};

}  // namespace vurel_test
