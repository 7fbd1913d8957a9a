#pragma once

#include <windows.h>

#include <memory>

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
/// A handle of the kind that is null where there is none.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;

struct LocalMemoryFreer {
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};
/// What the system gives to be freed with LocalFree.
template <typename T>
using UniqueLocalMemory = std::unique_ptr<T, LocalMemoryFreer>;
