#include "MarkdownTables.h"

#include <cstdio>
#include <string>

namespace {

constexpr double kMicrosecondsPerMillisecond = 1e3;

void PrintGoal(const nlohmann::json& goal) {
    std::printf("| %s | %.2f | %.2f | %.2f |\n", goal["subject"].get<std::string>().c_str(), goal["goal"].get<double>(),
                goal["limit"].get<double>(), goal["ratio"].get<double>());
}

void PrintWorkloadRow(const nlohmann::json& workload) {
    const double bridge = workload["bridge"];
    const int metrics = workload["metrics"];
    char perMetric[32] = "";
    if (metrics > 0) {
        static_cast<void>(std::snprintf(perMetric, sizeof perMetric, "%.2f", bridge / metrics));
    }
    std::printf("| %s | %s | %.1f | %.1f | %.1f | %s | %.2f |\n", workload["name"].get<std::string>().c_str(),
                workload["content"].get<std::string>().c_str(), workload["floor"].get<double>(), bridge,
                workload["walk"].get<double>(), perMetric, workload["ratio"].get<double>());
}

}  // namespace

void PrintMarkdownTables(const nlohmann::json& results) {
    std::printf("\n| | goal | limit | now |\n|---|--:|--:|--:|\n");
    for (const nlohmann::json& goal : results.at("goals")) {
        PrintGoal(goal);
    }
    std::printf("\n| workload | content | floor | bridge | walk | per metric | ratio |\n");
    std::printf("|---|---|--:|--:|--:|--:|--:|\n");
    for (const nlohmann::json& workload : results.at("workloads")) {
        PrintWorkloadRow(workload);
    }
    if (results.contains("phases")) {
        std::printf("\n| once in a process | ms |\n|---|--:|\n");
        for (const auto& [name, microseconds] : results.at("phases").items()) {
            std::printf("| %s | %.2f |\n", name.c_str(), microseconds.get<double>() / kMicrosecondsPerMillisecond);
        }
    }
}
