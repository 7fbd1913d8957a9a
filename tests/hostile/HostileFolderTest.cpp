// Real class path folders: as generated ones (HostileArchivesTest serves the mass of those without a file system), and
// such as take the file system to its limits.

#include <algorithm>
#include <filesystem>
#include <map>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CImportHook.h"
#include "CodePage1252.h"
#include "HostileCases.h"
#include "HostilePaths.h"
#include "HostileText.h"
#include "RuntimeDiscovery.h"
#include "SystemHandles.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

constexpr char kArchives[] = "archives";
constexpr char kFoldersAlone[] = "nothing but folders named like archives";
constexpr char kNoArchives[] = "no archive";
constexpr char kNoFolder[] = "no folder";

constexpr HRESULT kFileNotFound = static_cast<HRESULT>(0x80070002);
constexpr HRESULT kPathNotFound = static_cast<HRESULT>(0x80070003);

/// A path beyond the length that the file functions take otherwise.
std::wstring Unlimited(const std::wstring& path) {
    return L"\\\\?\\" + path;
}

/// False where there is one of this name, in whatever case.
bool MakeFile(const std::wstring& path) {
    const HANDLE file = CreateFileW(Unlimited(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file);
}

std::wstring Join(const std::wstring& folder, const std::wstring& name) {
    return std::wstring(folder).append(L"\\").append(name);
}

bool MakeFolder(const std::wstring& path) {
    return CreateDirectoryW(Unlimited(path).c_str(), nullptr);
}

/// The entries of a folder by their names, each with whether it is a folder.
using Entries = std::map<std::wstring, bool>;

// ---- the model ------------------------------------------------------------------------------------------

bool EndsAsArchive(const std::wstring& name) {
    std::wstring end = name.substr(name.size() < 4 ? 0 : name.size() - 4);
    for (wchar_t& character : end) {
        character = static_cast<wchar_t>(character >= L'A' && character <= L'Z' ? character + 0x20 : character);
    }
    return end == L".jar";
}

struct Expected {
    bool anyMatches = false;
    std::string classPath;
};

/// In the order in which the file system lists everything. A short name is a name too, by which a longer end matches
/// where the file system makes short names.
Expected ExpectedClassPath(const std::wstring& folder, const Entries& made) {
    Expected expected;
    WIN32_FIND_DATAW entry{};
    const CFindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    std::size_t listed = 0;
    for (BOOL isThere = search ? TRUE : FALSE; isThere; isThere = FindNextFileW(search.Get(), &entry)) {
        const std::wstring name(entry.cFileName);
        if (name == L"." || name == L"..") {
            continue;
        }
        EXPECT_EQ(made.count(name), 1U) << testing::PrintToString(name);
        ++listed;
        if (EndsAsArchive(name) || EndsAsArchive(entry.cAlternateFileName)) {
            expected.anyMatches = true;
            if (!made.at(name)) {
                expected.classPath += (expected.classPath.empty() ? "" : ";") + ToCodePage1252(Join(folder, name));
            }
        }
    }
    EXPECT_EQ(listed, made.size());
    return expected;
}

// ---- the folders ----------------------------------------------------------------------------------------

/// A name that the file system takes: no wildcard, control character or lone surrogate, no dot or blank at its end, no
/// two dots at its beginning, which Wine takes for the parent folder whatever follows them.
std::wstring MakeName(CRandom& random, const wchar_t* end, std::size_t longest) {
    std::wstring name = OnlyKnownCharacters(HostileText(random, L"..;%' \u00e9\u20ac\u4e2d", longest), L"\\/:*?\"<>|");
    for (wchar_t& character : name) {
        character = character < 0x20 || (character >= 0xD800 && character < 0xE000) ? L'\u4e2d' : character;
    }
    name += random.OneIn(20) ? L"\U0001F600" : L"";
    name += end;
    while (!name.empty() && (name.back() == L'.' || name.back() == L' ')) {
        name.pop_back();
    }
    return name.empty() || name.compare(0, 2, L"..") == 0 ? L"_" + name : name;
}

class HostileFolderTest : public CHostedTest {
protected:
    HostileFolderTest()
        : m_base((fs::temp_directory_path() / (L"hostile " + std::to_wstring(GetCurrentProcessId()))).wstring()) {
        fs::remove_all(m_base);
        fs::create_directories(m_base);
    }
    ~HostileFolderTest() override { fs::remove_all(Unlimited(m_base)); }

    void SetUp() override {
        CHostedTest::SetUp();
        ASSERT_EQ(GetACP(), 1252U) << "the model knows this code page";
        Host().Record().SetKeepsHistory(false);
    }

    [[nodiscard]] const std::wstring& Base() const noexcept { return m_base; }

    struct ClassPath {
        HRESULT result;
        std::string text;
    };
    [[nodiscard]] ClassPath Ask(const std::wstring& folder) {
        m_registry.SetAgentText(L"ClassPath", folder);
        ClassPath classPath{};
        classPath.result = GetClassPath(CBridgeLog(), classPath.text);
        return classPath;
    }

private:
    const CAgentRegistry m_registry;
    const std::wstring m_base;
};

/// Files and folders, most of them with names that archives have, or nearly.
Entries FillFolder(CRandom& random, const std::wstring& folder) {
    static constexpr const wchar_t* kEnds[] = {L".jar", L".jar", L".JAR",     L".jAr", L".jarx",
                                               L".ja",  L".zip", L".jar.bak", L"jar"};
    Entries made;
    const bool onlyFolders = random.OneIn(8);
    for (std::size_t entries = random.Below(9); entries > 0; --entries) {
        const std::wstring name = MakeName(random, random.Pick(kEnds), 60);
        const std::wstring path = Join(folder, name);
        const bool isFolder = onlyFolders || random.OneIn(6);
        if (isFolder ? MakeFolder(path) : MakeFile(path)) {
            made[name] = isFolder;
        }
    }
    return made;
}

TEST_F(HostileFolderTest, AnyFolderGivesTheClassPathThatTheModelMakes) {
    CHostileCases cases({kArchives, kFoldersAlone, kNoArchives, kNoFolder}, 200);

    cases.Run([&](CRandom& random) {
        const std::wstring folder = Join(Base(), MakeName(random, random.OneIn(8) ? L".jar" : L"", 60));
        const bool isThere = !random.OneIn(10);
        if (!isThere) {
            EXPECT_EQ(Ask(folder).result, kPathNotFound);
            return kNoFolder;
        }
        EXPECT_TRUE(MakeFolder(folder));
        const Entries made = FillFolder(random, folder);
        const Expected expected = ExpectedClassPath(folder, made);

        const ClassPath classPath = Ask(random.OneIn(2) ? folder : folder + L"\\");

        EXPECT_EQ(classPath.result, expected.anyMatches ? S_OK : kFileNotFound);
        EXPECT_EQ(classPath.text, expected.classPath);

        fs::remove_all(Unlimited(folder));
        return !expected.anyMatches ? kNoArchives : expected.classPath.empty() ? kFoldersAlone : kArchives;
    });
}

TEST_F(HostileFolderTest, TenThousandArchivesAreAllThere) {
    Entries made;
    for (int i = 0; i < HostilePaths::kManyArchivesCount; ++i) {
        made[L"archive with a rather long name " + std::to_wstring(i) + L".jar"] = false;
    }

    const ClassPath classPath = Ask(HostilePaths::kManyArchives);

    EXPECT_EQ(classPath.result, S_OK);
    EXPECT_EQ(std::count(classPath.text.begin(), classPath.text.end(), ';'), 9'999);
    EXPECT_TRUE(classPath.text == ExpectedClassPath(HostilePaths::kManyArchives, made).classPath);
}

TEST_F(HostileFolderTest, AFolderWithTheLongestPathIsSearchedAndOneCharacterMoreIsRefused) {
    constexpr std::size_t kLongest = MAX_PATH - 1 - std::size(L"*.jar");  // "\*.jar" and a zero behind it
    const std::wstring parent = Base() + L"\\" + std::wstring(100, L'p');
    const std::wstring folder = parent + L"\\" + std::wstring(kLongest - parent.size() - 1, L'f');
    const std::wstring name = std::wstring(200, L'n') + L".jar";
    for (const std::wstring& last : {folder, folder + L"f"}) {
        MakeFolder(parent);
        ASSERT_TRUE(MakeFolder(last));
        ASSERT_TRUE(MakeFile(Join(last, name)));
    }

    const ClassPath longest = Ask(folder);
    const ClassPath longer = Ask(folder + L"f");

    EXPECT_EQ(longest.result, S_OK);
    EXPECT_EQ(longest.text, ToCodePage1252(Join(folder, name)));
    EXPECT_EQ(longer.result, HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE));
    EXPECT_EQ(longer.text, "");
}

// What happens to the folder when its first archive has been listed.
decltype(&FindNextFileW) g_findNext = nullptr;
std::wstring g_goes;

BOOL WINAPI DeleteAndFindNext(HANDLE search, WIN32_FIND_DATAW* match) {
    std::error_code ignored;  // the folder itself may stay as long as it is searched
    fs::remove_all(g_goes, ignored);
    return g_findNext(search, match);
}

TEST_F(HostileFolderTest, ArchivesThatGoWhileTheyAreListedLeaveTheRest) {
    g_findNext = reinterpret_cast<decltype(g_findNext)>(*FindImportSlot(GetModuleHandleW(nullptr), "FindNextFileW"));
    const CImportHook hook(GetModuleHandleW(nullptr), "FindNextFileW", AddressOf(&DeleteAndFindNext));
    const std::wstring folder = Base() + L"\\lib";
    const std::wstring paths[] = {folder + L"\\a.jar", folder + L"\\b.jar", folder + L"\\c.jar"};
    for (const std::wstring& goes : {paths[0], paths[1], paths[2], folder}) {
        fs::create_directory(folder);
        for (const std::wstring& path : paths) {
            MakeFile(path);
        }
        g_goes = goes;

        const ClassPath classPath = Ask(folder);

        EXPECT_EQ(classPath.result, S_OK);
        EXPECT_EQ(classPath.text.find(ToCodePage1252(paths[0])), 0U) << "it was there when it was listed";
        for (const std::wstring& path : paths) {
            const bool isThere = fs::exists(path);
            const std::size_t found = classPath.text.find(ToCodePage1252(path));
            EXPECT_TRUE(!isThere || found != std::string::npos) << "one that stays is not lost";
        }
    }
}

}  // namespace
