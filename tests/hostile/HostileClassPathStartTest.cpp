// The real machine on class paths whose archives are not what they were when they were listed.

#include <filesystem>

#include "BindingTable.h"
#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CJavaClass.h"
#include "CJavaVM.h"
#include "HostilePaths.h"
#include "RuntimeDiscovery.h"
#include "TestPaths.h"

namespace {

namespace fs = std::filesystem;

/// Each of these tests starts the real machine, and so has a process of its own.
class HostileClassPathStartTest : public CHostedTest {
protected:
    /// The folder stays behind, for the next run to remove: the machine keeps its archives open to the process's end.
    HostileClassPathStartTest()
        : m_folder(fs::temp_directory_path() /
                   (std::string("hostile ") + testing::UnitTest::GetInstance()->current_test_info()->name())) {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }

    /// An archive with the contract's classes.
    fs::path MakeArchive(const wchar_t* name) const {
        fs::copy_file(TestPaths::kContractArchive, m_folder / name);
        return m_folder / name;
    }

    std::string ListArchives(const std::wstring& folder) {
        m_registry.SetAgentText(L"ClassPath", folder);
        std::string classPath;
        EXPECT_EQ(GetClassPath(MakeLog(), classPath), S_OK);
        return classPath;
    }

    /// Whether the machine starts and has a class of the contract's.
    void ExpectClassesOn(const std::string& classPath) {
        CJavaVM vm(TestPaths::kRealRuntime);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
        ASSERT_EQ(vm.CreateJavaVM(MakeJavaOptions(classPath)), 0);
        const Binding::ClassRows rows = Binding::FindRows(Binding::DesktopConnection::kClass);
        EXPECT_NE(vm.LoadClass(Binding::DesktopConnection::kClass, rows.firstRow, rows.rowCount), nullptr);
        vm.Shutdown(false);
    }

    const CAgentRegistry m_registry;
    const fs::path m_folder;
};

TEST_F(HostileClassPathStartTest, AnArchiveThatIsGoneWhenTheMachineStartsIsPassedOver) {
    const fs::path gone = MakeArchive(L"a.jar");
    MakeArchive(L"b \u00e9.jar");
    const std::string classPath = ListArchives(m_folder.wstring());
    ASSERT_NE(classPath.find("a.jar"), std::string::npos);
    fs::remove(gone);

    ExpectClassesOn(classPath);
}

TEST_F(HostileClassPathStartTest, AMachineStartsWithTenThousandArchives) {
    MakeArchive(L"a.jar");

    // The one with the classes first: the others are empty, and to find that out of each takes the machine long.
    ExpectClassesOn(ListArchives(m_folder.wstring()) + ";" + ListArchives(HostilePaths::kManyArchives));
}

}  // namespace
