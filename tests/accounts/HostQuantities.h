#pragma once

#include <vector>

#include "CAccounts.h"
#include "CCallRecord.h"

/// What is alive of the host's objects, and how often it is referenced. The record has to live as long as the
/// quantities.
[[nodiscard]] inline std::vector<Quantity> MakeHostQuantities(const CCallRecord& record) {
    return {
        {"COM references", [&record] { return record.CountReferences(); }},
        {"COM objects", [&record] { return record.CountLiveObjects(); }},
    };
}
