#pragma once

#include <string>

/// Whether nobody is told that this call failed: a call of a host's as its record names it, or a system function. All
/// other failures that take something away from an operation are in the host's log.
[[nodiscard]] bool IsKeptQuiet(const std::string& call);
