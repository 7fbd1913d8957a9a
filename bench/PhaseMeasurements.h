#pragma once

#include <nlohmann/json.hpp>

// Each measures what it names in a process in which nothing else has happened yet, and tells the microseconds of its
// parts. Throws std::runtime_error.

/// Java started and bound by hand, with the library's options and its binding table; then one sample.
[[nodiscard]] nlohmann::json MeasureFloorStart();
/// The library's first call, which starts Java; then one sample.
[[nodiscard]] nlohmann::json MeasureBridgeStart();
/// The library as a file, loaded.
[[nodiscard]] nlohmann::json MeasureLibraryLoad();
/// A thread's first call, over its second one, and over attaching a thread by hand; Java runs.
[[nodiscard]] nlohmann::json MeasureAttach();
