#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "HostTime.h"
#include "HostWalk.h"

namespace {

namespace RemoteApp = Binding::BaseRemoteApp;

constexpr wchar_t kNoRemoteApp[] = L"Failed to create a new Java remote app object.  %s";
constexpr wchar_t kAddingRemoteApp[] = L"Adding remote app to sample: '%s'";
constexpr wchar_t kRemoteAppNotAdded[] = L"Failed to add app '%s' to sample '%s'.  %s";

}  // namespace

void CJNIConvertor::AddRemoteApps(const std::shared_ptr<CJavaVM>& vm, const std::shared_ptr<CJavaObject>& session,
                                  ISampleNode* sessionNode) const {
    if (!session || !sessionNode) {
        return;
    }
    Microsoft::WRL::ComPtr<IInstanceEnumerator> apps;
    if (FAILED(GetInstances(*sessionNode, apps))) {
        return;
    }
    WalkInstances(*vm, apps.Get(), [&](std::wstring_view id, ISampleNode& appNode) {
        AddRemoteApp(vm, *session, *sessionNode, id, appNode);
    });
}

void CJNIConvertor::AddRemoteApp(const std::shared_ptr<CJavaVM>& vm, CJavaObject& session, ISampleNode& sessionNode,
                                 std::wstring_view id, ISampleNode& appNode) const {
    const std::shared_ptr<CJavaObject> app = GetRemoteApp(vm, id);
    if (!app || !AddMetrics(vm, app, &appNode)) {
        return;  // an application without a metric is never sent
    }
    m_log.Verbose(kAddingRemoteApp, std::wstring(id).c_str());
    session.CallVoidMethod(Binding::BaseUserSession::kPutRemoteApp, app);
    LogIfThrown(*vm, [&](const wchar_t* thrown) {
        m_log.Error(kRemoteAppNotAdded, std::wstring(id).c_str(), NameSample(sessionNode).GetText(), thrown);
    });
}

std::shared_ptr<CJavaObject> CJNIConvertor::GetRemoteApp(const std::shared_ptr<CJavaVM>& vm,
                                                         std::wstring_view id) const {
    const std::shared_ptr<CJavaClass> appClass = vm->GetClass(RemoteApp::kClass);
    if (!appClass) {
        return {};
    }
    const JavaText idString = NewJavaString(vm, id, false);
    if (!idString) {
        return {};
    }
    std::shared_ptr<CJavaObject> app = appClass->NewObject(RemoteApp::kCtorId, idString);
    if (!app) {
        m_log.Error(kNoRemoteApp, vm->TakeExceptionText().c_str());
    }
    return app;
}
