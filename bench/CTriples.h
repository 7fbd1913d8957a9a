#pragma once

#include <vector>

#include "Statistics.h"

/// What triples come to. Times are microseconds per call.
struct TripleResult {
    Spread ratio;  ///< of bridge to floor
    double floorMicroseconds;
    double bridgeMicroseconds;
    int kept;
    int dropped;  ///< those whose two floors differed too much
};

/// Gathers triples: the floor, the bridge, and the floor again. The bridge's time goes over the mean of the two
/// floors'; a triple whose floors differ by more than a quarter is dropped, since the machine was busy with something
/// else.
class CTriples {
public:
    void Add(double floorBefore, double bridge, double floorAfter);

    [[nodiscard]] int CountKept() const noexcept { return static_cast<int>(m_ratios.size()); }
    [[nodiscard]] TripleResult GetResult() const;

private:
    std::vector<double> m_ratios;
    std::vector<double> m_floors;
    std::vector<double> m_bridges;
    int m_dropped = 0;
};
