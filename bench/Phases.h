#pragma once

#include <nlohmann/json.hpp>

#include <string>

// What happens once in a process, measured in processes of its own.

/// Measures `phase` in this process, whose only purpose it is, and prints the microseconds as JSON. Throws
/// std::runtime_error.
void RunPhase(const std::string& phase);

/// Has every phase measured, so many times, the starts of Java in turn. Times are medians, in microseconds:
///   "start"   ratio and times of the library's first call, over Java started and bound by hand
///   "phases"  a time for each: the parts of a start, the first sample after it, the library's load, a thread's attach
[[nodiscard]] nlohmann::json MeasurePhases(int repetitions);
