#pragma once

/// Makes one C++ allocation of the calling thread fail with std::bad_alloc, the `nth` from now on (1: the next one), or
/// that and all behind it, as long as this object lives. One at a time; it may end, and be asked, on another thread.
class CAllocationFault {
public:
    explicit CAllocationFault(long nth, bool isForEver = false) noexcept;
    ~CAllocationFault();

    CAllocationFault(const CAllocationFault&) = delete;
    CAllocationFault& operator=(const CAllocationFault&) = delete;

    /// Whether the allocation has come and failed: of the last fault, which may be over.
    [[nodiscard]] static bool HasFired() noexcept;
};
