#include "CTriples.h"

#include <algorithm>

namespace {

constexpr double kMostDifference = 0.25;

}  // namespace

void CTriples::Add(double floorBefore, double bridge, double floorAfter) {
    const double lower = std::min(floorBefore, floorAfter);
    if (std::max(floorBefore, floorAfter) > lower * (1 + kMostDifference)) {
        ++m_dropped;
        return;
    }
    const double floor = (floorBefore + floorAfter) / 2;
    m_ratios.push_back(bridge / floor);
    m_floors.push_back(floor);
    m_bridges.push_back(bridge);
}

TripleResult CTriples::GetResult() const {
    return {FindSpread(m_ratios), FindSpread(m_floors).median, FindSpread(m_bridges).median, CountKept(), m_dropped};
}
