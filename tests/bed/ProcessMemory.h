#pragma once

#include <windows.h>

#include <psapi.h>

#include <cstddef>
#include <stdexcept>

/// The memory that this process alone takes up, in bytes. Wine does not tell it and is asked for what is in use of it
/// at the moment instead, which is the same where nothing is swapped out.
[[nodiscard]] inline std::size_t CountPrivateMemory() {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                              sizeof counters)) {
        throw std::runtime_error("the system does not tell this process's memory");
    }
    return counters.PrivateUsage != 0 ? counters.PrivateUsage : counters.WorkingSetSize;
}
