#include "RuntimeDiscovery.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "CAgentRegistry.h"
#include "CHostedTest.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

constexpr HRESULT kNotFound = static_cast<HRESULT>(0x80070002);
constexpr HRESULT kInvalidData = static_cast<HRESULT>(0x8007000D);

class RuntimeDiscoveryTest : public CHostedTest {
protected:
    RuntimeDiscoveryTest()
        : m_folder(fs::temp_directory_path() / (L"jars \u00e9 " + std::to_wstring(GetCurrentProcessId()))) {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    ~RuntimeDiscoveryTest() override { fs::remove_all(m_folder); }

    std::wstring JavaHome(HRESULT expected = S_OK) {
        std::wstring directory;
        EXPECT_EQ(GetJavaHome(MakeLog(), directory), expected);
        return directory;
    }

    std::string ClassPath(HRESULT expected = S_OK) {
        std::string classPath;
        EXPECT_EQ(GetClassPath(MakeLog(), classPath), expected);
        return classPath;
    }

    void MakeArchive(const std::wstring& name) const { std::ofstream(m_folder / name) << "x"; }

    /// A path of the test's folder as the class path holds it.
    std::string Narrow(const std::wstring& name) const {
        const std::wstring path = (m_folder / name).wstring();
        std::string narrow(path.size(), '\0');
        for (std::size_t i = 0; i < path.size(); ++i) {
            narrow[i] = path[i] < 0x100 ? static_cast<char>(path[i]) : '?';  // code page 1252, as far as used here
        }
        return narrow;
    }

    const CAgentRegistry m_registry;
    const fs::path m_folder;
};

// ---- the runtime's directory ----------------------------------------------------------------------------

TEST_F(RuntimeDiscoveryTest, TheAgentsOwnRuntimeGoesFirst) {
    m_registry.SetAgentText(L"JrePath", L"C:\\Java\\");
    m_registry.SetBrokerText(L"JavaHome", L"D:\\Java\\");

    EXPECT_EQ(JavaHome(), L"C:\\Java\\");
    EXPECT_EQ(Logged(), Texts{L"info: Using JRE from 'C:\\Java\\'."});
}

TEST_F(RuntimeDiscoveryTest, ADirectoryWithoutItsBackslashGetsOne) {
    m_registry.SetAgentText(L"JrePath", L"C:\\Java");

    EXPECT_EQ(JavaHome(), L"C:\\Java\\");
}

TEST_F(RuntimeDiscoveryTest, TheBrokersRuntimeIsTheFirstFallback) {
    m_registry.SetBrokerText(L"JavaHome", L"D:\\Java");

    EXPECT_EQ(JavaHome(), L"D:\\Java\\");
    EXPECT_EQ(Logged(), Texts{L"info: Using JRE from 'D:\\Java\\'."});
}

TEST_F(RuntimeDiscoveryTest, TheBrokersInstallationIsTheSecondFallback) {
    for (const wchar_t* const folder : {L"C:\\Agent", L"C:\\Agent\\"}) {
        m_registry.SetBrokerText(L"AgentInstallPath", folder);

        EXPECT_EQ(JavaHome(), L"C:\\Agent\\jre\\") << folder;
    }
    const std::wstring warning =
        L"warning: Failed to retrieve the Java home path.  Using the Lumeth agent's JRE instead.  Error code "
        L"0x80070002.";
    EXPECT_EQ(Logged(), (Texts{warning, L"info: Using JRE from 'C:\\Agent\\jre\\'.", warning,
                               L"info: Using JRE from 'C:\\Agent\\jre\\'."}));
}

TEST_F(RuntimeDiscoveryTest, TheWarningCarriesTheSecondReadsResult) {
    m_registry.SetAgentText(L"Other", L"");
    CAgentRegistry::SetBytes(CAgentRegistry::BrokerKey(), L"JavaHome", REG_DWORD, {1, 0, 0, 0});
    m_registry.SetBrokerText(L"AgentInstallPath", L"C:\\Agent");

    EXPECT_EQ(JavaHome(), L"C:\\Agent\\jre\\");
    EXPECT_EQ(Logged()[0],
              L"warning: Failed to retrieve the Java home path.  Using the Lumeth agent's JRE instead.  Error code "
              L"0x8007000d.");
}

TEST_F(RuntimeDiscoveryTest, WithoutAnyOfThemTheLastReadsResultIsReturned) {
    EXPECT_EQ(JavaHome(kNotFound), L"");
    EXPECT_EQ(Logged(),
              (Texts{L"warning: Failed to retrieve the Java home path.  Using the Lumeth agent's JRE instead.  Error "
                     L"code 0x80070002.",
                     L"error: Failed to get the agent's installation path." + ErrorText(kNotFound)}));
}

TEST_F(RuntimeDiscoveryTest, WhatAFailedReadLeavesStaysInTheOutput) {
    CAgentRegistry::SetBytes(CAgentRegistry::BrokerKey(), L"AgentInstallPath", REG_SZ, BytesOf(L"C:\\Agent", 0));

    EXPECT_EQ(JavaHome(kInvalidData), L"C:\\Agent");
    EXPECT_EQ(Logged()[1], L"error: Failed to get the agent's installation path." + ErrorText(kInvalidData));
}

TEST_F(RuntimeDiscoveryTest, AnEmptyDirectoryStaysEmpty) {
    m_registry.SetAgentText(L"JrePath", L"");

    EXPECT_EQ(JavaHome(), L"");
    EXPECT_EQ(Logged(), Texts{L"info: Using JRE from ''."});
}

TEST_F(RuntimeDiscoveryTest, DirectivesInADirectoryAreLoggedAsThemselves) {
    m_registry.SetAgentText(L"JrePath", L"%s%n%5000d\\");

    EXPECT_EQ(JavaHome(), L"%s%n%5000d\\");
    EXPECT_EQ(Logged(), Texts{L"info: Using JRE from '%s%n%5000d\\'."});
}

TEST_F(RuntimeDiscoveryTest, WithoutALoggerTheResultsAreTheSame) {
    std::wstring directory;
    std::string classPath;

    EXPECT_EQ(GetJavaHome(CBridgeLog(), directory), kNotFound);
    EXPECT_EQ(GetClassPath(CBridgeLog(), classPath), kNotFound);
}

// ---- the class path -------------------------------------------------------------------------------------

TEST_F(RuntimeDiscoveryTest, TheArchivesOfTheFolderAreJoinedInTheFileSystemsOrder) {
    for (const wchar_t* const name : {L"a.jar", L"b c.jar", L"d.JAR", L"e.txt", L"f.jar.bak"}) {
        MakeArchive(name);
    }
    m_registry.SetAgentText(L"ClassPath", m_folder.wstring());
    std::string expected;
    for (const auto& entry : fs::directory_iterator(m_folder)) {
        const std::wstring name = entry.path().filename().wstring();
        if (name == L"a.jar" || name == L"b c.jar" || name == L"d.JAR") {
            expected += (expected.empty() ? "" : ";") + Narrow(name);
        }
    }

    EXPECT_EQ(ClassPath(), expected);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), ';'), 2);
    EXPECT_EQ(Logged(), Texts{});
}

TEST_F(RuntimeDiscoveryTest, AFolderNamedLikeAnArchiveIsSkippedAndNotSearched) {
    MakeArchive(L"a.jar");
    fs::create_directory(m_folder / L"folder.jar");
    std::ofstream(m_folder / L"folder.jar" / L"inner.jar") << "x";
    m_registry.SetAgentText(L"ClassPath", m_folder.wstring() + L"\\");

    EXPECT_EQ(ClassPath(), Narrow(L"a.jar"));
}

TEST_F(RuntimeDiscoveryTest, AFolderWithoutArchivesGivesAnEmptyClassPathAndIsLogged) {
    m_registry.SetAgentText(L"ClassPath", m_folder.wstring());

    EXPECT_EQ(ClassPath(kNotFound), "");
    EXPECT_EQ(Logged(), Texts{L"error: Failed to enumerate class path directory '" + m_folder.wstring() + L"\\*.jar'." +
                              ErrorText(kNotFound)});
    EXPECT_EQ(MakeJavaOptions("")[0], "-Djava.class.path=");
}

TEST_F(RuntimeDiscoveryTest, AMissingFolderIsLoggedWithThePattern) {
    const HRESULT pathNotFound = HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND);
    m_registry.SetAgentText(L"ClassPath", L"C:\\no such folder\\%s");

    EXPECT_EQ(ClassPath(pathNotFound), "");
    EXPECT_EQ(Logged(), Texts{L"error: Failed to enumerate class path directory 'C:\\no such folder\\%s\\*.jar'." +
                              ErrorText(pathNotFound)});
}

TEST_F(RuntimeDiscoveryTest, AFolderLongerThanThePlatformJoinsPathsIsLogged) {
    const std::wstring folder = L"C:\\" + std::wstring(300, L'x');
    const HRESULT tooLong = HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE);
    m_registry.SetAgentText(L"ClassPath", folder);

    EXPECT_EQ(ClassPath(tooLong), "");
    EXPECT_EQ(Logged(),
              Texts{L"error: Failed to enumerate class path directory '" + folder + L"'." + ErrorText(tooLong)});
}

TEST_F(RuntimeDiscoveryTest, AMissingClassPathIsLogged) {
    EXPECT_EQ(ClassPath(kNotFound), "");
    EXPECT_EQ(Logged(), Texts{L"error: Failed to get the agent's class path." + ErrorText(kNotFound)});
}

TEST_F(RuntimeDiscoveryTest, AClassPathOfAnotherTypeIsLogged) {
    CAgentRegistry::SetBytes(m_registry.AgentKey(), L"ClassPath", REG_DWORD, {1, 0, 0, 0});

    EXPECT_EQ(ClassPath(kInvalidData), "");
    EXPECT_EQ(Logged(), Texts{L"error: Failed to get the agent's class path." + ErrorText(kInvalidData)});
}

TEST_F(RuntimeDiscoveryTest, CharactersThatTheCodePageLacksAreLost) {
    MakeArchive(L"\u4e2d.jar");
    m_registry.SetAgentText(L"ClassPath", m_folder.wstring());

    EXPECT_EQ(ClassPath(), Narrow(L"\u4e2d.jar"));
    EXPECT_NE(ClassPath().find("?.jar"), std::string::npos);
}

TEST_F(RuntimeDiscoveryTest, AThousandArchivesAreAllThere) {
    for (int i = 0; i < 1000; ++i) {
        MakeArchive(L"archive with a rather long name " + std::to_wstring(i) + L".jar");
    }
    m_registry.SetAgentText(L"ClassPath", m_folder.wstring());

    const std::string classPath = ClassPath();

    EXPECT_EQ(std::count(classPath.begin(), classPath.end(), ';'), 999);
    EXPECT_NE(classPath.find("name 999.jar"), std::string::npos);
}

TEST_F(RuntimeDiscoveryTest, ArchivesAreAppendedToWhatIsThere) {
    MakeArchive(L"a.jar");
    std::string classPath = "before.jar";

    EXPECT_EQ(AppendJarsToClassPath(MakeLog(), (m_folder / L"*.jar").wstring(), classPath), S_OK);

    EXPECT_EQ(classPath, "before.jar;" + Narrow(L"a.jar"));
}

// ---- the rest -------------------------------------------------------------------------------------------

TEST_F(RuntimeDiscoveryTest, TheOptionsAreTheseThree) {
    EXPECT_EQ(MakeJavaOptions("a.jar;b.jar"),
              (std::vector<std::string>{"-Djava.class.path=a.jar;b.jar", "-Xrs", "-Xmx100M"}));
}

TEST_F(RuntimeDiscoveryTest, TheConfigurationAndLogFoldersAreReadWithoutAWord) {
    m_registry.SetAgentText(L"ConfigDirectory", L"C:\\Config");
    m_registry.SetAgentText(L"LogDirectory", L"C:\\Logs");
    std::wstring config;
    std::wstring log;

    EXPECT_EQ(GetConfigDirectory(config), S_OK);
    EXPECT_EQ(GetLogDirectory(log), S_OK);

    EXPECT_EQ(config, L"C:\\Config");
    EXPECT_EQ(log, L"C:\\Logs");
}

TEST_F(RuntimeDiscoveryTest, AMissingConfigurationFolderGivesTheReadsResult) {
    std::wstring directory;

    EXPECT_EQ(GetConfigDirectory(directory), kNotFound);
    EXPECT_EQ(Logged(), Texts{});
}

}  // namespace
