#pragma once

#include <windows.h>

/// Thrown where a resource is exhausted (memory, a lock that cannot be made); carries the HRESULT that says which:
/// E_OUTOFMEMORY, E_INVALIDARG for a text that is longer than the system can convert, E_FAIL, or 0x80070000 with a
/// Win32 error code. Nothing else in the library is reported by an exception of its own. Copyable, never throws itself;
/// usable on any thread. A host that is built with MinGW-w64 catches it by its type.
class CHresultException {
public:
    explicit CHresultException(HRESULT result) noexcept : m_result(result) {}

    [[nodiscard]] HRESULT GetResult() const noexcept { return m_result; }

private:
    HRESULT m_result;
};
