#pragma once

// That nothing calls Java while it holds the loader lock: Java starts threads with locks of its own held, and a thread
// needs the loader lock to start. Asserted by builds with assertions; the others know nothing of it.

#ifdef NDEBUG

inline void AssertOutsideLoaderLock() noexcept {}

class CLoaderLockExemption {
public:
    // Not defaulted: a guard of a scope would be an unused variable then.
    CLoaderLockExemption() noexcept {}  // NOLINT(modernize-use-equals-default)
    ~CLoaderLockExemption() = default;

    CLoaderLockExemption(const CLoaderLockExemption&) = delete;
    CLoaderLockExemption& operator=(const CLoaderLockExemption&) = delete;
};

#else

/// To be called right before Java is.
void AssertOutsideLoaderLock() noexcept;

/// The calling thread may call Java in this scope though it may hold the loader lock: for the one place that has no
/// other moment for it.
class CLoaderLockExemption {
public:
    CLoaderLockExemption() noexcept;
    ~CLoaderLockExemption();

    CLoaderLockExemption(const CLoaderLockExemption&) = delete;
    CLoaderLockExemption& operator=(const CLoaderLockExemption&) = delete;

private:
    const bool m_isUnderLoaderLock;
};

#endif
