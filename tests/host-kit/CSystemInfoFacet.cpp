#include "CHostFacet.h"
#include "HostObjects.h"
#include "NetworkInterfaceArray.h"

namespace {

class CSystemInfoFacet final : public CHostFacet<ISystemInfo, SystemData> {
public:
    CSystemInfoFacet(CHostObject& object, SystemData data) : CHostFacet(object, ISystemInfo::kId, std::move(data)) {}

    STDMETHODIMP Refresh() noexcept override {
        return Perform("Refresh", kNoInputs, [] { return S_OK; });
    }
    STDMETHODIMP get_networkInterfaces(SAFEARRAY** interfaces) noexcept override {
        return Perform(
            "get_networkInterfaces", kNoInputs,
            [&] {
                *interfaces =
                    MakeNetworkInterfaceArray(m_object.GetRecord(), m_data.networkInterfaces, m_data.networkArray);
                return S_OK;
            },
            interfaces);
    }
    STDMETHODIMP get_machineName(BSTR* name) noexcept override {
        return GiveText("get_machineName", m_data.machineName, name);
    }

    STDMETHODIMP Reserved6() noexcept override { return Refuse("Reserved6"); }

    STDMETHODIMP get_isDesktop(VARIANT_BOOL* isDesktop) noexcept override {
        return GiveNumber("get_isDesktop", m_data.isDesktop, isDesktop);
    }
    STDMETHODIMP get_FQDN(BSTR* name) noexcept override { return GiveText("get_FQDN", m_data.fqdn, name); }
    STDMETHODIMP get_totalMemory(LONG* memory) noexcept override {
        return GiveNumber("get_totalMemory", m_data.totalMemory, memory);
    }
    STDMETHODIMP get_virtualMachineId(BSTR* id) noexcept override {
        return GiveText("get_virtualMachineId", m_data.virtualMachineId, id);
    }
    STDMETHODIMP get_machineId(BSTR* id) noexcept override { return GiveText("get_machineId", m_data.machineId, id); }
    STDMETHODIMP get_machineUniqueId(BSTR* id) noexcept override {
        return GiveText("get_machineUniqueId", m_data.machineUniqueId, id);
    }
    STDMETHODIMP get_componentsIdentities(IPropertyBox** identities) noexcept override {
        return GiveObject(
            "get_componentsIdentities", kNoInputs,
            [&] { return MakePropertyBox(m_object.GetRecord(), m_data.componentsIdentities); }, identities);
    }
};

}  // namespace

CHostReference<ISystemInfo> MakeSystemInfo(CRecordPointer record, SystemData data) {
    return CHostObject::MakeWith<ISystemInfo, CSystemInfoFacet>(std::move(record), "System", std::move(data));
}
