#pragma once

#include <string>

/// Runs this program once more, for the same product, to measure `phase` where nothing has happened yet, and returns
/// what it prints. Throws std::runtime_error for one that fails or does not end.
[[nodiscard]] std::string RunPhaseInChild(const std::string& phase);
