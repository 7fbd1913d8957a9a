// The whole data model, made through the wrappers and the binding table on the real Java runtime, as the message server
// hears it from the real message client.

#include <optional>
#include <string>
#include <type_traits>

#include "BindingTable.h"
#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CJavaClass.h"
#include "CJavaLocalFrame.h"
#include "CJavaString.h"
#include "CMessageServer.h"
#include "JavaBridge.h"
#include "RoadItems.h"
#include "TestPaths.h"

namespace {

namespace Client = Binding::DesktopMessageClient;
using JavaPointer = std::shared_ptr<CJavaObject>;

class ModelRoadTest : public CHostedTest {
protected:
    void SetUp() override {
        CHostedTest::SetUp();
        m_registry.SetAgentText(L"JrePath", TestPaths::kRealRuntime);
        m_registry.SetAgentText(L"ClassPath", TestPaths::kMessageClientFolder);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
        ASSERT_EQ(StartJavaBridge(MakeLog(), m_bridge), S_OK);
        m_frame.emplace(m_bridge.vm->GetEnv());
        Call(m_bridge.messageClient, Client::kSetProviderUrl, Text(m_server.Url()));
        Call(m_bridge.messageClient, Client::kInitialize, nullptr, nullptr);
    }

    void TearDown() override {
        m_frame.reset();
        StopJavaBridge(m_bridge);
        CHostedTest::TearDown();
    }

    [[nodiscard]] std::shared_ptr<CJavaString> Text(const std::wstring& text) { return m_bridge.vm->NewString(text); }

    template <typename Constructor, typename... Arguments>
    [[nodiscard]] JavaPointer Make(const char* className, const Constructor& constructor,
                                   const Arguments&... arguments) {
        JavaPointer made = m_bridge.vm->GetClass(className)->NewObject(constructor, arguments...);
        ExpectNoException();
        return made;
    }

    template <typename Method, typename... Arguments>
    void Call(const JavaPointer& object, const Method& method, const Arguments&... arguments) {
        object->CallVoidMethod(method, arguments...);
        ExpectNoException();
    }

    /// Calls a method of the client's, whatever it returns.
    template <typename Result, typename... Parameters, typename... Arguments>
    void Send(const JavaMethod<Result(Parameters...)>& method, const Arguments&... arguments) {
        if constexpr (std::is_void_v<Result>) {
            m_bridge.messageClient->CallVoidMethod(method, arguments...);
        } else {
            static_cast<void>(m_bridge.messageClient->CallStringMethod(method, arguments...));
        }
        ExpectNoException();
    }

    JavaPointer MakeConnection() {
        namespace Connection = Binding::DesktopConnection;
        return Make(Connection::kClass, Connection::kCtorIdAuthTokenUniqueIdVersionDeviceType, Text(L"id"),
                    Text(L"token"), Text(L"unique"), jint{-1}, Text(L"SERVER"));
    }

    JavaPointer MakeDesktop() {
        namespace Desktop = Binding::DesktopInformation;
        namespace Adapter = Binding::NetworkInterface;
        const JavaPointer adapter = Make(Adapter::kClass, Adapter::kCtorDescription, Text(L"adapter"));
        Call(adapter, Adapter::kPutMacAddress, Text(L"mac"));
        Call(adapter, Adapter::kPutIpAddress, Text(L"ip"));
        Call(adapter, Adapter::kPutSubnetMask, Text(L"mask"));
        Call(adapter, Adapter::kPutSubnet, Text(L"subnet"));
        Call(adapter, Adapter::kPutLinkSpeed, jint{2147483647});
        JavaPointer desktop = Make(Desktop::kClass, Desktop::kCtorNameFqdn, Text(L"name"), Text(L"fqdn"));
        Call(desktop, Desktop::kPutTotalMemory, jint{-2147483647});
        Call(desktop, Desktop::kAddNetworkInterface, adapter);
        return desktop;
    }

    JavaPointer MakeMetric(const std::wstring& name, jdouble value) {
        JavaPointer metric = MakeMetric(name);
        Call(metric, Binding::BaseMetric::kPutDoubleValue, value);
        return metric;
    }

    JavaPointer MakeMetric(const std::wstring& name) {
        return Make(Binding::BaseMetric::kClass, Binding::BaseMetric::kCtorName, Text(name));
    }

    /// A metric of each kind, put into something that takes metrics.
    template <typename Method>
    void PutMetrics(const JavaPointer& owner, const Method& putMetric) {
        Call(owner, putMetric, MakeMetric(L"double", 0.5));
        const JavaPointer number = MakeMetric(L"long");
        Call(number, Binding::BaseMetric::kPutLongValue, jlong{0x7fffffffffffffff});
        Call(owner, putMetric, number);
        const JavaPointer text = MakeMetric(L"text");
        Call(text, Binding::BaseMetric::kPutStringValue, Text(L"gr\u00fc\u00df"));
        Call(owner, putMetric, text);
        const JavaPointer instances = MakeMetric(L"instances");
        Call(instances, Binding::BaseMetric::kAddInstance, MakeMetric(L"C:", -0.25));
        Call(owner, putMetric, instances);
    }

    JavaPointer MakeSession() {
        namespace Session = Binding::BaseUserSession;
        namespace App = Binding::BaseRemoteApp;
        const JavaPointer app = Make(App::kClass, App::kCtorId, Text(L"app"));
        Call(app, App::kPutProperty, Text(L"path"), Text(L"C:\\app"));
        Call(app, App::kPutMetric, MakeMetric(L"cpu", 1.0));
        JavaPointer session = Make(Session::kClass, Session::kCtorIdSidUserDomainConnected, jint{7}, Text(L"sid"),
                                   Text(L"user"), Text(L"domain"), true);
        Call(session, Session::kPutProperty, Text(L"client"), Text(L"desk"));
        PutMetrics(session, Session::kPutMetric);
        Call(session, Session::kPutRemoteApp, app);
        return session;
    }

    JavaPointer MakeSample() {
        namespace Sample = Binding::BaseSample;
        JavaPointer sample = Make(Sample::kClass, Sample::kCtorTime, jlong{86400000});
        PutMetrics(sample, Sample::kPutMetric);
        Call(sample, Sample::kPutSession, MakeSession());
        return sample;
    }

    JavaPointer MakeMap() {
        JavaPointer map = Make(Binding::HashMap::kClass, Binding::HashMap::kCtor);
        static_cast<void>(map->CallStringMethod(Binding::HashMap::kPut, Text(L"key"), Text(L"value")));
        ExpectNoException();
        return map;
    }

    const CMessageServer m_server{"plain"};

private:
    void ExpectNoException() {
        std::wstring text;
        EXPECT_FALSE(m_bridge.vm->GetJavaException(text)) << std::string(text.begin(), text.end());
    }

    CAgentRegistry m_registry;
    JavaBridge m_bridge;
    std::optional<CJavaLocalFrame> m_frame;
};

// What the objects above are in the server's record.

const std::string kConnection =
    R"("connection":{"id":"id","authToken":"token","uniqueId":"unique","version":{"int":-1},"deviceType":"SERVER"})";
const std::string kDesktop =
    R"("desktop":{"name":"name","fqdn":"fqdn","totalMemory":{"int":-2147483647},"networkInterfaces":[)"
    R"({"description":"adapter","macAddress":"mac","ipAddress":"ip","subnetMask":"mask","subnet":"subnet",)"
    R"("linkSpeed":{"int":2147483647}}]})";
const std::string kMetrics =
    R"("metrics":[{"name":"double","value":{"double":0.5}},{"name":"long","value":{"long":9223372036854775807}},)"
    R"({"name":"text","value":"gr\u00fc\u00df"},{"name":"instances","instances":[{"name":"C:","value":{"double":-0.25}}]}])";
const std::string kSession =
    R"({"id":{"int":7},"sid":"sid","user":"user","domain":"domain","connected":true,"properties":[["client","desk"]],)" +
    kMetrics +
    R"(,"remoteApps":[{"id":"app","properties":[["path","C:\\app"]],"metrics":[{"name":"cpu","value":{"double":1.0}}]}]})";
const std::string kSample = R"("sample":{"time":{"long":86400000},)" + kMetrics + R"(,"sessions":[)" + kSession + "]}";
const std::string kMetaData = R"("metaData":[["key","value"]])";

TEST_F(ModelRoadTest, EveryMethodOfTheClientReachesTheServerWithEveryValue) {
    const JavaPointer connection = MakeConnection();

    Send(Client::kOnStartup, Text(L"descriptor"), connection);
    Send(Client::kOnUserLogon, connection, MakeDesktop(), jlong{-1}, MakeSession());
    Send(Client::kOnUserLogoff, connection, jlong{1}, MakeSession());
    Send(Client::kOnUserDisconnect, connection, jlong{2}, nullptr);
    Send(Client::kOnUserReconnect, connection, jlong{3}, nullptr);
    Send(Client::kRefreshSession, connection, jlong{4}, MakeDesktop(), nullptr);
    Send(Client::kOnDataCollected, connection, MakeSample());
    Send(Client::kOnExtendedDataCollected, connection, MakeMap(), MakeSample());
    Send(Client::kOnDesktopPoll, connection, jlong{5}, Text(L""));
    Send(Client::kOnActionPerformed, connection, MakeMap(), Text(L"route"));

    EXPECT_EQ(m_server.Record(),
              MakeLine("onStartup", R"("clientDescriptor":"descriptor",)" + kConnection) +
                  MakeLine("onUserLogon", kConnection + "," + kDesktop + R"(,"id":{"long":-1},"session":)" + kSession) +
                  MakeLine("onUserLogoff", kConnection + R"(,"id":{"long":1},"session":)" + kSession) +
                  MakeLine("onUserDisconnect", kConnection + R"(,"id":{"long":2},"session":null)") +
                  MakeLine("onUserReconnect", kConnection + R"(,"id":{"long":3},"session":null)") +
                  MakeLine("refreshSession", kConnection + R"(,"id":{"long":4},)" + kDesktop + R"(,"session":null)") +
                  MakeLine("onDataCollected", kConnection + "," + kSample) +
                  MakeLine("onExtendedDataCollected", kConnection + "," + kMetaData + "," + kSample) +
                  MakeLine("onDesktopPoll", kConnection + R"(,"id":{"long":5},"data":"")") +
                  MakeLine("onActionPerformed", kConnection + "," + kMetaData + R"(,"result":"route")"));
}

}  // namespace
