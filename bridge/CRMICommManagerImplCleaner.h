#pragma once

#include "LoaderLockRule.h"

class CRMICommManagerImpl;

/// Lies in the slot of the thread that initialised the manager and runs the manager's clean-up when that thread ends.
/// The manager lives until the library is unloaded, and no slot outlives that.
class CRMICommManagerImplCleaner {
public:
    using Function = void (*)(CRMICommManagerImpl& manager) noexcept;

    CRMICommManagerImplCleaner(CRMICommManagerImpl& manager, Function clean) noexcept
        : m_manager(manager), m_clean(clean) {}
    /// Perhaps under the loader lock: at an unload, and at the end of a thread that nobody watched. It is the last
    /// moment there is.
    ~CRMICommManagerImplCleaner() {
        const CLoaderLockExemption lastMoment;
        m_clean(m_manager);
    }

    CRMICommManagerImplCleaner(const CRMICommManagerImplCleaner&) = delete;
    CRMICommManagerImplCleaner& operator=(const CRMICommManagerImplCleaner&) = delete;

private:
    CRMICommManagerImpl& m_manager;
    const Function m_clean;
};
