#pragma once

#include <string>

#include "HostData.h"

/// A sample of which anything that is left over by each metric is seen in Java's heap: 100,000 of the smallest objects
/// that there are, of 16 bytes each, take 1.6 MB.
inline constexpr int kGreatCount = 100'000;
/// What Java's heap may differ by from one collection to the next; it was seen to differ by less than 100,000 bytes. A
/// whole sample that is kept takes 12.4 MB.
inline constexpr int kHeapMargin = 1'000'000;

[[nodiscard]] inline SampleData MakeGreatSample() {
    SampleData sample;
    sample.metrics.assign(kGreatCount, {L"metric", MakeInt64(1)});
    return sample;
}
