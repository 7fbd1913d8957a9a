#pragma once

#include <windows.h>

#include <winternl.h>

// In no header of MinGW's; its other way to the block makes GCC warn of an array at address 0.
extern "C" __declspec(dllimport) PEB* NTAPI RtlGetCurrentPeb();

/// Whether the calling thread holds the loader lock, under which DLLs are told of threads' ends. Found where the
/// process environment block points to it (x64).
[[nodiscard]] inline bool HasLoaderLock() noexcept {
    constexpr ULONG_PTR kLock = 0x110;
    const auto block = reinterpret_cast<ULONG_PTR>(RtlGetCurrentPeb());
    const auto* const lock = *reinterpret_cast<CRITICAL_SECTION* const*>(block + kLock);
    return lock && lock->OwningThread == reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(GetCurrentThreadId()));
}
