#include <array>

#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"

namespace {

namespace NetworkInterface = Binding::NetworkInterface;

constexpr wchar_t kNoNetworkInterface[] = L"Failed to create a new Java network interface object.  %s";
constexpr wchar_t kLinkSpeedNotSet[] = L"Failed to set the link speed on the Java network interface object.  %s";

struct TextSetter {
    BSTR NetworkInterfaceRecord::*text;
    const JavaMethod<void(jstring)>& setter;
    const wchar_t* failure;
};

// In the order of the calls.
constexpr TextSetter kTextSetters[] = {
    {&NetworkInterfaceRecord::macAddress, NetworkInterface::kPutMacAddress,
     L"Failed to set the MAC address on the Java network interface object.  %s"},
    {&NetworkInterfaceRecord::ipAddress, NetworkInterface::kPutIpAddress,
     L"Failed to set the IP address on the Java network interface object.  %s"},
    {&NetworkInterfaceRecord::subnetMask, NetworkInterface::kPutSubnetMask,
     L"Failed to set the subnet mask on the Java network interface object.  %s"},
    {&NetworkInterfaceRecord::subnet, NetworkInterface::kPutSubnet,
     L"Failed to set the subnet on the Java network interface object.  %s"},
};

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetNetworkInterface(const std::shared_ptr<CJavaVM>& vm,
                                                                const NetworkInterfaceRecord& record) const {
    const std::shared_ptr<CJavaClass> interfaceClass = vm->GetClass(NetworkInterface::kClass);
    if (!interfaceClass) {
        return {};
    }
    const JavaText description = NewJavaString(vm, record.description);
    if (!description) {
        return {};
    }
    std::array<JavaText, std::size(kTextSetters)> texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i] = NewJavaString(vm, record.*kTextSetters[i].text);
        if (!texts[i]) {
            return {};
        }
    }

    std::shared_ptr<CJavaObject> networkInterface =
        interfaceClass->NewObject(NetworkInterface::kCtorDescription, description);
    if (!networkInterface) {
        m_log.Error(kNoNetworkInterface, vm->TakeExceptionText().c_str());
        return {};
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        networkInterface->CallVoidMethod(kTextSetters[i].setter, texts[i]);
        if (LogThrown(*vm, kTextSetters[i].failure)) {
            return {};
        }
    }
    networkInterface->CallVoidMethod(NetworkInterface::kPutLinkSpeed, record.linkSpeed);
    if (LogThrown(*vm, kLinkSpeedNotSet)) {
        return {};
    }
    return networkInterface;
}
