#pragma once

#include <nlohmann/json.hpp>

#include <vector>

#include "Goals.h"
#include "SliceRunner.h"
#include "Workloads.h"

// What was measured, for readers and for programs. Times are microseconds.

void PrintWorkloadHeading();
void PrintWorkload(const Workload& workload, const SliceResult& result);
/// What MeasurePhases has measured.
void PrintPhases(const nlohmann::json& measured);
void PrintVerdicts(const std::vector<Verdict>& verdicts);

[[nodiscard]] nlohmann::json TellWorkload(const Workload& workload, const SliceResult& result);
[[nodiscard]] nlohmann::json TellVerdicts(const std::vector<Verdict>& verdicts);
