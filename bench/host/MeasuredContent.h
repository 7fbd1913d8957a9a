#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "HostData.h"

// What there is in the measured items, of whichever host's objects they consist.

/// How much there is in a sample.
struct SampleSize {
    int metrics = 0;   ///< of the machine
    int sessions = 0;  ///< and in each of these:
    int sessionMetrics = 0;
    int properties = 0;
    int applications = 0;
    int applicationMetrics = 0;

    [[nodiscard]] int CountMetrics() const noexcept {
        return metrics + sessions * (sessionMetrics + applications * applicationMetrics);
    }
};

inline constexpr DATE kMeasuredTime = 45351.5;

/// `first` sets apart what stands side by side, so that no two nodes are alike.
[[nodiscard]] std::vector<MetricData> MakeMetrics(int count, int first);

/// The texts that come with extended data.
[[nodiscard]] std::vector<PropertyData> MakeMetaData();

[[nodiscard]] std::wstring NameApplication(int number);
[[nodiscard]] std::wstring NameExtendedMetric(int number);

/// Who is logged on in session `id`.
[[nodiscard]] SessionData MakeMeasuredSession(LONG id, int properties);
