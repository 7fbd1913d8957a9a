#include "ProcessQuantities.h"

#include <windows.h>

#include <tlhelp32.h>

#include "CResourceLedger.h"
#include "CUniqueHandle.h"
#include "HeapBlocks.h"
#include "ProcessMemory.h"

namespace {

struct SnapshotTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle snapshot) noexcept { CloseHandle(snapshot); }
};

Quantity OfLedger(const char* name, long ResourceCounts::*kind) {
    return {name, [kind] { return CResourceLedger::Get().Count().*kind; }};
}

}  // namespace

// One by one: the system's list of all handles (NtQuerySystemInformation) ends Wine's server, and with it everything
// that runs, where a process comes to its end at that moment.
long CountHandles() {
    constexpr ULONG_PTR kStep = 4;  // between handles' values; new ones fill the gaps
    constexpr int kMostMissing = 4096;
    long count = 0;
    int missing = 0;
    for (ULONG_PTR value = kStep; missing < kMostMissing; value += kStep) {
        DWORD flags = 0;
        const bool isThere = GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE;
        count += isThere ? 1 : 0;
        missing = isThere ? 0 : missing + 1;
    }
    return count;
}

long CountThreads() {
    const CUniqueHandle<SnapshotTraits> snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    long count = 0;
    for (BOOL found = Thread32First(snapshot.Get(), &entry); found; found = Thread32Next(snapshot.Get(), &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    return count;
}

std::vector<Quantity> MakeProcessQuantities() {
    return {
        OfLedger("BSTRs and COM blocks", &ResourceCounts::comBlocks),
        OfLedger("registry keys", &ResourceCounts::registryKeys),
        OfLedger("libraries", &ResourceCounts::libraries),
        OfLedger("searches", &ResourceCounts::searches),
        OfLedger("critical sections", &ResourceCounts::criticalSections),
        OfLedger("locks held", &ResourceCounts::locksHeld),
        {"kernel handles", [] { return CountHandles(); }},
        {"threads", [] { return CountThreads(); }},
        {"heap blocks", [] { return CountHeapBlocks(); }},
    };
}

Quantity MakeMemoryQuantity(long long margin) {
    return {"bytes of memory", [] { return static_cast<long long>(CountPrivateMemory()); }, margin};
}
