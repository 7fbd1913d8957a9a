#pragma once

#include <windows.h>

#include <cstddef>
#include <type_traits>

#include "CUniqueHandle.h"

/// Zero-filled memory for `count` elements of `elementSize` bytes from the process heap, or null when there is none (a
/// product beyond the address space counts as that). Freed with FreeToProcessHeap.
[[nodiscard]] void* AllocateFromProcessHeap(std::size_t count, std::size_t elementSize) noexcept;
void FreeToProcessHeap(void* block) noexcept;

template <typename T>
struct HeapArrayTraits {
    using Handle = T*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle block) noexcept { FreeToProcessHeap(block); }
};

/// A zero-filled array on the process heap; elements need no construction or destruction.
template <typename T>
class CHeapArray : private CUniqueHandle<HeapArrayTraits<T>> {
    static_assert(std::is_trivial_v<T>, "process-heap arrays hold plain data");
    using Base = CUniqueHandle<HeapArrayTraits<T>>;

public:
    CHeapArray() noexcept = default;
    /// Throws CHresultException with E_OUTOFMEMORY.
    explicit CHeapArray(std::size_t count);

    using Base::Get;
    using Base::operator bool;

    T& operator[](std::size_t index) noexcept { return Get()[index]; }
};

/// Throws CHresultException with E_OUTOFMEMORY where AllocateFromProcessHeap has nothing to give.
[[nodiscard]] void* RequireFromProcessHeap(std::size_t count, std::size_t elementSize);

template <typename T>
CHeapArray<T>::CHeapArray(std::size_t count) : Base(static_cast<T*>(RequireFromProcessHeap(count, sizeof(T)))) {}
