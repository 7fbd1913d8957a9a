#pragma once

#include "IFakeRuntime.h"

/// The control surface of the fake Java runtime, whose library is loaded at the first call and for the length of the
/// program, so that it outlives every machine. To be called before a test takes its first account.
[[nodiscard]] IFakeRuntime& LoadedFakeRuntime();
