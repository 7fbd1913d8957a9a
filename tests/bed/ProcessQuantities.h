#pragma once

#include <vector>

#include "CAccounts.h"

/// What this process holds of the system, as the system counts it, and what the program itself took of it, as
/// CResourceLedger counts it.
[[nodiscard]] std::vector<Quantity> MakeProcessQuantities();

/// The memory that the process takes up, in bytes; it may grow by less than `margin`.
[[nodiscard]] Quantity MakeMemoryQuantity(long long margin);

/// Kernel objects that the process has open, of every kind.
[[nodiscard]] long CountHandles();

/// Threads of the process, whoever started them.
[[nodiscard]] long CountThreads();
