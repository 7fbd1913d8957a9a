#pragma once

#include <atomic>

#include "CCriticalSection.h"
#include "CRMICommManager.h"

class CRMICommManagerImpl;
class CThreadSlots;

/// The object behind CRMICommManager::GetInstance: makes the manager when the first call needs it, and hands every call
/// on. Any thread may call; the creation lock is held for the making of the manager alone.
class CRMICommManagerFacade : public CRMICommManager {
public:
    /// `slots` outlive it. Throws CHresultException when the lock cannot be made.
    explicit CRMICommManagerFacade(CThreadSlots& slots) : m_slots(slots) {}
    /// The unloading thread's cleaner runs first, if it has one; then the manager goes, without calling Java.
    ~CRMICommManagerFacade();

    CRMICommManagerFacade(const CRMICommManagerFacade&) = delete;
    CRMICommManagerFacade& operator=(const CRMICommManagerFacade&) = delete;

    /// The one manager, made at the first call. Throws CHresultException or std::bad_alloc; the next call tries again.
    [[nodiscard]] CRMICommManagerImpl& GetImpl();

    [[nodiscard]] bool HasImpl() const noexcept { return m_impl != nullptr; }

private:
    CThreadSlots& m_slots;
    std::atomic<CRMICommManagerImpl*> m_impl{nullptr};
    CCriticalSection m_creationLock{LockRank::eInnermost};
};
