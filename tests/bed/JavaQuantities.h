#pragma once

#include <vector>

#include "CAccounts.h"
#include "JavaWitness.h"

/// What this process's Java machine holds, as it tells itself; the heap in use, in bytes and when what nobody refers to
/// has been collected, may grow by less than `heapMargin`.
[[nodiscard]] inline std::vector<Quantity> MakeJavaQuantities(long long heapMargin) {
    return {
        {"global references", [] { return CountJavaGlobalReferences(); }},
        {"Java threads", [] { return CountJavaThreads(); }},
        {"bytes of Java heap", [] { return CountJavaHeap(); }, heapMargin},
    };
}
