#pragma once

#include <windows.h>

/// Sees to it that the system has storage for Boost's per-thread slots. Boost does not look: where a thread's storage
/// cannot be had (no index left, or no memory for those beyond the first 64), it goes on with a null pointer.
class CThreadStorage {
public:
    /// Has Boost take its index. Throws CHresultException when there is none.
    CThreadStorage();
    ~CThreadStorage();

    CThreadStorage(const CThreadStorage&) = delete;
    CThreadStorage& operator=(const CThreadStorage&) = delete;

    /// Called before a slot of the calling thread is filled. Throws std::bad_alloc when its storage cannot be had.
    void Require() const;

private:
    const DWORD m_index;
};
