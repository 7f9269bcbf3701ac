#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace benchmark {
class State;
}

namespace vurel_bench {

// Per-frame figures of one benchmark run: the wall time of the logic and
// draw parts of a frame (and of waiting for the GPU), the heap allocations
// and the draw calls, averaged over the frames measured.
class FrameMeter {
public:
    using Clock = std::chrono::steady_clock;

    // Starts counting; allocations before this are not the frames'.
    void start();
    // Marks in the order a frame passes them.
    void logicBegins() { logic_ = Clock::now(); }
    void drawBegins() { draw_ = Clock::now(); }
    // On the recorded road: the recording is made, the replay begins.
    void replayBegins() {
        replay_ = Clock::now();
        recorded_ = true;
    }
    void finishBegins() { finish_ = Clock::now(); }
    void frameEnds(int drawCalls);

    // Counters per frame: logic_us, draw_us (with make_us of it on the
    // recorded road), finish_us, allocs, drawCalls, widgets and
    // draw_ns_per_widget.
    void report(benchmark::State& state, int widgets) const;

private:
    Clock::time_point logic_, draw_, replay_, finish_;
    double logicUs_ = 0, drawUs_ = 0, makeUs_ = 0, finishUs_ = 0;
    bool recorded_ = false;
    int64_t drawCalls_ = 0;
    int64_t frames_ = 0;
    size_t allocationsAtStart_ = 0;
    size_t allocationsAtEnd_ = 0;
};

}  // namespace vurel_bench
