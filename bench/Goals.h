#pragma once

#include <string>
#include <vector>

/// How near to the floor the bridge is to come.
struct Goal {
    const char* subject;
    double reach;      ///< what is aimed at
    double limit;      ///< what is never to be passed
    double nextReach;  ///< what is aimed at when that is reached; 0 when that is all
};

/// A goal with what was measured; no number (NaN) where nothing was.
struct Verdict {
    Goal goal;
    double ratio;

    [[nodiscard]] const char* Tell() const noexcept;
    [[nodiscard]] bool IsOverLimit() const noexcept { return ratio > goal.limit; }
};

/// A workload's name, or what else was measured, with its ratio.
struct MeasuredRatio {
    std::string subject;
    double ratio;
};

// Beside the workloads' names.
inline constexpr char kScaling[] = "800 sessions over server";
inline constexpr char kStartUp[] = "start of Java";

[[nodiscard]] std::vector<Verdict> JudgeGoals(const std::vector<MeasuredRatio>& measured);
