#include <shlwapi.h>

#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "HostTime.h"
#include "HostWalk.h"

using Microsoft::WRL::ComPtr;

namespace {

namespace Sample = Binding::BaseSample;

constexpr wchar_t kNoTime[] = L"Failed to get time from sample";
constexpr wchar_t kNoSample[] = L"Failed to create a new Java sample object.  %s";
constexpr wchar_t kNoInstances[] = L"Failed to get instances from sample";
constexpr wchar_t kAddingSession[] = L"Adding session to sample: '%s'";
constexpr wchar_t kSessionNotAdded[] = L"Failed to add session '%s' to sample '%s'.  %s";

/// The session that `key`, a decimal number, names; what is no number names session 0.
ComPtr<IUserSessionInfo> FindSession(ISessionCollection& sessions, std::wstring_view key) {
    ComPtr<IUserSessionInfo> session;
    static_cast<void>(AskForObject(session, [&](IUserSessionInfo** given) {
        return sessions.GetSession(StrToIntW(std::wstring(key).c_str()), given);
    }));
    return session;
}

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode* sample,
                                                      ISessionCollection* sessions) const {
    if (!sample) {
        return {};
    }
    DATE time = 0;
    std::shared_ptr<CJavaObject> javaSample = MakeSample(vm, *sample, time);
    if (!javaSample) {
        return {};
    }
    AddMetrics(vm, javaSample, sample);

    ComPtr<IInstanceEnumerator> instances;
    if (FAILED(GetInstances(*sample, instances))) {
        return {};
    }
    WalkInstances(*vm, instances.Get(), [&](std::wstring_view key, ISampleNode& instance) {
        if (sessions) {
            AddSession(vm, *javaSample, time, key, instance, *sessions);
        }
    });
    return javaSample;
}

/// A sample of the node's time, which `time` receives.
std::shared_ptr<CJavaObject> CJNIConvertor::MakeSample(const std::shared_ptr<CJavaVM>& vm, ISampleNode& node,
                                                       DATE& time) const {
    const std::shared_ptr<CJavaClass> sampleClass = vm->GetClass(Sample::kClass);
    if (!sampleClass) {
        return {};
    }
    const HRESULT got = node.get_time(&time);
    if (FAILED(got)) {
        m_log.ErrorWithResult(got, kNoTime);
        return {};
    }
    std::shared_ptr<CJavaObject> sample = sampleClass->NewObject(Sample::kCtorTime, DateToJavaTime(time));
    if (!sample) {
        m_log.Error(kNoSample, vm->TakeExceptionText().c_str());
    }
    return sample;
}

HRESULT CJNIConvertor::GetInstances(ISampleNode& node, ComPtr<IInstanceEnumerator>& instances) const {
    const HRESULT got = AskForObject(instances, [&](IInstanceEnumerator** given) { return node.get_instances(given); });
    if (FAILED(got)) {
        m_log.ErrorWithResult(got, kNoInstances);
    }
    return got;
}

void CJNIConvertor::AddSession(const std::shared_ptr<CJavaVM>& vm, CJavaObject& sample, DATE sampleTime,
                               std::wstring_view key, ISampleNode& sessionNode, ISessionCollection& sessions) const {
    const ComPtr<IUserSessionInfo> session = FindSession(sessions, key);
    const std::shared_ptr<CJavaObject> javaSession = GetUserSession(vm, session.Get());
    if (!javaSession) {
        return;
    }
    AddMetrics(vm, javaSession, &sessionNode);
    AddRemoteApps(vm, javaSession, &sessionNode);

    m_log.Verbose(kAddingSession, std::wstring(key).c_str());
    sample.CallVoidMethod(Sample::kPutSession, javaSession);
    LogIfThrown(*vm, [&](const wchar_t* thrown) {
        m_log.Error(kSessionNotAdded, std::wstring(key).c_str(), FormatSampleTime(sampleTime).GetText(), thrown);
    });
}
