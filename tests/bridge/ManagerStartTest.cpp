#include <filesystem>
#include <fstream>

#include "BindingTable.h"
#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CThreadSlots.h"
#include "CRMICommManagerImpl.h"
#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

/// The manager's start and end on the real runtime, with real classes of the contract in a real archive. Each test has
/// a process of its own.
class ManagerStartTest : public CHostedTest {
protected:
    void SetUp() override {
        CHostedTest::SetUp();
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kRealRuntime);
        m_registry->SetAgentText(L"ClassPath", TestPaths::kContractFolder);
        m_registry->SetAgentText(L"LogDirectory", L"C:\\Logs \u00e9\u4e2d");
    }

    void TearDown() override {
        m_registry.reset();
        CHostedTest::TearDown();
    }

    /// Starts the real machine.
    long Start(CRMICommManagerImpl& manager) {
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
        return manager.Initialize();
    }

    static std::wstring Wide(const char* text) { return {text, text + std::char_traits<char>::length(text)}; }
    static std::wstring Loaded(const char* className) { return L"verbose 8: Loaded class " + Wide(className) + L"."; }
    static std::wstring Missing(const char* className) {
        return L"error: Failed to load class " + Wide(className) + L".  java.lang.NoClassDefFoundError: " +
               Wide(className);
    }

    std::unique_ptr<CAgentRegistry> m_registry;
    CThreadSlots m_slots;
};

TEST_F(ManagerStartTest, TheRealMachineStartsWithTheContractsClasses) {
    CRMICommManagerImpl manager(m_slots);

    EXPECT_EQ(Start(manager), S_OK);

    EXPECT_EQ(
        Logged(),
        (Texts{L"info: Using JRE from '" + std::wstring(TestPaths::kRealRuntime) + L"'.",
               Loaded(Binding::InstanceLoggerFactory::kClass), L"info: SUCCESSFULLY initialized the Message Logger.",
               Loaded(Binding::DesktopMessageClient::kClass), Loaded(Binding::DesktopConnection::kClass),
               Loaded(Binding::DesktopInformation::kClass), Loaded(Binding::NetworkInterface::kClass),
               Loaded(Binding::BaseUserSession::kClass), Loaded(Binding::BaseSample::kClass),
               Loaded(Binding::BaseMetric::kClass), Loaded(Binding::BaseRemoteApp::kClass),
               Loaded(Binding::HashMap::kClass), L"info: Initialized communication manager."}));
    manager.Dispose();
}

TEST_F(ManagerStartTest, ADisposedManagersMachineStaysInTheProcess) {
    CRMICommManagerImpl manager(m_slots);
    ASSERT_EQ(Start(manager), S_OK);

    manager.Dispose();

    EXPECT_NE(GetModuleHandleW(L"jvm.dll"), nullptr);
    CRMICommManagerImpl second(m_slots);
    EXPECT_EQ(second.Initialize(), E_FAIL) << "the runtime refuses a second machine";
    EXPECT_EQ(Logged().back(), L"error: Failed to create a Java virtual machine instance." + ErrorText(JNI_EEXIST));
}

TEST_F(ManagerStartTest, WithoutAClassPathTheFirstClassesAreMissing) {
    m_registry->SetAgentText(L"ClassPath", L"C:\\no such folder");
    CRMICommManagerImpl manager(m_slots);

    EXPECT_EQ(Start(manager), E_FAIL);

    const Texts logged = Logged();
    ASSERT_EQ(logged.size(), 4U);
    EXPECT_EQ(logged[2], Missing(Binding::InstanceLoggerFactory::kClass));
    EXPECT_EQ(logged[3], Missing(Binding::DesktopMessageClient::kClass));
    manager.Dispose();
}

TEST_F(ManagerStartTest, AManagerThatDiesWithItsMachineUpLeavesItRunning) {
    {
        CRMICommManagerImpl manager(m_slots);
        ASSERT_EQ(Start(manager), S_OK);
    }

    CRMICommManagerImpl second(m_slots);
    EXPECT_EQ(second.Initialize(), E_FAIL);
    EXPECT_EQ(Logged().back(), L"error: Failed to create a Java virtual machine instance." + ErrorText(JNI_EEXIST));
}

TEST_F(ManagerStartTest, AClassPathOfManyArchivesWithBlanksAndAccentsIsSearched) {
    const fs::path folder =
        fs::temp_directory_path() / (L"many archives \u00e9 " + std::to_wstring(GetCurrentProcessId()));
    std::error_code ignored;  // the machine keeps its archives open to the end of the process
    fs::remove_all(folder, ignored);
    fs::create_directories(folder);
    const fs::path archive = fs::directory_iterator(TestPaths::kContractFolder)->path();
    for (int i = 0; i < 1000; ++i) {
        std::ofstream(folder / (std::to_string(i) + ".jar")) << "no archive: Java passes it over";
    }
    fs::copy_file(archive, folder / "the contract.jar");
    m_registry->SetAgentText(L"ClassPath", folder.wstring());
    CRMICommManagerImpl manager(m_slots);

    EXPECT_EQ(Start(manager), S_OK);

    manager.Dispose();
    fs::remove_all(folder, ignored);
}

}  // namespace
