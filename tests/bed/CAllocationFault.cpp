#include "CAllocationFault.h"

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr long kNone = 0;
constexpr DWORD kNoThread = 0;

// One thread at a time has a fault; it may be told to stop, and what came of it be asked, on another one.
std::atomic<DWORD> g_threadId{kNoThread};
std::atomic<bool> g_hasFired{false};
// Of that thread alone while it has a fault.
long g_allocationsToFault = kNone;
bool g_isForEver = false;

bool IsToFail() noexcept {
    if (g_threadId == kNoThread || g_threadId != GetCurrentThreadId()) {
        return false;
    }
    if (g_allocationsToFault != kNone && --g_allocationsToFault == kNone) {
        g_hasFired = true;
        return true;
    }
    return g_hasFired && g_isForEver;
}

}  // namespace

CAllocationFault::CAllocationFault(long nth, bool isForEver) noexcept {
    g_allocationsToFault = nth;
    g_isForEver = isForEver;
    g_hasFired = false;
    g_threadId = GetCurrentThreadId();
}

CAllocationFault::~CAllocationFault() {
    g_threadId = kNoThread;
}

bool CAllocationFault::HasFired() noexcept {
    return g_hasFired;
}

// Replaces the C++ runtime's own for the whole program; the other forms of `new` and `delete` come through these two.
void* operator new(std::size_t bytes) {
    void* const block = IsToFail() ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
    if (!block) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
