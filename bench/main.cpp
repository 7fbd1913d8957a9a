// Measures what the bridge costs over code that does the same by hand; docs/performance.md explains it.

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "CInstallation.h"
#include "CMeasuredBridge.h"
#include "CStopwatch.h"
#include "Goals.h"
#include "MarkdownTables.h"
#include "Options.h"
#include "Phases.h"
#include "Report.h"
#include "SliceRunner.h"
#include "Workloads.h"

namespace {

constexpr double kWarmUpMicroseconds = 5e6;
constexpr double kLoopMicroseconds = 10e6;
constexpr SliceSettings kWhole{2, 75, 500};
constexpr SliceSettings kQuick{2, 1, 3};
constexpr int kStarts = 11;
constexpr int kQuickStarts = 1;

constexpr int kFailed = 1;
constexpr int kOverLimit = 3;

/// Java compiles what is called often while it runs: until it has, nothing is measured.
void WarmUp(CMeasuredBridge& bridge, const std::vector<Workload>& workloads) {
    const CStopwatch stopwatch;
    while (stopwatch.GetMicroseconds() < kWarmUpMicroseconds) {
        for (const Workload& workload : workloads) {
            const Variants variants = bridge.MakeVariants(workload);
            variants.floor();
            variants.bridge();
        }
    }
}

std::vector<Workload> Select(std::vector<Workload> workloads, const std::string& filter) {
    std::vector<Workload> selected;
    for (Workload& workload : workloads) {
        if (workload.name.find(filter) != std::string::npos) {
            selected.push_back(std::move(workload));
        }
    }
    if (selected.empty()) {
        throw std::runtime_error("no workload's name contains \"" + filter + "\"");
    }
    return selected;
}

/// One way alone, so that a profiler sees nothing else.
void Loop(CMeasuredBridge& bridge, const Workload& workload, const std::string& way) {
    const Variants variants = bridge.MakeVariants(workload);
    const std::function<void()>& call = way == "floor"  ? variants.floor
                                        : way == "walk" ? variants.walk
                                                        : variants.bridge;
    const CStopwatch stopwatch;
    long calls = 0;
    for (; stopwatch.GetMicroseconds() < kLoopMicroseconds; ++calls) {
        call();
    }
    std::printf("%s: %ld calls of %s\n", workload.name.c_str(), calls, way.c_str());
}

std::vector<MeasuredRatio> MeasureWorkloads(const Options& options, CMeasuredBridge& bridge,
                                            const std::vector<Workload>& workloads, nlohmann::json& results) {
    std::vector<MeasuredRatio> ratios;
    double server = 0;
    PrintWorkloadHeading();
    for (const Workload& workload : workloads) {
        const SliceResult result = MeasureSlices(bridge.MakeVariants(workload), options.isQuick ? kQuick : kWhole);
        const double ratio = result.triples.ratio.median;
        PrintWorkload(workload, result);
        results["workloads"].push_back(TellWorkload(workload, result));
        ratios.push_back({workload.name, ratio});
        if (workload.name == kServer) {
            server = ratio;
        } else if (workload.name == kManySessions && server > 0) {
            ratios.push_back({kScaling, ratio / server});
        }
    }
    bridge.CheckNoErrors();
    return ratios;
}

int Judge(const Options& options, const std::vector<MeasuredRatio>& ratios, nlohmann::json& results) {
    const std::vector<Verdict> verdicts = JudgeGoals(ratios);
    if (options.isQuick) {
        std::printf("\none slice of each says nothing of the goals\n");
        return 0;
    }
    PrintVerdicts(verdicts);
    results["goals"] = TellVerdicts(verdicts);
    if (!options.resultPath.empty()) {
        std::ofstream file(options.resultPath);
        file << results.dump(2) << '\n';
        if (!file) {
            throw std::runtime_error("the results cannot be written to " + options.resultPath);
        }
    }
    if (options.isMarkdown) {
        PrintMarkdownTables(results);
    }
    for (const Verdict& verdict : verdicts) {
        if (options.isStrict && verdict.IsOverLimit()) {
            return kOverLimit;
        }
    }
    return 0;
}

int RunBench(const Options& options) {
    const CInstallation installation;
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    // Never deleted: the library holds objects of it until the process has ended.
    CLeanHost& host = *new CLeanHost;
    CKitItems items;
    const std::vector<Workload> workloads = Select(MakeWorkloads(items, host), options.filter);
    CMeasuredBridge bridge(host, items);
    for (const Workload& workload : workloads) {
        bridge.CheckSameObjects(workload);
    }
    bridge.CheckNoErrors();
    std::printf("the floor and the bridge make the same Java objects of all %u workloads\n",
                static_cast<unsigned>(workloads.size()));
    if (!options.isQuick) {
        WarmUp(bridge, workloads);
    }
    if (!options.loop.empty()) {
        Loop(bridge, workloads.front(), options.loop);
        return 0;
    }
    nlohmann::json results;
    std::vector<MeasuredRatio> ratios = MeasureWorkloads(options, bridge, workloads, results);
    if (options.filter.empty()) {
        const nlohmann::json phases = MeasurePhases(options.isQuick ? kQuickStarts : kStarts);
        PrintPhases(phases);
        results.update(phases);
        ratios.push_back({kStartUp, phases["start"]["ratio"]});
    }
    return Judge(options, ratios, results);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    try {
        int exitCode = 0;
        const std::optional<Options> options = ReadOptions(argumentCount, arguments, exitCode);
        if (!options) {
            return exitCode;
        }
        if (options->phase.empty()) {
            return RunBench(*options);
        }
        RunPhase(options->phase);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "telvar-bench: %s\n", error.what());
        return kFailed;
    }
}
