#pragma once

#include <windows.h>

#include <cstddef>

/// Threads wait here for the last of them. Of the system's own, since the C++ library's condition variable is made of
/// critical sections, which the tests' accounts count.
class CMeeting {
public:
    explicit CMeeting(std::size_t threads) noexcept : m_threads(threads) {}

    CMeeting(const CMeeting&) = delete;
    CMeeting& operator=(const CMeeting&) = delete;

    void Wait() noexcept {
        AcquireSRWLockExclusive(&m_lock);
        ++m_arrived;
        WakeAllConditionVariable(&m_hasArrived);
        while (m_arrived < m_threads) {
            SleepConditionVariableSRW(&m_hasArrived, &m_lock, INFINITE, 0);
        }
        ReleaseSRWLockExclusive(&m_lock);
    }

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
    CONDITION_VARIABLE m_hasArrived = CONDITION_VARIABLE_INIT;
    const std::size_t m_threads;
    std::size_t m_arrived = 0;
};
