#include "SliceRunner.h"

#include <algorithm>

#include "CStopwatch.h"

namespace {

constexpr double kMicrosecondsPerMillisecond = 1e3;

/// One variant, and how many of its calls fill a slice. Each has a number of its own: were the slower one's slices
/// longer, it would be interrupted more often.
class CSlicer {
public:
    CSlicer(const std::function<void()>& call, double sliceMicroseconds) : m_call(call) {
        double perCall = Measure();
        while (perCall * m_calls < sliceMicroseconds / 2) {
            m_calls *= 2;
            perCall = Measure();
        }
        m_calls = std::max(1, static_cast<int>(sliceMicroseconds / perCall));
    }

    /// Microseconds per call.
    [[nodiscard]] double Measure() const {
        const CStopwatch stopwatch;
        for (int i = 0; i < m_calls; ++i) {
            m_call();
        }
        return stopwatch.GetMicroseconds() / m_calls;
    }

private:
    const std::function<void()>& m_call;
    int m_calls = 1;
};

}  // namespace

SliceResult MeasureSlices(const Variants& variants, const SliceSettings& settings) {
    const double microseconds = settings.sliceMilliseconds * kMicrosecondsPerMillisecond;
    const CSlicer floor(variants.floor, microseconds);
    const CSlicer bridge(variants.bridge, microseconds);
    const CSlicer walk(variants.walk, microseconds);
    CTriples triples;
    std::vector<double> walks;
    for (int i = 0; i < settings.mostTriples && triples.CountKept() < settings.wantedTriples; ++i) {
        const double before = floor.Measure();
        const double between = bridge.Measure();
        const double after = floor.Measure();
        triples.Add(before, between, after);
        walks.push_back(walk.Measure());
    }
    return {triples.GetResult(), FindSpread(walks).median};
}
