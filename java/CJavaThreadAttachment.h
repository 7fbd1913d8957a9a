#pragma once

#include <memory>

#include "CJavaVM.h"

/// Keeps the thread that made it attached to the machine: detaches when it is dropped, which must happen on that
/// thread. It does not own the CJavaVM, which must outlive it. Empty where there is nothing to undo.
using CJavaThreadAttachment = std::shared_ptr<CJavaVM>;

/// Attaches the calling thread. Empty when the thread is attached already (whoever did that detaches it) or cannot be
/// attached (then it has no environment, and the first Java call says so). Throws std::bad_alloc, detached.
[[nodiscard]] CJavaThreadAttachment MakeThreadAttachment(CJavaVM& vm);
