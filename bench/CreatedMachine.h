#pragma once

#include <jni.h>

/// The Java machine that the library has started in this process. Throws std::runtime_error when there is none.
[[nodiscard]] JavaVM& FindCreatedMachine();
