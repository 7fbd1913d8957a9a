#include "JavaBridge.h"

#include <algorithm>

#include "BindingTable.h"
#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "LoadedFakeRuntime.h"
#include "TestPaths.h"

namespace {

using Texts = std::vector<std::wstring>;

/// The start of the Java side, on the fake runtime, every step of which can be made to fail.
class JavaBridgeTest : public CHostedTest {
protected:
    static void SetUpTestSuite() { static_cast<void>(LoadedFakeRuntime()); }

    void SetUp() override {
        CHostedTest::SetUp();
        Fake().Reset();
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kFakeRuntime);
        m_registry->SetAgentText(L"LogDirectory", L"C:\\Logs");
    }

    void TearDown() override {
        m_registry.reset();
        for (long i = 0; i < Fake().GetMisuseCount(); ++i) {
            ADD_FAILURE() << "broken rule: " << Fake().GetMisuse(i);
        }
        CHostedTest::TearDown();
    }

    static IFakeRuntime& Fake() { return LoadedFakeRuntime(); }

    /// Starts a bridge, expects its result, and says what was logged behind the discovery of the runtime.
    Texts Start(HRESULT expected, JavaBridge& bridge) {
        EXPECT_EQ(StartJavaBridge(MakeLog(), bridge), expected);
        EXPECT_FALSE(Fake().IsExceptionPending());
        EXPECT_EQ(Fake().GetOpenFrames(), 0);
        EXPECT_EQ(Fake().GetLocalReferences(), 0);
        Texts logged = Logged();
        // "Using JRE from ..." and the missing class path.
        EXPECT_GE(logged.size(), 2U);
        logged.erase(logged.begin(), logged.begin() + 2);
        return logged;
    }

    Texts StartAndFail() {
        JavaBridge bridge;
        Texts logged = Start(E_FAIL, bridge);
        EXPECT_EQ(bridge.messageClient, nullptr);
        StopJavaBridge(bridge);
        EXPECT_EQ(Fake().GetGlobalReferences(), 0);
        return logged;
    }

    static std::wstring Wide(const char* text) { return {text, text + std::char_traits<char>::length(text)}; }
    static std::wstring Loaded(const char* className) { return L"verbose 8: Loaded class " + Wide(className) + L"."; }

    const std::wstring m_loggerReady = L"info: SUCCESSFULLY initialized the Message Logger.";
    const std::wstring m_ready = L"info: Initialized communication manager.";
    std::unique_ptr<CAgentRegistry> m_registry;
};

constexpr const char* kLoadedInOrder[] = {
    Binding::DesktopMessageClient::kClass, Binding::DesktopConnection::kClass, Binding::DesktopInformation::kClass,
    Binding::NetworkInterface::kClass,     Binding::BaseUserSession::kClass,   Binding::BaseSample::kClass,
    Binding::BaseMetric::kClass,           Binding::BaseRemoteApp::kClass,     Binding::HashMap::kClass,
};

TEST_F(JavaBridgeTest, AStartLoadsTheClassesInTheirOrderAndMakesTheClient) {
    JavaBridge bridge;

    const Texts logged = Start(S_OK, bridge);

    Texts expected = {Loaded(Binding::InstanceLoggerFactory::kClass), m_loggerReady};
    for (const char* const className : kLoadedInOrder) {
        expected.push_back(Loaded(className));
    }
    expected.push_back(m_ready);
    EXPECT_EQ(logged, expected);
    EXPECT_NE(bridge.messageClient, nullptr);
    EXPECT_NE(bridge.loggerFactory, nullptr);
    ASSERT_EQ(Fake().GetMethodLogSize(), 2);
    EXPECT_EQ(std::string(Fake().GetMethodLogEntry(0)),
              std::string(Binding::InstanceLoggerFactory::kClass) + R"(.<init>(Ljava/lang/String;)V("C:\u005cLogs"))");
    EXPECT_EQ(std::string(Fake().GetMethodLogEntry(1)),
              std::string(Binding::DesktopMessageClient::kClass) + ".<init>()V()");
    EXPECT_EQ(Fake().GetOptionCount(), 3);
    EXPECT_STREQ(Fake().GetOption(0), "-Djava.class.path=");
    StopJavaBridge(bridge);
}

TEST_F(JavaBridgeTest, EveryRowOfTheTableIsBound) {
    JavaBridge bridge;
    ASSERT_EQ(StartJavaBridge(CBridgeLog(), bridge), S_OK);

    EXPECT_EQ(Fake().GetCallCount("GetMethodID"), static_cast<long>(Binding::AllRows().rowCount));
    StopJavaBridge(bridge);
}

TEST_F(JavaBridgeTest, AMissingClassStopsTheLoading) {
    for (std::size_t i = 0; i < std::size(kLoadedInOrder); ++i) {
        Fake().Reset();
        Fake().RemoveClass(kLoadedInOrder[i]);
        JavaBridge bridge;

        EXPECT_EQ(StartJavaBridge(MakeLog(), bridge), E_FAIL);

        EXPECT_EQ(Logged().back(), L"error: Failed to load class " + Wide(kLoadedInOrder[i]) +
                                       L".  java.lang.NoClassDefFoundError: " + Wide(kLoadedInOrder[i]));
        EXPECT_FALSE(Fake().IsExceptionPending());
        EXPECT_EQ(bridge.messageClient, nullptr);
        EXPECT_EQ(Fake().GetCallCount("FindClass"), static_cast<long>(i) + 2) << "no class behind it is looked for";
        StopJavaBridge(bridge);
    }
}

TEST_F(JavaBridgeTest, AMissingMethodStopsTheLoading) {
    for (const char* const className : kLoadedInOrder) {
        const Binding::ClassRows rows = Binding::FindRows(className);
        for (std::size_t i = 0; i < rows.rowCount; ++i) {
            const JavaMethodBinding& row = rows.firstRow[i];
            Fake().Reset();
            Fake().RemoveMethod(className, row.name, row.signature);
            JavaBridge bridge;

            EXPECT_EQ(StartJavaBridge(MakeLog(), bridge), E_FAIL) << className << row.alias;

            EXPECT_EQ(Logged().back(), L"error: Failed to load class " + Wide(className) +
                                           L".  java.lang.NoSuchMethodError: " + Wide(row.name));
            EXPECT_EQ(bridge.messageClient, nullptr);
            StopJavaBridge(bridge);
        }
    }
}

TEST_F(JavaBridgeTest, WithoutTheLoggersClassTheStartGoesOn) {
    Fake().RemoveClass(Binding::InstanceLoggerFactory::kClass);
    JavaBridge bridge;

    const Texts logged = Start(S_OK, bridge);

    const std::wstring name = Wide(Binding::InstanceLoggerFactory::kClass);
    EXPECT_EQ(logged.front(), L"error: Failed to load class " + name + L".  java.lang.NoClassDefFoundError: " + name);
    EXPECT_EQ(logged.back(), m_ready);
    EXPECT_EQ(bridge.loggerFactory, nullptr);
    EXPECT_NE(bridge.messageClient, nullptr);
    StopJavaBridge(bridge);
}

TEST_F(JavaBridgeTest, WithoutALogFolderAWarningAndTheSuccessAreLogged) {
    m_registry.reset();
    m_registry = std::make_unique<CAgentRegistry>();
    m_registry->SetAgentText(L"JrePath", TestPaths::kFakeRuntime);
    JavaBridge bridge;

    const Texts logged = Start(S_OK, bridge);

    EXPECT_EQ(logged[1], L"warning: Failed to retrieve the log foler path.    Error code 0x80070002.");
    EXPECT_EQ(logged[2], m_loggerReady);
    EXPECT_EQ(bridge.loggerFactory, nullptr);
    EXPECT_NE(bridge.messageClient, nullptr);
    StopJavaBridge(bridge);
}

TEST_F(JavaBridgeTest, AFolderThatBecomesNoStringFailsTheStart) {
    Fake().Fail("NewString", 1);

    const Texts logged = StartAndFail();

    EXPECT_EQ(logged.back(), L"error: Failed to create a new Java string for 'C:\\Logs'.  C:\\Logs");
}

TEST_F(JavaBridgeTest, AThrowingLoggerFactoryFailsTheStart) {
    FakeException exception;
    exception.description = "no folder";
    Fake().MakeMethodThrow(Binding::InstanceLoggerFactory::kClass, "<init>", exception);

    EXPECT_EQ(StartAndFail().back(), L"error: Failed to Initialize the Message Server Logger.  no folder");
}

TEST_F(JavaBridgeTest, AThrowingMessageClientFailsTheStart) {
    FakeException exception;
    exception.description = "%s%n%5000d";
    Fake().MakeMethodThrow(Binding::DesktopMessageClient::kClass, "<init>", exception);

    EXPECT_EQ(StartAndFail().back(), L"error: Failed to create a new message client.  %s%n%5000d");
}

TEST_F(JavaBridgeTest, AMachineThatDoesNotStartFailsTheStart) {
    Fake().SetCreateResult(JNI_ENOMEM);

    EXPECT_EQ(StartAndFail(),
              Texts{L"error: Failed to create a Java virtual machine instance." + ErrorText(JNI_ENOMEM)});
}

TEST_F(JavaBridgeTest, ARuntimeThatIsMissingDamagedOrNoneFailsTheStart) {
    struct Case {
        const wchar_t* directory;
        HRESULT result;
    };
    for (const Case& c :
         {Case{L"C:\\no such runtime\\", static_cast<HRESULT>(0x8007007E)}, Case{L"", static_cast<HRESULT>(0x8007007E)},
          Case{TestPaths::kDamagedRuntime, static_cast<HRESULT>(0x800700C1)},
          Case{TestPaths::kNotJavaRuntime, static_cast<HRESULT>(0x8007007F)}}) {
        m_registry->SetAgentText(L"JrePath", c.directory);

        EXPECT_EQ(StartAndFail().back(),
                  L"error: Failed to create a Java virtual machine instance." + ErrorText(c.result));
    }
}

TEST_F(JavaBridgeTest, ARuntimeThatGivesNoMachineFailsAtTheFirstClass) {
    Fake().SetCreateGivesNoMachine(true);

    const Texts logged = StartAndFail();

    EXPECT_EQ(logged, (Texts{L"error: Failed to load class " + Wide(Binding::InstanceLoggerFactory::kClass) + L".  ",
                             L"error: Failed to load class " + Wide(Binding::DesktopMessageClient::kClass) + L".  "}));
}

TEST_F(JavaBridgeTest, WithoutALoggerAFailureIsTheSame) {
    Fake().RemoveClass(Binding::HashMap::kClass);
    JavaBridge bridge;

    EXPECT_EQ(StartJavaBridge(CBridgeLog(), bridge), E_FAIL);

    EXPECT_FALSE(Fake().IsExceptionPending());
    StopJavaBridge(bridge);
}

TEST_F(JavaBridgeTest, EachCallOfJnisMayFailOnceOrForEver) {
    for (const long times : {1, -1}) {
        long fired = 1;
        for (long nth = 1; fired != 0; ++nth) {
            Fake().Reset();
            JavaBridge bridge;
            Fake().Fail("*", nth, times);

            const HRESULT started = StartJavaBridge(MakeLog(), bridge);
            fired = Fake().GetFaultsFired();
            Fake().ClearFaults();

            EXPECT_EQ(SUCCEEDED(started), bridge.messageClient != nullptr) << nth;
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_EQ(Fake().GetOpenFrames(), 0) << nth;
            EXPECT_EQ(Fake().GetPinnedStrings(), 0) << nth;
            StopJavaBridge(bridge);
            EXPECT_EQ(Fake().GetGlobalReferences(), 0) << nth;
        }
    }
}

// ---- stop -----------------------------------------------------------------------------------------------

TEST_F(JavaBridgeTest, AStopDisposesTheClientReleasesEverythingAndAbandonsTheMachine) {
    JavaBridge bridge;
    ASSERT_EQ(StartJavaBridge(CBridgeLog(), bridge), S_OK);

    StopJavaBridge(bridge);

    EXPECT_EQ(std::string(Fake().GetMethodLogEntry(Fake().GetMethodLogSize() - 1)),
              std::string(Binding::DesktopMessageClient::kClass) + ".dispose()V()");
    EXPECT_EQ(bridge.vm, nullptr);
    EXPECT_EQ(bridge.messageClient, nullptr);
    EXPECT_EQ(bridge.loggerFactory, nullptr);
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
    EXPECT_EQ(Fake().GetMachinesAlive(), 1);
    EXPECT_EQ(Fake().GetCallCount("DestroyJavaVM"), 0);
    EXPECT_EQ(Fake().GetOpenFrames(), 0);
}

TEST_F(JavaBridgeTest, TheClientIsDisposedBeforeAnyReferenceGoes) {
    JavaBridge bridge;
    ASSERT_EQ(StartJavaBridge(CBridgeLog(), bridge), S_OK);
    const long firstCall = Fake().GetCallLogSize();

    StopJavaBridge(bridge);

    std::vector<std::string> calls;
    for (long i = firstCall; i < Fake().GetCallLogSize(); ++i) {
        calls.emplace_back(Fake().GetCallLogEntry(i));
    }
    const auto disposed = std::find(calls.begin(), calls.end(), "CallVoidMethodV");
    ASSERT_NE(disposed, calls.end());
    EXPECT_EQ(std::count(calls.begin(), disposed, "DeleteGlobalRef"), 0);
    EXPECT_EQ(std::count(disposed, calls.end(), "DeleteGlobalRef"), 12) << "the factory, the client, ten classes";
}

TEST_F(JavaBridgeTest, AThrowingDisposeIsClearedUnseen) {
    Fake().MakeMethodThrow(Binding::DesktopMessageClient::kClass, "dispose", {});
    JavaBridge bridge;
    ASSERT_EQ(StartJavaBridge(MakeLog(), bridge), S_OK);
    const std::size_t logged = Logged().size();

    StopJavaBridge(bridge);

    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(Logged().size(), logged);
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
}

TEST_F(JavaBridgeTest, AnAbandonedBridgeCallsNothing) {
    JavaBridge bridge;
    ASSERT_EQ(StartJavaBridge(CBridgeLog(), bridge), S_OK);
    const long calls = Fake().GetCallLogSize();

    AbandonJavaBridge(bridge);

    EXPECT_EQ(Fake().GetCallLogSize(), calls);
    EXPECT_EQ(bridge.vm, nullptr);
    EXPECT_EQ(bridge.messageClient, nullptr) << "it must not outlive its machine's wrapper";
    EXPECT_EQ(bridge.loggerFactory, nullptr);
    EXPECT_EQ(Fake().GetMachinesAlive(), 1);
}

TEST_F(JavaBridgeTest, StoppingWhatNeverStartedDoesNothing) {
    JavaBridge bridge;

    StopJavaBridge(bridge);
    AbandonJavaBridge(bridge);

    EXPECT_EQ(Fake().GetCallLogSize(), 0);
}

}  // namespace
