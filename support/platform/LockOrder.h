#pragma once

#include <windows.h>

/// Where a lock stands in the one order in which a thread may hold several. A lock is taken only while every other lock
/// that the thread holds stands before it; of the same rank a thread holds one at a time, which it may take again.
enum class LockRank {
    eOutermost,  ///< held across calls out, and across every other lock
    eInnermost,  ///< nothing is locked under it
};

#ifdef NDEBUG

/// Builds without assertions know of no order.
class CLockOrder {
public:
    explicit CLockOrder(LockRank /*rank*/) noexcept {}

    void Join(const CRITICAL_SECTION& /*section*/) noexcept {}
    void Leave() noexcept {}
    void AssertMayBeTaken() const noexcept {}
};

#else

/// A lock's place in the order, asserted each time before the lock is taken. The system knows who holds a critical
/// section, so that all there is to keep is which ones there are: no record for each thread, whose memory or storage
/// index nobody would give back at an unload.
/// Any thread; Join and Leave belong to the lock's making and end.
class CLockOrder {
public:
    explicit CLockOrder(LockRank rank) noexcept : m_rank(rank) {}

    CLockOrder(const CLockOrder&) = delete;
    CLockOrder& operator=(const CLockOrder&) = delete;

    /// `section` is the lock itself, initialised; it counts from here on to Leave.
    void Join(const CRITICAL_SECTION& section) noexcept;
    void Leave() noexcept;

    void AssertMayBeTaken() const noexcept;

private:
    [[nodiscard]] bool IsHeldByThisThread() const noexcept;
    [[nodiscard]] bool HoldsNoneButEarlierOnes() const noexcept;

    const LockRank m_rank;
    const CRITICAL_SECTION* m_section = nullptr;
    CLockOrder* m_next = nullptr;  // in the list of all
};

#endif
