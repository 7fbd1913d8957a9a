#pragma once

class CRMICommManagerImpl;

/// Lies in the slot of the thread that initialised the manager and runs the manager's clean-up when that thread ends.
/// The manager lives until the library is unloaded, and no slot outlives that.
class CRMICommManagerImplCleaner {
public:
    using Function = void (*)(CRMICommManagerImpl& manager) noexcept;

    CRMICommManagerImplCleaner(CRMICommManagerImpl& manager, Function clean) noexcept
        : m_manager(manager), m_clean(clean) {}
    ~CRMICommManagerImplCleaner() { m_clean(m_manager); }

    CRMICommManagerImplCleaner(const CRMICommManagerImplCleaner&) = delete;
    CRMICommManagerImplCleaner& operator=(const CRMICommManagerImplCleaner&) = delete;

private:
    CRMICommManagerImpl& m_manager;
    const Function m_clean;
};
