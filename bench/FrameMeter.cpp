#include "FrameMeter.h"

#include <benchmark/benchmark.h>

#include "HeapCounter.h"

namespace vurel_bench {

namespace {

double microseconds(FrameMeter::Clock::duration d) { return std::chrono::duration<double, std::micro>(d).count(); }

}  // namespace

void FrameMeter::start() {
    *this = FrameMeter();
    allocationsAtStart_ = heapAllocations();
}

void FrameMeter::frameEnds(int drawCalls) {
    Clock::time_point const end = Clock::now();
    logicUs_ += microseconds(draw_ - logic_);
    drawUs_ += microseconds(finish_ - draw_);
    if (recorded_)
        makeUs_ += microseconds(replay_ - draw_);
    finishUs_ += microseconds(end - finish_);
    drawCalls_ += drawCalls;
    ++frames_;
    allocationsAtEnd_ = heapAllocations();
}

void FrameMeter::report(benchmark::State& state, int widgets) const {
    double const n = frames_ > 0 ? double(frames_) : 1.0;
    double const allocations = frames_ > 0 ? double(allocationsAtEnd_ - allocationsAtStart_) : 0.0;
    state.counters["logic_us"] = logicUs_ / n;
    state.counters["draw_us"] = drawUs_ / n;
    if (recorded_)
        state.counters["make_us"] = makeUs_ / n;
    state.counters["finish_us"] = finishUs_ / n;
    state.counters["allocs"] = allocations / n;
    state.counters["drawCalls"] = double(drawCalls_) / n;
    state.counters["widgets"] = widgets;
    state.counters["draw_ns_per_widget"] = widgets > 0 ? drawUs_ / n * 1000.0 / widgets : 0.0;
}

}  // namespace vurel_bench
