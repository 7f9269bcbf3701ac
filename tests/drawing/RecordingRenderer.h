#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "Skin/GraphicCommands.h"
#include "rast/Renderer.h"
#include "rast/backends/recording/RecordingBackend.h"

namespace vurel_test {

// A renderer over the recording backend for the length of one test.
class RecordingRendererTest : public ::testing::Test {
protected:
    void SetUp() override { renderer_ = rastRenderer::create(std::make_unique<rastRecordingBackend>()); }
    void TearDown() override { rastRenderer::destroy(); }

    rastRecordingBackend& backend() { return static_cast<rastRecordingBackend&>(renderer_->getBackend()); }

    rastRenderer* renderer_ = nullptr;
};

// Replays a recording the way an application does: parse functions, every
// doRedraw, every draw, then everything back to its pool. Answers the events
// of the draw pass alone.
inline std::vector<std::string> replayDrawEvents(rastRecordingBackend& backend, gui::GraphicCommands& commands) {
    for (gui::GraphicCommandParse* command : commands.getParseCommands())
        command->draw();
    for (gui::GraphicCommand* command : commands.getCommands())
        command->doRedraw();
    backend.clearEvents();
    for (gui::GraphicCommand* command : commands.getCommands())
        command->draw();
    std::vector<std::string> events = backend.getEvents();
    for (gui::GraphicCommand* command : commands.getCommands())
        command->release();
    for (gui::GraphicCommandParse* command : commands.getParseCommands())
        command->release();
    commands.clear();
    return events;
}

// Geometry names differ between two objects that draw the same thing.
inline std::vector<std::string> withoutGeometryIds(std::vector<std::string> events) {
    static std::regex const id("geo=[0-9]+");
    for (std::string& e : events)
        e = std::regex_replace(e, id, "geo=#");
    return events;
}

// Instances of a command type taken and not yet released.
template <class T>
size_t busyCount() {
    auto const& pool = T::pool();
    return pool.all.size() - pool.free.size();
}

}  // namespace vurel_test
