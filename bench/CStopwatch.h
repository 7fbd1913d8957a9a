#pragma once

#include <windows.h>

/// Microseconds since it was made.
class CStopwatch {
public:
    CStopwatch() noexcept { QueryPerformanceCounter(&m_start); }

    [[nodiscard]] double GetMicroseconds() const noexcept {
        LARGE_INTEGER now;
        LARGE_INTEGER frequency;
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&frequency);
        return static_cast<double>(now.QuadPart - m_start.QuadPart) * kMicrosecondsPerSecond /
               static_cast<double>(frequency.QuadPart);
    }

private:
    static constexpr double kMicrosecondsPerSecond = 1e6;

    LARGE_INTEGER m_start;
};
