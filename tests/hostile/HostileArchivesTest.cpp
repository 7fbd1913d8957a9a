// Class path folders as the file system would list them: any number of entries, of any name and kind, in folders with
// any path, with searches that fail at their start or in the middle.
//
// A hundred thousand really different folders would be millions of files. So the listings here are served in the file
// system's place; HostileFolderTest does the same with real folders, some hundreds of them.

#include <deque>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CImportHook.h"
#include "CodePage1252.h"
#include "HostileCases.h"
#include "RuntimeDiscovery.h"
#include "StoredValue.h"
#include "SystemHandles.h"

namespace {

constexpr char kArchives[] = "archives";
constexpr char kNoArchives[] = "folders without archives";
constexpr char kCutOff[] = "searches cut off in the middle";
constexpr char kNoFolder[] = "folders that cannot be searched";
constexpr char kTooLong[] = "paths too long to join";

using Texts = std::vector<std::wstring>;

struct Entry {
    std::wstring name;
    DWORD attributes;
};

/// A class path folder as the registry names it, and what it really is.
struct Folder {
    std::wstring path;
    std::wstring joined;    // path and pattern, dots resolved
    std::wstring resolved;  // absolute, closed by a backslash
    bool isTooLong;         // before the dots are resolved
};

struct Input {
    Folder folder;
    DWORD firstError;  // ERROR_SUCCESS: the search begins
    std::deque<Entry> entries;
    DWORD lastError;
};

// ---- the file system ------------------------------------------------------------------------------------

/// What is left to be told of the one search that is open.
struct Search {
    const Input* input;
    std::deque<Entry> entries;
    std::wstring pattern;
    int open;
};
Search g_search;

HANDLE SearchHandle() noexcept {
    return &g_search;
}

BOOL Tell(WIN32_FIND_DATAW& match, DWORD error) {
    if (g_search.entries.empty()) {
        SetLastError(error);
        return FALSE;
    }
    const Entry& entry = g_search.entries.front();
    match = {};
    match.dwFileAttributes = entry.attributes;
    entry.name.copy(match.cFileName, MAX_PATH - 1);
    g_search.entries.pop_front();
    return TRUE;
}

HANDLE WINAPI FindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* match) {
    g_search.pattern = pattern;
    if (g_search.input->firstError != ERROR_SUCCESS) {
        SetLastError(g_search.input->firstError);
        return INVALID_HANDLE_VALUE;
    }
    g_search.entries = g_search.input->entries;
    if (!Tell(*match, ERROR_FILE_NOT_FOUND)) {
        return INVALID_HANDLE_VALUE;
    }
    ++g_search.open;
    return SearchHandle();
}

BOOL WINAPI FindNext(HANDLE search, WIN32_FIND_DATAW* match) {
    EXPECT_EQ(search, SearchHandle());
    return Tell(*match, g_search.input->lastError);
}

BOOL WINAPI EndSearch(HANDLE search) {
    EXPECT_EQ(search, SearchHandle());
    --g_search.open;
    return TRUE;
}

// ---- the model ------------------------------------------------------------------------------------------

struct Expected {
    HRESULT result;
    std::string classPath;
    const char* outcome;
};

Expected ExpectedClassPath(const Input& input) {
    if (input.folder.isTooLong) {
        return {HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE), "", kTooLong};
    }
    if (input.firstError != ERROR_SUCCESS) {
        return {HRESULT_FROM_WIN32(input.firstError), "", kNoFolder};
    }
    if (input.entries.empty()) {
        return {HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), "", kNoArchives};
    }
    std::string classPath;
    for (const Entry& entry : input.entries) {
        if ((entry.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            classPath += (classPath.empty() ? "" : ";") + ToCodePage1252(input.folder.resolved + entry.name);
        }
    }
    const bool isCutOff = input.lastError != ERROR_NO_MORE_FILES;
    return {S_OK, classPath, isCutOff ? kCutOff : classPath.empty() ? kNoArchives : kArchives};
}

// ---- the folders ----------------------------------------------------------------------------------------

/// No separator, no dot and no blank at its end, where paths lose them, and no two dots at its beginning, which Wine
/// takes for the parent folder whatever follows them.
std::wstring MakeFolderName(CRandom& random) {
    std::wstring name = OnlyKnownCharacters(HostileText(random, L"a.;%' \u00e9\u4e2d", 120), L"\\/:*?\"<>|");
    while (!name.empty() && (name.back() == L'.' || name.back() == L' ')) {
        name.pop_back();
    }
    return name.empty() || name.compare(0, 2, L"..") == 0 ? L"lib" : name;
}

std::wstring CurrentFolder() {
    wchar_t folder[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, folder);
    return std::wstring(folder) + L"\\";
}

Folder MakeFolder(CRandom& random) {
    static constexpr wchar_t kPattern[] = L"*.jar";
    enum class Kind { eDrive, eShare, eRelative };
    const Kind kind = random.OneIn(8) ? Kind::eRelative : random.OneIn(4) ? Kind::eShare : Kind::eDrive;
    const std::wstring root = kind == Kind::eDrive ? L"Q:\\" : kind == Kind::eShare ? L"\\\\server\\share\\" : L"";

    Folder folder{root, root, kind == Kind::eRelative ? CurrentFolder() : root, false};
    Texts resolved;
    for (std::size_t names = random.Below(5); names > 0; --names) {
        // Some to bring the path near the length that is too long to join.
        std::wstring name = random.OneIn(20) ? std::wstring(random.Between(200, 260), L'x') : MakeFolderName(random);
        if (kind == Kind::eDrive && random.OneIn(6)) {
            name = random.OneIn(2) ? L"." : L"..";
        }
        folder.path += name + L"\\";
        if (name == L".." && !resolved.empty()) {
            resolved.pop_back();
        } else if (name != L"." && name != L"..") {
            resolved.push_back(name);
        }
    }
    for (const std::wstring& name : resolved) {
        folder.joined += name + L"\\";
        folder.resolved += name + L"\\";
    }
    folder.joined += kPattern;
    folder.isTooLong = folder.path.size() + std::size(kPattern) > MAX_PATH;
    if (folder.path.size() > root.size() && random.OneIn(2)) {
        folder.path.pop_back();  // with a backslash at its end or without, it is the same folder
    }
    return folder;
}

Entry MakeEntry(CRandom& random) {
    static constexpr DWORD kAttributes[] = {
        FILE_ATTRIBUTE_NORMAL,  FILE_ATTRIBUTE_READONLY,      FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
        FILE_ATTRIBUTE_ARCHIVE, FILE_ATTRIBUTE_REPARSE_POINT, FILE_ATTRIBUTE_OFFLINE};
    static constexpr const wchar_t* kEnds[] = {L".jar", L".JAR", L".Jar", L".jarx", L".jar.jar", L"", L".jar "};
    std::wstring name = OnlyKnownCharacters(HostileText(random, L".; \u00e9\u20ac\u4e2d", 250), L"\\/");
    name += random.Pick(kEnds);
    const bool isFolder = random.OneIn(6);
    return {name, random.Pick(kAttributes) | random.Pick(kAttributes) | (isFolder ? FILE_ATTRIBUTE_DIRECTORY : 0U)};
}

Input MakeInput(CRandom& random) {
    static constexpr DWORD kErrors[] = {ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_BAD_NETPATH,
                                        ERROR_INVALID_NAME, ERROR_DIRECTORY};
    Input input{MakeFolder(random), random.OneIn(20) ? random.Pick(kErrors) : ERROR_SUCCESS, {}, ERROR_NO_MORE_FILES};
    for (std::size_t entries = random.OneIn(1000) ? random.Below(1000) : random.Below(8); entries > 0; --entries) {
        input.entries.push_back(MakeEntry(random));
    }
    if (random.OneIn(20) && !input.entries.empty()) {
        input.lastError = random.Pick(kErrors);
    }
    return input;
}

class HostileArchivesTest : public CHostedTest {
protected:
    void SetUp() override {
        CHostedTest::SetUp();
        Host().Record().SetKeepsHistory(false);
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, m_registry.AgentKey().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                  nullptr, m_key.Receive(), nullptr),
                  ERROR_SUCCESS);
    }
    void TearDown() override {
        m_key.Reset();
        CHostedTest::TearDown();
    }

    void NameFolder(const std::wstring& path) { Store(m_key.Get(), L"ClassPath", {REG_SZ, BytesOf(path)}); }

    /// Nothing, or the one entry that names what was searched.
    static Texts ExpectedLog(const Input& input, HRESULT result) {
        if (result == S_OK) {
            return {};
        }
        const std::wstring& searched = input.folder.isTooLong ? input.folder.path : input.folder.joined;
        return {L"Failed to enumerate class path directory '" + searched + L"'." + ErrorText(result)};
    }

private:
    const CAgentRegistry m_registry;
    CRegistryKey m_key;
};

TEST_F(HostileArchivesTest, AnyListingGivesTheClassPathThatTheModelMakes) {
    ASSERT_EQ(GetACP(), 1252U) << "the model knows this code page";
    HMODULE const program = GetModuleHandleW(nullptr);
    const CImportHook first(program, "FindFirstFileW", AddressOf(&FindFirst));
    const CImportHook next(program, "FindNextFileW", AddressOf(&FindNext));
    const CImportHook close(program, "FindClose", AddressOf(&EndSearch));
    const auto hostLog = std::make_shared<CHostLog>();
    const CBridgeLog log(MakeLogger(Host().ShareRecord(), hostLog).Get());
    CHostileCases cases({kArchives, kNoArchives, kCutOff, kNoFolder, kTooLong});

    cases.Run([&](CRandom& random) {
        const Input input = MakeInput(random);
        const Expected expected = ExpectedClassPath(input);
        NameFolder(input.folder.path);
        hostLog->Clear();
        g_search = {&input, {}, {}, 0};

        std::string classPath;
        EXPECT_EQ(GetClassPath(log, classPath), expected.result) << testing::PrintToString(input.folder.path);

        EXPECT_EQ(classPath, expected.classPath) << testing::PrintToString(input.folder.path);
        EXPECT_EQ(g_search.pattern, input.folder.isTooLong ? L"" : input.folder.joined);
        EXPECT_EQ(g_search.open, 0);
        Texts logged;
        for (const HostLogEntry& entry : hostLog->GetEntries()) {
            logged.push_back(entry.text);
        }
        EXPECT_EQ(logged, ExpectedLog(input, expected.result));
        return expected.outcome;
    });
}

}  // namespace
