#include "BindingTable.h"
#include "CBstr.h"
#include "CElementFrames.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "CNetworkRecords.h"
#include "SystemHandles.h"

namespace {

namespace Desktop = Binding::DesktopInformation;

// Run together with the error text: hosts know it that way.
constexpr wchar_t kNoNetworkInterfaces[] =
    L"Failed to get_networkInterfaces in function class std::shared_ptr<class CJavaObject> __cdecl "
    L"CJNIConvertor::GetDesktop(class std::shared_ptr<class CJavaVM>,struct ISystemInfo *)";
constexpr wchar_t kNoDesktop[] = L"Failed to create a new Java desktop object.  %s";
constexpr wchar_t kMemoryNotSet[] = L"Failed to set total memory on the Java desktop object.  %s";
constexpr wchar_t kNetworkInterfaceNotAdded[] = L"Failed to add network interface '%s' to the Java desktop object.  %s";

/// Empty when the host does not give one.
CSafeArray GetNetworkInterfaces(const CBridgeLog& log, ISystemInfo& systemInfo) {
    CSafeArray records;
    const HRESULT got = systemInfo.get_networkInterfaces(records.Receive());
    if (FAILED(got)) {
        static_cast<void>(records.Detach());  // nothing was given, whatever stands there
        log.ErrorRunTogether(got, kNoNetworkInterfaces);
    }
    return records;
}

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetDesktop(const std::shared_ptr<CJavaVM>& vm,
                                                       ISystemInfo* systemInfo) const {
    const std::shared_ptr<CJavaClass> desktopClass = vm->GetClass(Desktop::kClass);
    if (!desktopClass || !systemInfo) {
        return {};
    }
    const CSafeArray records = GetNetworkInterfaces(m_log, *systemInfo);
    std::shared_ptr<CJavaObject> desktop = MakeDesktop(vm, *desktopClass, *systemInfo);
    if (!desktop || !PutTotalMemory(*vm, *desktop, *systemInfo)) {
        return {};
    }
    AddNetworkInterfaces(vm, *desktop, records.Get());
    return desktop;
}

std::shared_ptr<CJavaObject> CJNIConvertor::MakeDesktop(const std::shared_ptr<CJavaVM>& vm, CJavaClass& desktopClass,
                                                        ISystemInfo& systemInfo) const {
    // Neither result is looked at: a name that the host does not give is empty.
    CBstr machineName;
    CBstr fqdn;
    static_cast<void>(systemInfo.get_machineName(machineName.Receive()));
    static_cast<void>(systemInfo.get_FQDN(fqdn.Receive()));

    const JavaText machineNameString = NewJavaString(vm, machineName.Get());
    if (!machineNameString) {
        return {};
    }
    const JavaText fqdnString = NewJavaString(vm, fqdn.Get());
    if (!fqdnString) {
        return {};
    }
    std::shared_ptr<CJavaObject> desktop =
        desktopClass.NewObject(Desktop::kCtorNameFqdn, machineNameString, fqdnString);
    if (!desktop) {
        m_log.Error(kNoDesktop, vm->TakeExceptionText().c_str());
    }
    return desktop;
}

/// In the host's unit.
bool CJNIConvertor::PutTotalMemory(CJavaVM& vm, CJavaObject& desktop, ISystemInfo& systemInfo) const {
    LONG totalMemory = 0;
    static_cast<void>(systemInfo.get_totalMemory(&totalMemory));
    desktop.CallVoidMethod(Desktop::kPutTotalMemory, totalMemory);
    return !LogThrown(vm, kMemoryNotSet);
}

void CJNIConvertor::AddNetworkInterfaces(const std::shared_ptr<CJavaVM>& vm, CJavaObject& desktop,
                                         SAFEARRAY* array) const {
    const CNetworkRecords records(array);
    CElementFrames frames(vm->GetEnv());
    for (const NetworkInterfaceRecord& record : records) {
        frames.BeginElement();
        if (const std::shared_ptr<CJavaObject> networkInterface = GetNetworkInterface(vm, record)) {
            desktop.CallVoidMethod(Desktop::kAddNetworkInterface, networkInterface);
            LogIfThrown(*vm, [&](const wchar_t* thrown) {
                m_log.Error(kNetworkInterfaceNotAdded, std::wstring(ViewBstr(record.description)).c_str(), thrown);
            });
        }
    }
}
