#include "Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace {

/// The value that `part` of the sorted values lie below; between two, so much of the way from one to the other.
double FindQuantile(const std::vector<double>& sorted, double part) {
    if (sorted.empty()) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double position = part * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const std::size_t above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (sorted[above] - sorted[below]) * (position - std::floor(position));
}

}  // namespace

Spread FindSpread(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return {FindQuantile(values, 0.25), FindQuantile(values, 0.5), FindQuantile(values, 0.75)};
}
