#include "JavaIds.h"

#include <stdexcept>
#include <string>

namespace {

class CFinder {
public:
    CFinder(JNIEnv* env, const char* className) : m_env(env), m_class(FindGlobal(className)) {}

    [[nodiscard]] jmethodID Method(const JavaMethodBinding& row) const {
        const jmethodID method = m_env->GetMethodID(m_class, row.name, row.signature);
        if (!method) {
            throw std::runtime_error(std::string("Java has no method ") + row.name + row.signature);
        }
        return method;
    }
    [[nodiscard]] JavaMaker Maker(const JavaMethodBinding& row) const { return {m_class, Method(row)}; }
    [[nodiscard]] jobject NewGlobal(const JavaMethodBinding& constructor) const {
        return m_env->NewGlobalRef(m_env->NewObject(m_class, Method(constructor)));
    }

private:
    [[nodiscard]] jclass FindGlobal(const char* className) const {
        const jclass found = m_env->FindClass(className);
        if (!found) {
            throw std::runtime_error(std::string("Java has no class ") + className);
        }
        return static_cast<jclass>(m_env->NewGlobalRef(found));
    }

    JNIEnv* const m_env;
    const jclass m_class;
};

void FindSampleIds(JNIEnv* env, JavaIds& ids) {
    const CFinder sample(env, Binding::BaseSample::kClass);
    ids.sample = sample.Maker(Binding::BaseSample::kCtorTime);
    ids.samplePutMetric = sample.Method(Binding::BaseSample::kPutMetric);
    ids.samplePutSession = sample.Method(Binding::BaseSample::kPutSession);

    const CFinder session(env, Binding::BaseUserSession::kClass);
    ids.session = session.Maker(Binding::BaseUserSession::kCtorIdSidUserDomainConnected);
    ids.sessionPutProperty = session.Method(Binding::BaseUserSession::kPutProperty);
    ids.sessionPutMetric = session.Method(Binding::BaseUserSession::kPutMetric);
    ids.sessionPutApplication = session.Method(Binding::BaseUserSession::kPutRemoteApp);

    const CFinder application(env, Binding::BaseRemoteApp::kClass);
    ids.application = application.Maker(Binding::BaseRemoteApp::kCtorId);
    ids.applicationPutMetric = application.Method(Binding::BaseRemoteApp::kPutMetric);

    const CFinder metric(env, Binding::BaseMetric::kClass);
    ids.metric = metric.Maker(Binding::BaseMetric::kCtorName);
    ids.metricPutLong = metric.Method(Binding::BaseMetric::kPutLongValue);
    ids.metricPutDouble = metric.Method(Binding::BaseMetric::kPutDoubleValue);
    ids.metricPutText = metric.Method(Binding::BaseMetric::kPutStringValue);
    ids.metricAddInstance = metric.Method(Binding::BaseMetric::kAddInstance);
}

void FindDesktopIds(JNIEnv* env, JavaIds& ids) {
    const CFinder desktop(env, Binding::DesktopInformation::kClass);
    ids.desktop = desktop.Maker(Binding::DesktopInformation::kCtorNameFqdn);
    ids.desktopPutMemory = desktop.Method(Binding::DesktopInformation::kPutTotalMemory);
    ids.desktopAddAdapter = desktop.Method(Binding::DesktopInformation::kAddNetworkInterface);

    const CFinder adapter(env, Binding::NetworkInterface::kClass);
    ids.adapter = adapter.Maker(Binding::NetworkInterface::kCtorDescription);
    ids.adapterPutMac = adapter.Method(Binding::NetworkInterface::kPutMacAddress);
    ids.adapterPutIp = adapter.Method(Binding::NetworkInterface::kPutIpAddress);
    ids.adapterPutMask = adapter.Method(Binding::NetworkInterface::kPutSubnetMask);
    ids.adapterPutSubnet = adapter.Method(Binding::NetworkInterface::kPutSubnet);
    ids.adapterPutSpeed = adapter.Method(Binding::NetworkInterface::kPutLinkSpeed);

    const CFinder connection(env, Binding::DesktopConnection::kClass);
    ids.connection = connection.Maker(Binding::DesktopConnection::kCtorIdAuthTokenUniqueIdVersionDeviceType);
    const CFinder map(env, Binding::HashMap::kClass);
    ids.map = map.Maker(Binding::HashMap::kCtor);
    ids.mapPut = map.Method(Binding::HashMap::kPut);
}

void FindClientIds(JNIEnv* env, JavaIds& ids) {
    namespace Client = Binding::DesktopMessageClient;
    const CFinder client(env, Client::kClass);
    ids.client = client.NewGlobal(Client::kCtor);
    ids.onStartup = client.Method(Client::kOnStartup);
    ids.onUserLogon = client.Method(Client::kOnUserLogon);
    ids.onUserLogoff = client.Method(Client::kOnUserLogoff);
    ids.onUserDisconnect = client.Method(Client::kOnUserDisconnect);
    ids.onUserReconnect = client.Method(Client::kOnUserReconnect);
    ids.refreshSession = client.Method(Client::kRefreshSession);
    ids.onDataCollected = client.Method(Client::kOnDataCollected);
    ids.onExtendedDataCollected = client.Method(Client::kOnExtendedDataCollected);
    ids.onDesktopPoll = client.Method(Client::kOnDesktopPoll);
}

}  // namespace

JavaIds FindJavaIds(JNIEnv* env) {
    JavaIds ids{};
    FindSampleIds(env, ids);
    FindDesktopIds(env, ids);
    FindClientIds(env, ids);
    return ids;
}
