#pragma once

#include "CComObject.h"
#include "ISystemInfo.h"
#include "Readings.h"

/// The machine. The library calls Refresh once before each item, and then asks for what that item needs.
class CSystemInfo final : public CComObject<ISystemInfo> {
public:
    /// What the last refresh read. On the thread that hands items over, between two of them.
    [[nodiscard]] const MachineReading& GetMachine() const noexcept { return m_machine; }

    HRESULT STDMETHODCALLTYPE Refresh() override;
    HRESULT STDMETHODCALLTYPE get_networkInterfaces(SAFEARRAY** interfaces) override;
    HRESULT STDMETHODCALLTYPE get_machineName(BSTR* name) override { return GiveText(name, m_machine.name); }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_isDesktop(VARIANT_BOOL* isDesktop) override;
    HRESULT STDMETHODCALLTYPE get_FQDN(BSTR* name) override { return GiveText(name, m_machine.fullyQualifiedName); }
    HRESULT STDMETHODCALLTYPE get_totalMemory(LONG* memory) override;
    HRESULT STDMETHODCALLTYPE get_virtualMachineId(BSTR* id) override {
        return GiveText(id, m_machine.virtualMachineId);
    }
    HRESULT STDMETHODCALLTYPE get_machineId(BSTR* id) override { return GiveText(id, m_machine.id); }
    HRESULT STDMETHODCALLTYPE get_machineUniqueId(BSTR* id) override { return GiveText(id, m_machine.id); }
    HRESULT STDMETHODCALLTYPE get_componentsIdentities(IPropertyBox** identities) override;

private:
    MachineReading m_machine;
};
