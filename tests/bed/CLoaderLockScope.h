#pragma once

#include <stdexcept>

#include "LoaderLock.h"

/// Holds the loader lock in its scope. No thread starts or ends meanwhile, and no library is loaded.
class CLoaderLockScope {
public:
    CLoaderLockScope() : m_lock(FindLoaderLock()) {
        if (!m_lock) {
            throw std::runtime_error("the loader lock is not where it should be");
        }
        EnterCriticalSection(m_lock);
    }
    ~CLoaderLockScope() { LeaveCriticalSection(m_lock); }

    CLoaderLockScope(const CLoaderLockScope&) = delete;
    CLoaderLockScope& operator=(const CLoaderLockScope&) = delete;

private:
    CRITICAL_SECTION* const m_lock;
};
