// From a host's call through the manager, the real Java runtime and the real message client to the message server, and
// back. Each test has a process and servers of its own.

#include <boost/thread/detail/tss_hooks.hpp>
#include <filesystem>
#include <fstream>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CRMICommManagerImpl.h"
#include "CRecordingCallback.h"
#include "CThreadSlots.h"
#include "Road.h"
#include "RunOnNewThread.h"
#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;
using Reports = CRecordingCallback::Reports;

constexpr unsigned char kNamelessKind = 11;
constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

class MessageServerRoadTest : public CHostedTest {
protected:
    void SetUp() override {
        CHostedTest::SetUp();
        m_registry.SetAgentText(L"JrePath", TestPaths::kRealRuntime);
        m_registry.SetAgentText(L"ClassPath", TestPaths::kMessageClientFolder);
        m_registry.SetAgentText(L"ConfigDirectory", L"C:\\Config");
        SystemData system;
        system.machineName = L"desk \u00e9\u4e2d";
        system.machineId = L"machine 7";
        system.virtualMachineId = L"vm 7";
        system.isDesktop = VARIANT_TRUE;
        SetSystem(system);
        m_manager = std::make_unique<CRMICommManagerImpl>(m_slots);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
    }

    void TearDown() override {
        m_slots.RunCleaner();
        m_manager.reset();
        boost::on_thread_exit();  // gives back what Boost keeps for this thread to its end
        CHostedTest::TearDown();
    }

    long Dump(const std::wstring& url, const std::wstring& certificate, unsigned char type) {
        return m_manager->DumpData<IUnknown>(url.c_str(), L"the token", certificate.c_str(), 1, type, nullptr);
    }

    void ExpectNotSent(const std::wstring& exception) {
        EXPECT_EQ(Logged().back().rfind(
                      L"error: Failed to send data with type eStartup to the message server.  " + exception, 0),
                  0U)
            << "the last entry begins with the exception";
    }
    [[nodiscard]] bool HasLogged(const std::wstring& part) {
        for (const std::wstring& entry : Logged()) {
            if (entry.find(part) != std::wstring::npos) {
                return true;
            }
        }
        return false;
    }

    CRecordingCallback m_callback;
    CThreadSlots m_slots;
    std::unique_ptr<CRMICommManagerImpl> m_manager;

private:
    CAgentRegistry m_registry;
};

/// How the server writes down the report that Dump sends.
constexpr char kReport[] =
    R"({"method":"onStartup","arguments":{"clientDescriptor":"<client><type>DesktopAgent</type>)"
    R"(<name>desk \u00e9\u4e2d</name><id>machine 7</id><version>6.2.0.3274634</version><uniqueid>vm 7</uniqueid></client>",)"
    R"("connection":{"id":"machine 7","authToken":"the token","uniqueId":"vm 7","version":{"int":393728},)"
    R"("deviceType":"DESKTOP"}}})";

TEST_F(MessageServerRoadTest, AStartUpReachesTheServerAndItsAnswerTheHost) {
    EXPECT_EQ(Dump(Road::PlainUrl(), L"", eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
    EXPECT_EQ(Road::ReadText(Road::File(L"plain.json")), std::string(kReport) + "\n");
}

TEST_F(MessageServerRoadTest, AThreadWithoutAContextClassLoaderReportsLikeTheFirst) {
    ASSERT_EQ(Dump(Road::PlainUrl(), L"", eStartup), S_OK);

    RunOnNewThread([&] {
        EXPECT_EQ(Dump(Road::PlainUrl(), L"", eStartup), S_OK);
        EXPECT_EQ(Dump(Road::TlsUrl(), Road::ReadCertificate(L"server.pem"), eStartup), S_OK)
            << "a connection of its own, too";
    });

    EXPECT_EQ(m_callback.Told(), Reports(3, {eStartup, L"welcome"}));
}

TEST_F(MessageServerRoadTest, AFirstCallMayComeFromAThreadThatDidNotStartJava) {
    ASSERT_EQ(m_manager->DumpData<IUnknown>(nullptr, nullptr, nullptr, 1, kNamelessKind, nullptr), S_OK);

    RunOnNewThread([&] { EXPECT_EQ(Dump(Road::PlainUrl(), L"", eStartup), S_OK); });

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
}

TEST_F(MessageServerRoadTest, OverTlsTheCertificateThatTheHostKnowsIsTrusted) {
    EXPECT_EQ(Dump(Road::TlsUrl(), Road::ReadCertificate(L"server.pem"), eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
    EXPECT_EQ(Road::ReadText(Road::File(L"tls.json")), std::string(kReport) + "\n");
}

TEST_F(MessageServerRoadTest, AnotherCertificateIsRefused) {
    EXPECT_EQ(Dump(Road::TlsUrl(), Road::ReadCertificate(L"other.pem"), eStartup), kServerNotReached);

    ExpectNotSent(L"java.rmi.ConnectIOException");
    EXPECT_EQ(Road::ReadText(Road::File(L"tls.json")), "") << "nothing got through";
}

TEST_F(MessageServerRoadTest, AServerThatIsNotThereGivesAResultOfItsOwn) {
    EXPECT_EQ(Dump(L"rmi://127.0.0.1:1", L"", eStartup), kServerNotReached);

    ExpectNotSent(L"java.rmi.ConnectException");
}

TEST_F(MessageServerRoadTest, ATextThatIsNoCertificateFailsTheSwitch) {
    EXPECT_EQ(Dump(Road::TlsUrl(), L"no certificate", eStartup), E_FAIL);

    EXPECT_TRUE(HasLogged(L"Failed to initialize RMI in the Java client.  java.security.cert.CertificateException"));
}

TEST_F(MessageServerRoadTest, AServerThatHasGoneGivesAResultOfItsOwn) {
    ASSERT_EQ(Dump(Road::PlainUrl(), L"", eStartup), S_OK);
    std::ofstream(Road::File(L"stop")) << "now";
    while (!fs::exists(Road::File(L"stopped"))) {
        Sleep(10);
    }

    EXPECT_EQ(Dump(Road::PlainUrl(), L"", eStartup), kServerNotReached);
    ExpectNotSent(L"java.rmi.ConnectException");
    EXPECT_EQ(Dump(Road::TlsUrl(), Road::ReadCertificate(L"server.pem"), eStartup), S_OK)
        << "another one is switched to";
}

}  // namespace
