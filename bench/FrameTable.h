#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace vurel_bench {

// What one benchmark of bench_frame measures, as named in the tables.
struct FrameCase {
    std::string toolkit;   // "VUREL" or "Dear ImGui"
    std::string backend;   // "null" or "gl"
    std::string scenario;  // "idle", "one change", "mouse move", "relayout", "recorded"
    int controls = 0;
};

// The figures of one benchmark: CPU and wall time of a frame, and the
// counters it reported.
struct FrameResult {
    double cpuUs = 0;
    double wallUs = 0;
    std::map<std::string, double> counters;
};

// The console output of Google Benchmark, and a copy of every result kept
// for the tables printed at the end.
class FrameTableReporter : public benchmark::ConsoleReporter {
public:
    void addCase(std::string const& name, FrameCase const& frameCase) { cases_[name] = frameCase; }
    void ReportRuns(std::vector<Run> const& runs) override;
    // The markdown tables of docs/benchmarks.md, from what was run.
    void printTables() const;

private:
    FrameResult const* find_(std::string const& toolkit, std::string const& backend, std::string const& scenario,
                        int controls) const;
    void printVurelTable_() const;
    void printPeerTable_() const;
    void printShapes_() const;

    std::map<std::string, FrameCase> cases_;
    std::map<std::string, FrameResult> results_;
    std::set<std::string> medians_;
};

}  // namespace vurel_bench
