#include "Goals.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Workloads.h"

namespace {

constexpr Goal kGoals[] = {
    {kEmpty, 1.35, 1.50, 0},
    {kSmall, 1.35, 1.55, 0},
    {kServer, 1.40, 1.60, 1.30},
    {kLarge, 1.45, 1.60, 0},
    // Both are over their floors, so this is how the time per metric grows with the number of sessions.
    {kScaling, 1.25, 1.25, 0},
    {kStartUp, 1.05, 1.05, 0},
};

}  // namespace

const char* Verdict::Tell() const noexcept {
    if (std::isnan(ratio)) {
        return "not measured";
    }
    if (IsOverLimit()) {
        return "OVER THE LIMIT";
    }
    if (ratio > goal.reach) {
        return "missed";
    }
    return goal.nextReach > 0 && ratio <= goal.nextReach ? "met, the next one too" : "met";
}

std::vector<Verdict> JudgeGoals(const std::vector<MeasuredRatio>& measured) {
    std::vector<Verdict> verdicts;
    for (const Goal& goal : kGoals) {
        const auto found = std::find_if(measured.begin(), measured.end(),
                                        [&](const MeasuredRatio& ratio) { return ratio.subject == goal.subject; });
        verdicts.push_back({goal, found == measured.end() ? std::numeric_limits<double>::quiet_NaN() : found->ratio});
    }
    return verdicts;
}
