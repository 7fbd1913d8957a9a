#pragma once

/// Makes one C++ allocation of the calling thread fail with std::bad_alloc: the `nth` from now on (1: the next one), as
/// long as this object lives. One at a time.
class CAllocationFault {
public:
    explicit CAllocationFault(long nth) noexcept;
    ~CAllocationFault();

    CAllocationFault(const CAllocationFault&) = delete;
    CAllocationFault& operator=(const CAllocationFault&) = delete;

    /// Whether the allocation has come and failed.
    [[nodiscard]] bool HasFired() const noexcept;
};
