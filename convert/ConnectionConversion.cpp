#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"

namespace {

/// Of the message client's interface, not of this library: 6.2.
constexpr jint kVersion = 0x60200;
constexpr wchar_t kDesktop[] = L"DESKTOP";
constexpr wchar_t kServer[] = L"SERVER";
constexpr wchar_t kNoConnection[] = L"Failed to create a new Java connection object.  %s";

/// The result of the host's operation is not looked at: what it leaves behind counts.
const wchar_t* GetDeviceType(ISystemInfo& systemInfo) {
    VARIANT_BOOL isDesktop = VARIANT_FALSE;
    static_cast<void>(systemInfo.get_isDesktop(&isDesktop));
    return isDesktop == VARIANT_TRUE ? kDesktop : kServer;
}

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetConnection(const JavaCallContext& context,
                                                          ISystemInfo& systemInfo) const {
    const std::shared_ptr<CJavaVM>& vm = context.vm;
    const std::shared_ptr<CJavaClass> connectionClass = vm->GetClass(Binding::DesktopConnection::kClass);
    if (!connectionClass) {
        return {};
    }
    const std::shared_ptr<CJavaString> id = NewJavaString(vm, context.id, false);
    if (!id) {
        return {};
    }
    const std::shared_ptr<CJavaString> authToken = NewJavaString(vm, context.authToken, true);
    if (!authToken) {
        return {};
    }
    const std::shared_ptr<CJavaString> uniqueId = NewJavaString(vm, context.uniqueId, true);
    if (!uniqueId) {
        return {};
    }
    const std::shared_ptr<CJavaString> deviceType = NewJavaString(vm, GetDeviceType(systemInfo), false);
    if (!deviceType) {
        return {};
    }

    std::shared_ptr<CJavaObject> connection =
        connectionClass->NewObject(Binding::DesktopConnection::kCtorIdAuthTokenUniqueIdVersionDeviceType, id, authToken,
                                   uniqueId, kVersion, deviceType);
    if (!connection) {
        m_log.Error(kNoConnection, vm->TakeExceptionText().c_str());
    }
    return connection;
}
