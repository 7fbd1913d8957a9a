#pragma once

#include <windows.h>

/// The blocks in use on all heaps of the process, whoever took them.
[[nodiscard]] inline long CountHeapBlocks() {
    HANDLE heaps[64];
    const DWORD heapCount = GetProcessHeaps(64, heaps);
    long count = 0;
    for (DWORD i = 0; i < heapCount; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry)) {
            count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        }
        HeapUnlock(heaps[i]);
    }
    return count;
}
