#pragma once

#include <windows.h>

#include <mutex>

#include "LockOrder.h"

/// A recursive lock within the process: a Win32 critical section with a spin count of 0. Builds with assertions end the
/// process where one is taken against the order of locks.
/// Its operations have the names that std::lock_guard and std::unique_lock call.
class CCriticalSection : private CLockOrder {  // a base, which takes no room where it is empty
public:
    /// Throws CHresultException with the last Win32 error when the system has no lock to give.
    explicit CCriticalSection(LockRank rank);
    ~CCriticalSection();

    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    // Inline: a data item of 3,000 metrics looks the thread's environment up 25,000 times.
    void lock() noexcept {
        AssertMayBeTaken();
        EnterCriticalSection(&m_section);
    }
    void unlock() noexcept { LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};

/// Holds a CCriticalSection from its construction to the end of its scope.
using CCriticalSectionLock = std::lock_guard<CCriticalSection>;
