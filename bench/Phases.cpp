#include "Phases.h"

#include <windows.h>

#include <cstdio>
#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

#include "CTriples.h"
#include "ChildProcess.h"
#include "PhaseMeasurements.h"

namespace {

// The parts of a phase are told under these names.
constexpr char kTotal[] = "total";

struct Phase {
    const char* name;
    nlohmann::json (*measure)();
};
constexpr Phase kPhases[] = {
    {"floor-start", &MeasureFloorStart},
    {"bridge-start", &MeasureBridgeStart},
    {"library-load", &MeasureLibraryLoad},
    {"attach", &MeasureAttach},
};
constexpr const Phase& kFloorStart = kPhases[0];
constexpr const Phase& kBridgeStart = kPhases[1];
constexpr const Phase& kLibraryLoad = kPhases[2];
constexpr const Phase& kAttach = kPhases[3];

/// The times of each part of each phase, run after run.
using Times = std::map<std::string, std::vector<double>>;

/// Runs a phase and adds its parts' times. Returns its total, or 0.
double Run(const Phase& phase, Times& times) {
    const auto parts = nlohmann::json::parse(RunPhaseInChild(phase.name));
    for (const auto& [part, microseconds] : parts.items()) {
        times[std::string(phase.name) + ": " + part].push_back(microseconds);
    }
    return parts.value(kTotal, 0.0);
}

}  // namespace

void RunPhase(const std::string& name) {
    for (const Phase& phase : kPhases) {
        if (phase.name == name) {
            std::fputs(phase.measure().dump().c_str(), stdout);
            return;
        }
    }
    throw std::runtime_error("no such phase: " + name);
}

nlohmann::json MeasurePhases(int repetitions) {
    Times times;
    CTriples starts;
    for (int i = 0; i < repetitions; ++i) {
        const double before = Run(kFloorStart, times);
        const double bridge = Run(kBridgeStart, times);
        const double after = Run(kFloorStart, times);
        starts.Add(before, bridge, after);
        Run(kLibraryLoad, times);
    }
    // Ends threads that Java knows, which under Wine 8 must not come together with threads that Java starts by itself.
    SetEnvironmentVariableW(L"JAVA_TOOL_OPTIONS",
                            L"-XX:-UseDynamicNumberOfCompilerThreads -XX:-UseDynamicNumberOfGCThreads");
    Run(kAttach, times);
    SetEnvironmentVariableW(L"JAVA_TOOL_OPTIONS", nullptr);

    const TripleResult start = starts.GetResult();
    nlohmann::json result = {{"start",
                              {{"ratio", start.ratio.median},
                               {"ratioLowerQuartile", start.ratio.lowerQuartile},
                               {"ratioUpperQuartile", start.ratio.upperQuartile},
                               {"floor", start.floorMicroseconds},
                               {"bridge", start.bridgeMicroseconds},
                               {"kept", start.kept},
                               {"dropped", start.dropped}}}};
    for (const auto& [part, microseconds] : times) {
        result["phases"][part] = FindSpread(microseconds).median;
    }
    return result;
}
