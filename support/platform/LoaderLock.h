#pragma once

#include <windows.h>

#include <winternl.h>

// In no header of MinGW's; its other way to the block makes GCC warn of an array at address 0.
extern "C" __declspec(dllimport) PEB* NTAPI RtlGetCurrentPeb();

/// The loader lock, under which DLLs are loaded, unloaded, and told of threads' ends. Found where the process
/// environment block points to it (x64); null where it does not. For assertions and tests alone: nobody documents this.
[[nodiscard]] inline CRITICAL_SECTION* FindLoaderLock() noexcept {
    constexpr ULONG_PTR kLock = 0x110;
    const auto block = reinterpret_cast<ULONG_PTR>(RtlGetCurrentPeb());
    return *reinterpret_cast<CRITICAL_SECTION**>(block + kLock);
}

/// Whether the calling thread holds it.
[[nodiscard]] inline bool HasLoaderLock() noexcept {
    const auto* const lock = FindLoaderLock();
    return lock && lock->OwningThread == reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GetCurrentThreadId()));
}
