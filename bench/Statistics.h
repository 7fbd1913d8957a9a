#pragma once

#include <vector>

/// What a number of measured values comes to; no number (NaN) where there were none.
struct Spread {
    double lowerQuartile;
    double median;
    double upperQuartile;
};

[[nodiscard]] Spread FindSpread(std::vector<double> values);
