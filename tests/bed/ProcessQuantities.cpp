#include "ProcessQuantities.h"

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "CResourceLedger.h"
#include "CUniqueHandle.h"
#include "HeapBlocks.h"
#include "ProcessMemory.h"

namespace {

// Of the system's answer about handles, which is that of all processes: the head, and as many entries as it says.
constexpr auto kHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
struct HandleEntry {
    ULONG processId;
    BYTE type;
    BYTE flags;
    USHORT handle;
    void* object;
    ULONG access;
};
struct HandleTable {
    ULONG count;
    HandleEntry entries[1];
};
constexpr NTSTATUS kTooSmall = static_cast<NTSTATUS>(0xC0000004);

struct SnapshotTraits {
    using Handle = HANDLE;
    static Handle None() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle snapshot) noexcept { CloseHandle(snapshot); }
};

Quantity OfLedger(const char* name, long ResourceCounts::*kind) {
    return {name, [kind] { return CResourceLedger::Get().Count().*kind; }};
}

}  // namespace

long CountHandles() {
    // As 64-bit words, for their alignment.
    std::vector<ULONGLONG> answer(1 << 15);
    ULONG needed = 0;
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(kHandleInformation, answer.data(),
                                              static_cast<ULONG>(answer.size() * sizeof(ULONGLONG)), &needed)) ==
           kTooSmall) {
        answer.resize(2 * answer.size());
    }
    if (status != 0) {
        throw std::runtime_error("the system does not tell handles: " + std::to_string(status));
    }
    const auto* const table = reinterpret_cast<const HandleTable*>(answer.data());
    return static_cast<long>(std::count_if(table->entries, table->entries + table->count, [](const HandleEntry& entry) {
        return entry.processId == GetCurrentProcessId();
    }));
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
