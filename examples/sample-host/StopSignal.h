#pragma once

#include <windows.h>

#include <memory>

#include "Handles.h"

/// An event that is set when the standard input ends or has a line "stop".
std::shared_ptr<void> WatchStandardInput();

/// @return whether the signal came before the time was over
inline bool WaitForStop(HANDLE stopped, double seconds) {
    constexpr double kMillisecondsPerSecond = 1000;
    const DWORD timeoutMs = seconds > 0 ? static_cast<DWORD>(seconds * kMillisecondsPerSecond) : 0;
    return WaitForSingleObject(stopped, timeoutMs) == WAIT_OBJECT_0;
}
