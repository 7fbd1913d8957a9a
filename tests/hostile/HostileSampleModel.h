#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "HostileSampleTree.h"

/// Java's calls and the log's entries, in the order in which they happen: `BaseSample.putMetric(BaseMetric@instance)`,
/// `error: "Failed ..."`, `verbose: "Adding ..."`.
using Events = std::vector<std::string>;

/// A function of JNI's that fails: its `nth` call (0: none) and the `times` - 1 after it, for ever where that is -1.
struct OrderedFault {
    const char* function = "NewString";
    long nth = 0;
    long times = 1;
    bool hasException = true;
};

/// As events show a text: quoted and in ASCII.
[[nodiscard]] std::string QuoteForEvent(const std::wstring& text);

/// What a conversion comes to, told from the description of the host's data alone.
struct Prediction {
    bool hasObject = false;
    Events events{};
};

[[nodiscard]] Prediction PredictSample(const HostileTree& tree, bool hasSessions, const OrderedFault& fault);
[[nodiscard]] Prediction PredictExtendedSample(const HostileTree& tree, bool hasMetrics, const OrderedFault& fault);
/// Of one metric.
[[nodiscard]] Prediction PredictMetric(const std::wstring& name, const VARIANT& value, const OrderedFault& fault);
/// Of a hash map.
[[nodiscard]] Prediction PredictMap(const HostileBox& box, const OrderedFault& fault);
