#include "CFindFile.h"

#include <filesystem>
#include <fstream>
#include <set>

#include "CLeakCheckedTest.h"

namespace {

namespace fs = std::filesystem;

class CFindFileTest : public CLeakCheckedTest {
protected:
    CFindFileTest() : m_folder(fs::temp_directory_path() / L"CFindFileTest \u00e9\u4e2d") {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    ~CFindFileTest() override { fs::remove_all(m_folder); }

    void MakeFile(const wchar_t* name) const { std::ofstream(m_folder / name) << "content"; }

    const fs::path m_folder;
};

TEST_F(CFindFileTest, WalksEveryMatchOnce) {
    MakeFile(L"a.jar");
    MakeFile(L"b c.jar");
    MakeFile(L"d.txt");
    CFindFile find;
    std::set<std::wstring> names;

    for (bool found = find.FindFirst((m_folder / L"*.jar").wstring()); found; found = find.FindNext()) {
        names.insert(find.GetFileName());
    }

    EXPECT_EQ(names, (std::set<std::wstring>{L"a.jar", L"b c.jar"}));
}

TEST_F(CFindFileTest, ThePathIsTheFolderAndTheName) {
    MakeFile(L"a.jar");
    CFindFile find;

    ASSERT_TRUE(find.FindFirst((m_folder / L"*.jar").wstring()));

    EXPECT_EQ(find.GetFilePath(), (m_folder / L"a.jar").wstring());
}

TEST_F(CFindFileTest, ARelativePatternGivesAbsolutePaths) {
    MakeFile(L"a.jar");
    const fs::path before = fs::current_path();
    fs::current_path(m_folder);
    CFindFile find;

    const bool found = find.FindFirst(L"*.jar");
    fs::current_path(before);

    ASSERT_TRUE(found);
    EXPECT_EQ(find.GetFilePath(), (m_folder / L"a.jar").wstring());
}

TEST_F(CFindFileTest, AFolderIsTold) {
    fs::create_directory(m_folder / L"looks-like.jar");
    CFindFile find;

    ASSERT_TRUE(find.FindFirst((m_folder / L"*.jar").wstring()));

    EXPECT_TRUE(find.IsDirectory());
    EXPECT_FALSE(find.FindNext());
}

TEST_F(CFindFileTest, AFolderWithoutMatchesLeavesTheLastError) {
    CFindFile find;

    const bool found = find.FindFirst((m_folder / L"*.jar").wstring());
    const DWORD error = GetLastError();

    EXPECT_FALSE(found);
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(CFindFileTest, AMissingFolderLeavesTheLastError) {
    CFindFile find;

    const bool found = find.FindFirst((m_folder / L"missing" / L"*.jar").wstring());
    const DWORD error = GetLastError();

    EXPECT_FALSE(found);
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST_F(CFindFileTest, ASecondSearchEndsTheFirst) {
    MakeFile(L"a.jar");
    MakeFile(L"b.txt");
    CFindFile find;
    ASSERT_TRUE(find.FindFirst((m_folder / L"*.jar").wstring()));

    ASSERT_TRUE(find.FindFirst((m_folder / L"*.txt").wstring()));

    EXPECT_EQ(find.GetFileName(), L"b.txt");
    EXPECT_EQ(CResourceLedger::Get().Count().searches, 1);
}

TEST_F(CFindFileTest, NothingFollowsWithoutASearch) {
    CFindFile find;

    EXPECT_FALSE(find.FindNext());
}

}  // namespace
