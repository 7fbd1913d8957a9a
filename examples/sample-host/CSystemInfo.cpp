#include "CSystemInfo.h"

#include "CPropertyBox.h"
#include "NetworkRecordArray.h"
#include "ReadMachine.h"

HRESULT CSystemInfo::Refresh() {
    try {
        m_machine = ReadMachine();
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

/// An array even where there is no adapter: without one the library cannot describe the machine.
HRESULT CSystemInfo::get_networkInterfaces(SAFEARRAY** interfaces) {
    *interfaces = MakeNetworkRecordArray(m_machine.adapters);
    return *interfaces ? S_OK : E_OUTOFMEMORY;
}

/// VARIANT_TRUE, not TRUE: 1 would make a server of the machine.
HRESULT CSystemInfo::get_isDesktop(VARIANT_BOOL* isDesktop) {
    *isDesktop = m_machine.isDesktop ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT CSystemInfo::get_totalMemory(LONG* memory) {
    *memory = m_machine.totalMemoryMb;
    return S_OK;
}

/// This host has no component with an identity of its own, and says so by an empty box.
HRESULT CSystemInfo::get_componentsIdentities(IPropertyBox** identities) {
    try {
        *identities = MakeComObject<CPropertyBox>(NamedValues()).Detach();
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}
