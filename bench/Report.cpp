#include "Report.h"

#include <cstdio>
#include <string>

namespace {

/// The time of each of the workload's metrics, for those that have many.
std::string TellPerMetric(const Workload& workload, double microseconds) {
    if (workload.metrics == 0) {
        return "";
    }
    char text[32];
    static_cast<void>(std::snprintf(text, sizeof text, "%.3f", microseconds / workload.metrics));
    return text;
}

}  // namespace

void PrintWorkloadHeading() {
    std::printf("%-16s %10s %10s %10s %10s  %-21s %s\n", "microseconds", "floor", "bridge", "walk", "per metric",
                "ratio (quartiles)", "triples kept, dropped");
}

void PrintWorkload(const Workload& workload, const SliceResult& result) {
    const TripleResult& triples = result.triples;
    std::printf("%-16s %10.1f %10.1f %10.1f %10s  %6.3f (%.3f-%.3f)  %d, %d\n", workload.name.c_str(),
                triples.floorMicroseconds, triples.bridgeMicroseconds, result.walkMicroseconds,
                TellPerMetric(workload, triples.bridgeMicroseconds).c_str(), triples.ratio.median,
                triples.ratio.lowerQuartile, triples.ratio.upperQuartile, triples.kept, triples.dropped);
}

void PrintPhases(const nlohmann::json& measured) {
    std::printf("\nonce in a process, microseconds\n");
    for (const auto& [name, microseconds] : measured.at("phases").items()) {
        std::printf("  %-28s %10.1f\n", name.c_str(), microseconds.get<double>());
    }
    const nlohmann::json& start = measured.at("start");
    std::printf("  bridge-start over floor-start %.3f (%.3f-%.3f), %d kept, %d dropped\n", start["ratio"].get<double>(),
                start["ratioLowerQuartile"].get<double>(), start["ratioUpperQuartile"].get<double>(),
                start["kept"].get<int>(), start["dropped"].get<int>());
}

void PrintVerdicts(const std::vector<Verdict>& verdicts) {
    std::printf("\n%-26s %7s %7s %7s\n", "bridge over floor", "ratio", "goal", "limit");
    for (const Verdict& verdict : verdicts) {
        std::printf("%-26s %7.3f %7.2f %7.2f  %s\n", verdict.goal.subject, verdict.ratio, verdict.goal.reach,
                    verdict.goal.limit, verdict.Tell());
    }
}

nlohmann::json TellWorkload(const Workload& workload, const SliceResult& result) {
    const TripleResult& triples = result.triples;
    return {{"name", workload.name},
            {"content", workload.content},
            {"metrics", workload.metrics},
            {"floor", triples.floorMicroseconds},
            {"bridge", triples.bridgeMicroseconds},
            {"walk", result.walkMicroseconds},
            {"ratio", triples.ratio.median},
            {"ratioLowerQuartile", triples.ratio.lowerQuartile},
            {"ratioUpperQuartile", triples.ratio.upperQuartile},
            {"kept", triples.kept},
            {"dropped", triples.dropped}};
}

nlohmann::json TellVerdicts(const std::vector<Verdict>& verdicts) {
    auto told = nlohmann::json::array();
    for (const Verdict& verdict : verdicts) {
        told.push_back({{"subject", verdict.goal.subject},
                        {"ratio", verdict.ratio},
                        {"goal", verdict.goal.reach},
                        {"limit", verdict.goal.limit},
                        {"verdict", verdict.Tell()}});
    }
    return told;
}
