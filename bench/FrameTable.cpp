#include "FrameTable.h"

#include <cstdio>

namespace vurel_bench {

namespace {

constexpr int kSizes[] = {100, 1000, 10000};
char const* const kVurelScenarios[] = {"idle", "one change", "mouse move", "relayout", "recorded"};
char const* const kPeerScenarios[] = {"idle", "one change", "mouse move", "relayout"};

// A figure with `digits` decimals, or a dash when it was not measured.
std::string figure(double const* value, int digits) {
    if (!value)
        return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", digits, *value);
    return text;
}

double const* counterOf(FrameResult const* result, char const* name) {
    if (!result)
        return nullptr;
    auto it = result->counters.find(name);
    return it == result->counters.end() ? nullptr : &it->second;
}

double const* cpuOf(FrameResult const* result) { return result ? &result->cpuUs : nullptr; }

double const* wallOf(FrameResult const* result) { return result ? &result->wallUs : nullptr; }

std::string ratio(double const* a, double const* b) {
    if (!a || !b || *b <= 0)
        return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.1fx", *a / *b);
    return text;
}

// One row of the growth table: a figure at 100, 1,000 and 10,000 controls.
void printShapeRow(char const* label, double const* const values[3], int digits) {
    std::printf("| %s | %s | %s | %s | %s |\n", label, figure(values[0], digits).c_str(),
                figure(values[1], digits).c_str(), figure(values[2], digits).c_str(),
                ratio(values[2], values[0]).c_str());
}

}  // namespace

void FrameTableReporter::ReportRuns(std::vector<Run> const& runs) {
    ConsoleReporter::ReportRuns(runs);
    // With --benchmark_repetitions the tables take the median of the repetitions.
    for (Run const& run : runs) {
        bool const median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
        if (run.error_occurred || (run.run_type != Run::RT_Iteration && !median))
            continue;
        // The run's own name, without the aggregate's suffix.
        std::string const name = run.run_name.str();
        if (!median && medians_.count(name))
            continue;
        FrameResult result;
        double const toMicro = 1e6 / benchmark::GetTimeUnitMultiplier(run.time_unit);
        result.cpuUs = run.GetAdjustedCPUTime() * toMicro;
        result.wallUs = run.GetAdjustedRealTime() * toMicro;
        for (auto const& [counterName, counter] : run.counters)
            result.counters[counterName] = counter.value;
        results_[name] = result;
        if (median)
            medians_.insert(name);
    }
}

FrameResult const* FrameTableReporter::find_(std::string const& toolkit, std::string const& backend,
                                             std::string const& scenario, int controls) const {
    for (auto const& [name, c] : cases_)
        if (c.toolkit == toolkit && c.backend == backend && c.scenario == scenario && c.controls == controls) {
            auto it = results_.find(name);
            return it == results_.end() ? nullptr : &it->second;
        }
    return nullptr;
}

void FrameTableReporter::printVurelTable_() const {
    std::printf("\n#### VUREL: per frame\n\n");
    std::printf("| windows | frame | controls | widgets | null: CPU µs | logic µs | draw µs | allocs | draw calls "
                "| GL: CPU µs | wall µs | draw calls |\n");
    std::printf("|---|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (char const* toolkit : {"VUREL", "VUREL cached"})
        for (char const* scenario : kVurelScenarios)
            for (int size : kSizes) {
                FrameResult const* n = find_(toolkit, "null", scenario, size);
                FrameResult const* g = find_(toolkit, "gl", scenario, size);
                if (!n && !g)
                    continue;
                std::printf("| %s | %s | %d | %s | %s | %s | %s | %s | %s | %s | %s | %s |\n",
                            std::string(toolkit) == "VUREL" ? "direct" : "cached", scenario, size,
                            figure(counterOf(n ? n : g, "widgets"), 0).c_str(), figure(cpuOf(n), 1).c_str(),
                            figure(counterOf(n, "logic_us"), 1).c_str(), figure(counterOf(n, "draw_us"), 1).c_str(),
                            figure(counterOf(n, "allocs"), 1).c_str(), figure(counterOf(n, "drawCalls"), 0).c_str(),
                            figure(cpuOf(g), 0).c_str(), figure(wallOf(g), 0).c_str(),
                            figure(counterOf(g, "drawCalls"), 0).c_str());
            }
}

void FrameTableReporter::printPeerTable_() const {
    for (char const* backend : {"null", "gl"}) {
        std::printf("\n#### VUREL and Dear ImGui, %s backend: CPU µs per frame\n\n",
                    std::string(backend) == "gl" ? "OpenGL" : "null");
        std::printf("| frame | controls | VUREL direct | VUREL cached | Dear ImGui | ImGui / direct "
                    "| ImGui / cached | ImGui allocs | ImGui draw calls |\n");
        std::printf("|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");
        for (char const* scenario : kPeerScenarios)
            for (int size : kSizes) {
                FrameResult const* direct = find_("VUREL", backend, scenario, size);
                FrameResult const* cached = find_("VUREL cached", backend, scenario, size);
                FrameResult const* imgui = find_("Dear ImGui", backend, scenario, size);
                if (!direct && !cached && !imgui)
                    continue;
                int const digits = std::string(backend) == "gl" ? 0 : 1;
                std::printf("| %s | %d | %s | %s | %s | %s | %s | %s | %s |\n", scenario, size,
                            figure(cpuOf(direct), digits).c_str(), figure(cpuOf(cached), digits).c_str(),
                            figure(cpuOf(imgui), digits).c_str(), ratio(cpuOf(imgui), cpuOf(direct)).c_str(),
                            ratio(cpuOf(imgui), cpuOf(cached)).c_str(), figure(counterOf(imgui, "allocs"), 1).c_str(),
                            figure(counterOf(imgui, "drawCalls"), 0).c_str());
            }
    }
}

void FrameTableReporter::printShapes_() const {
    std::printf("\n#### VUREL: how the cost grows with the controls\n\n");
    std::printf("| part | 100 | 1,000 | 10,000 | 10,000 / 100 |\n|---|---:|---:|---:|---:|\n");
    struct Row {
        char const* label;
        char const* toolkit;
        char const* backend;
        char const* scenario;
        char const* counter;
        int digits;
    };
    Row const rows[] = {
        {"idle: logic µs", "VUREL", "null", "idle", "logic_us", 2},
        {"one change: logic µs", "VUREL", "null", "one change", "logic_us", 2},
        {"mouse move: logic µs", "VUREL", "null", "mouse move", "logic_us", 2},
        {"relayout: logic µs", "VUREL", "null", "relayout", "logic_us", 1},
        {"idle: draw ns per widget, null", "VUREL", "null", "idle", "draw_ns_per_widget", 0},
        {"recorded: make + replay ns per widget, null", "VUREL", "null", "recorded", "draw_ns_per_widget", 0},
        {"cached, idle: draw µs, null", "VUREL cached", "null", "idle", "draw_us", 1},
        {"cached, one change: logic µs, null", "VUREL cached", "null", "one change", "logic_us", 1},
        {"cached, mouse move: logic µs, null", "VUREL cached", "null", "mouse move", "logic_us", 1},
    };
    for (Row const& row : rows) {
        double const* values[3];
        for (int i = 0; i < 3; ++i)
            values[i] = counterOf(find_(row.toolkit, row.backend, row.scenario, kSizes[i]), row.counter);
        printShapeRow(row.label, values, row.digits);
    }
    // On OpenGL the draw part's wall time includes waiting for llvmpipe; the
    // drawing thread's own time per widget is the frame's CPU time less the logic.
    double glDraw[3];
    double const* glValues[3];
    for (int i = 0; i < 3; ++i) {
        FrameResult const* r = find_("VUREL", "gl", "idle", kSizes[i]);
        double const* logic = counterOf(r, "logic_us");
        double const* widgets = counterOf(r, "widgets");
        glValues[i] = nullptr;
        if (r && logic && widgets && *widgets > 0) {
            glDraw[i] = (r->cpuUs - *logic) * 1000.0 / *widgets;
            glValues[i] = &glDraw[i];
        }
    }
    printShapeRow("idle: draw CPU ns per widget, GL", glValues, 0);
}

void FrameTableReporter::printTables() const {
    std::printf("\nThe tables of docs/benchmarks.md, section Frames:\n");
    printVurelTable_();
    printPeerTable_();
    printShapes_();
    std::fflush(stdout);
}

}  // namespace vurel_bench
