#pragma once

#include <windows.h>

#include "CHresultException.h"

/// The calling thread's last error as an HRESULT: a code above 0 becomes 0x80070000 with its low 16 bits, 0 or a value
/// that is negative already stays as it is. Call it on the very next line after the failing call.
[[nodiscard]] HRESULT LastErrorResult() noexcept;

/// Throws `result` as a CHresultException.
[[noreturn]] void ThrowResult(HRESULT result);

/// Throws LastErrorResult() as a CHresultException. Call it on the very next line after the failing call.
[[noreturn]] void ThrowLastError();
