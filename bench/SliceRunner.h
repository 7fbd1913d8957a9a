#pragma once

#include <functional>

#include "CTriples.h"

// Two ways of doing the same, compared on a machine whose speed changes all the time. Benchmark libraries measure one
// function to its end and then the next one, so a machine that slowed down in between shows as a difference of the
// two; here they take turns within a few milliseconds, and only what lies between two equal slices of the one counts.

struct Variants {
    std::function<void()> floor;   ///< what the other one is measured by
    std::function<void()> bridge;  ///< what is measured
    std::function<void()> walk;    ///< a part that both have in common, measured on the way
};

struct SliceSettings {
    double sliceMilliseconds;  ///< a slice is as many calls as fit, and at least one
    int wantedTriples;         ///< as many are gathered
    int mostTriples;           ///< and no more are tried
};

struct SliceResult {
    TripleResult triples;
    double walkMicroseconds;  ///< per call
};

/// Slices of the floor, the bridge, the floor, and the walk, over and over.
[[nodiscard]] SliceResult MeasureSlices(const Variants& variants, const SliceSettings& settings);
