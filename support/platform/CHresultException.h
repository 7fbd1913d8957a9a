#pragma once

#include <windows.h>

/// Thrown where a resource is exhausted (memory, a lock that cannot be made); carries the HRESULT that says which.
/// Nothing else in the library is reported by exception. Copyable, never throws itself; usable on any thread.
class CHresultException {
public:
    explicit CHresultException(HRESULT result) noexcept : m_result(result) {}

    [[nodiscard]] HRESULT GetResult() const noexcept { return m_result; }

private:
    HRESULT m_result;
};

/// The calling thread's last error as an HRESULT: a code above 0 becomes 0x80070000 with its low 16 bits, 0 or a value
/// that is negative already stays as it is. Call it on the very next line after the failing call.
[[nodiscard]] HRESULT LastErrorResult() noexcept;

/// Throws `result` as a CHresultException.
[[noreturn]] void ThrowResult(HRESULT result);

/// Throws LastErrorResult() as a CHresultException. Call it on the very next line after the failing call.
[[noreturn]] void ThrowLastError();
