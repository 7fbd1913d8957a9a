#include "LockOrder.h"

#ifndef NDEBUG

#include <cassert>

namespace {

/// All locks of this image. Guarded by a lock of another kind, which is held for nothing but a walk along the list.
CLockOrder* g_first = nullptr;
SRWLOCK g_listLock = SRWLOCK_INIT;

}  // namespace

void CLockOrder::Join(const CRITICAL_SECTION& section) noexcept {
    m_section = &section;
    AcquireSRWLockExclusive(&g_listLock);
    m_next = g_first;
    g_first = this;
    ReleaseSRWLockExclusive(&g_listLock);
}

void CLockOrder::Leave() noexcept {
    AcquireSRWLockExclusive(&g_listLock);
    CLockOrder** link = &g_first;
    while (*link != this) {
        link = &(*link)->m_next;
    }
    *link = m_next;
    ReleaseSRWLockExclusive(&g_listLock);
}

void CLockOrder::AssertMayBeTaken() const noexcept {
    assert((IsHeldByThisThread() || HoldsNoneButEarlierOnes()) && "a lock is taken against the order of locks");
}

/// No other thread can make this true or false for the calling one: it alone writes its own id here and takes it away.
bool CLockOrder::IsHeldByThisThread() const noexcept {
    const void* const owner = __atomic_load_n(&m_section->OwningThread, __ATOMIC_RELAXED);
    return owner == reinterpret_cast<const void*>(static_cast<ULONG_PTR>(GetCurrentThreadId()));
}

bool CLockOrder::HoldsNoneButEarlierOnes() const noexcept {
    bool holdsNone = true;
    AcquireSRWLockShared(&g_listLock);
    for (const CLockOrder* other = g_first; other; other = other->m_next) {
        holdsNone = holdsNone && (other->m_rank < m_rank || !other->IsHeldByThisThread());
    }
    ReleaseSRWLockShared(&g_listLock);
    return holdsNone;
}

#endif
