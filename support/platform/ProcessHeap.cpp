#include "ProcessHeap.h"

#include <limits>

#include "ThrowResult.h"

void* AllocateFromProcessHeap(std::size_t count, std::size_t elementSize) noexcept {
    if (elementSize != 0 && count > std::numeric_limits<std::size_t>::max() / elementSize) {
        return nullptr;
    }
    return HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, count * elementSize);
}

void FreeToProcessHeap(void* block) noexcept {
    HeapFree(GetProcessHeap(), 0, block);
}

void* RequireFromProcessHeap(std::size_t count, std::size_t elementSize) {
    void* const block = AllocateFromProcessHeap(count, elementSize);
    if (!block) {
        ThrowResult(E_OUTOFMEMORY);
    }
    return block;
}
