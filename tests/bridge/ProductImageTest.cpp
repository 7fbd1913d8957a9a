// What the product's file asks of the system and offers to hosts.

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "CLeakCheckedTest.h"
#include "ImportTable.h"
#include "SystemHandles.h"
#include "TestPaths.h"

namespace {

using Names = std::set<std::string>;

// A library that starts threads, opens sockets or writes files would have to import one of these.
const Names kStartsThreads = {
    "CreateThread",
    "CreateRemoteThread",
    "CreateRemoteThreadEx",
    "_beginthread",
    "_beginthreadex",
    "QueueUserWorkItem",
    "TrySubmitThreadpoolCallback",
    "CreateThreadpool",
    "CreateThreadpoolWork",
    "CreateThreadpoolTimer",
    "CreateThreadpoolWait",
    "CreateThreadpoolIo",
    "CreateTimerQueueTimer",
    "RtlCreateUserThread",
    "RegisterWaitForSingleObject",
    "CreateProcessA",
    "CreateProcessW",
    "WinExec",
    "system",
    "_wsystem",
    "SHCreateThread",
    "ShellExecuteExW",
    "timeSetEvent",
    "SetTimer",
};
const Names kWritesFiles = {
    "CreateFileA",  "CreateFileW",
    "CreateFile2",  "CreateFileMappingW",
    "WriteFile",    "WriteFileEx",
    "DeleteFileA",  "DeleteFileW",
    "MoveFileExA",  "MoveFileExW",
    "CopyFileW",    "CreateDirectoryW",
    "_open",        "_wopen",
    "_sopen",       "_write",
    "fopen",        "_wfopen",
    "freopen",      "_fdopen",
    "fputc",        "fputs",
    "fputwc",       "fputws",
    "fwrite",       "fprintf",
    "vfprintf",     "fwprintf",
    "printf",       "vprintf",
    "puts",         "putc",
    "putchar",      "WritePrivateProfileStringW",
    "ReplaceFileW",
};
const Names kOpensSockets = {"ws2_32.dll",  "wsock32.dll", "mswsock.dll", "wininet.dll",
                             "winhttp.dll", "urlmon.dll",  "dnsapi.dll",  "iphlpapi.dll"};

// What the compiler's runtime and Boost.Thread bring along; no code of the product's calls these.
const Names kBroughtByTheRuntime = {
    "_beginthreadex",  // pthread_create of the thread support library, boost::thread's start
    "fprintf",         // the thread support library's and the start-up code's complaints
    "fputc",           // MinGW's own printf
    "fputs",           // the C++ runtime's terminate handler
    "fwrite",          // the C++ runtime's terminate handler, MinGW's own printf
    "printf",          // the thread support library's debug output
    "vfprintf",        // the start-up code's complaint of a bad relocation
};

const Names kSystemLibraries = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ntdll.dll",
                                "ole32.dll",    "oleaut32.dll", "shlwapi.dll"};

/// An entry point's two names.
struct EntryPoint {
    const char* ofMinGw;
    const char* ofMicrosoft;
};
constexpr EntryPoint kEntryPoints[] = {
    {"_ZN15CRMICommManager11GetInstanceEv", "?GetInstance@CRMICommManager@@SAAEAV1@XZ"},
    {"_ZN15CRMICommManager8DumpDataI8IUnknownEElPKwS3_S3_yhPT_",
     "??$DumpData@UIUnknown@@@CRMICommManager@@QEAAJPEB_W00_KEPEAUIUnknown@@@Z"},
    {"_ZN15CRMICommManager24RegisterDataDumpCallbackEPKwS1_S1_P17IDataDumpCallback",
     "?RegisterDataDumpCallback@CRMICommManager@@QEAAJPEB_W00PEAUIDataDumpCallback@@@Z"},
    {"_ZN15CRMICommManager26UnregisterDataDumpCallbackEPKwS1_S1_P17IDataDumpCallback",
     "?UnregisterDataDumpCallback@CRMICommManager@@QEAAJPEB_W00PEAUIDataDumpCallback@@@Z"},
    {"_ZN16CRMIConfigLoader13GetServerInfoE10tagVARIANTPPwS2_S2_",
     "?GetServerInfo@CRMIConfigLoader@@SAJUtagVARIANT@@PEAPEA_W11@Z"},
    {"_ZN16CRMIConfigLoader16GetConfigContentE10tagVARIANTPS0_",
     "?GetConfigContent@CRMIConfigLoader@@SAJUtagVARIANT@@PEAU2@@Z"},
};

/// The record of an image's debug directory that names its build.
struct BuildRecord {
    char kind[4];
    GUID id;
    DWORD age;
};
constexpr char kBuildRecordKind[] = "RSDS";

constexpr char kSymbolsName[] = "telvar-rmi.dll.debug";
constexpr char kMapName[] = "telvar-rmi.map";

class ProductImageTest : public CLeakCheckedTest {
protected:
    ProductImageTest() : m_product(LoadLibraryW(TestPaths::kProduct)) {}

    /// What lies at an address of the image's own.
    template <typename What>
    [[nodiscard]] const What* At(DWORD address) const {
        return reinterpret_cast<const What*>(reinterpret_cast<const BYTE*>(m_product.Get()) + address);
    }

    [[nodiscard]] const IMAGE_NT_HEADERS64& Headers() const {
        return *At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    [[nodiscard]] const IMAGE_DATA_DIRECTORY& Directory(int entry) const {
        return Headers().OptionalHeader.DataDirectory[entry];
    }

    [[nodiscard]] const IMAGE_EXPORT_DIRECTORY& Exports() const {
        return *At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    }

    /// Each exported name with the index of its function.
    [[nodiscard]] std::map<std::string, WORD> ExportedNames() const {
        const IMAGE_EXPORT_DIRECTORY& exports = Exports();
        const auto* const names = At<DWORD>(exports.AddressOfNames);
        const auto* const indexes = At<WORD>(exports.AddressOfNameOrdinals);
        std::map<std::string, WORD> exported;
        for (DWORD i = 0; i < exports.NumberOfNames; ++i) {
            exported.emplace(At<char>(names[i]), indexes[i]);
        }
        return exported;
    }

    /// The image's build id as the symbols' folder writes it; empty when it has none.
    [[nodiscard]] std::string BuildId() const {
        const IMAGE_DATA_DIRECTORY& directory = Directory(IMAGE_DIRECTORY_ENTRY_DEBUG);
        const auto* const entries = At<IMAGE_DEBUG_DIRECTORY>(directory.VirtualAddress);
        for (DWORD i = 0; i < directory.Size / sizeof(*entries); ++i) {
            const auto* const record = At<BuildRecord>(entries[i].AddressOfRawData);
            if (entries[i].Type == IMAGE_DEBUG_TYPE_CODEVIEW && std::memcmp(record->kind, kBuildRecordKind, 4) == 0) {
                return Digits(record->id);
            }
        }
        return {};
    }

    static std::string Digits(const GUID& id) {
        char digits[33];
        std::snprintf(digits, sizeof(digits), "%08lx%04x%04x%02x%02x%02x%02x%02x%02x%02x%02x", id.Data1, id.Data2,
                      id.Data3, id.Data4[0], id.Data4[1], id.Data4[2], id.Data4[3], id.Data4[4], id.Data4[5],
                      id.Data4[6], id.Data4[7]);
        return digits;
    }

    /// How many sections have `text` and its closing zero at their beginning. Their names do not tell them apart: of a
    /// name of more than eight characters the image in memory has none.
    [[nodiscard]] int CountSectionsThatBeginWith(const std::string& text) const {
        const IMAGE_NT_HEADERS64& headers = Headers();
        const IMAGE_SECTION_HEADER* const sections = IMAGE_FIRST_SECTION(&headers);
        int count = 0;
        for (WORD i = 0; i < headers.FileHeader.NumberOfSections; ++i) {
            if (sections[i].Misc.VirtualSize > text.size() &&
                std::memcmp(At<char>(sections[i].VirtualAddress), text.c_str(), text.size() + 1) == 0) {
                ++count;
            }
        }
        return count;
    }

    /// One of the texts that the file's properties show.
    [[nodiscard]] static std::wstring VersionText(const wchar_t* name) {
        const std::vector<BYTE> block = VersionBlock();
        void* text = nullptr;
        UINT length = 0;
        const std::wstring path = std::wstring(L"\\StringFileInfo\\040904b0\\") + name;
        const bool isThere = VerQueryValueW(block.data(), path.c_str(), &text, &length) != FALSE;
        return isThere ? static_cast<const wchar_t*>(text) : L"(none)";
    }

    /// The version that installers compare.
    [[nodiscard]] static std::string VersionNumber() {
        const std::vector<BYTE> block = VersionBlock();
        void* found = nullptr;
        UINT length = 0;
        if (!VerQueryValueW(block.data(), L"\\", &found, &length)) {
            return {};
        }
        const auto* const info = static_cast<const VS_FIXEDFILEINFO*>(found);
        return std::to_string(HIWORD(info->dwFileVersionMS)) + "." + std::to_string(LOWORD(info->dwFileVersionMS)) +
               "." + std::to_string(HIWORD(info->dwFileVersionLS)) + "." +
               std::to_string(LOWORD(info->dwFileVersionLS));
    }

    /// The version resource of the product's file; zeros when it has none.
    [[nodiscard]] static std::vector<BYTE> VersionBlock() {
        std::vector<BYTE> block(std::max<DWORD>(GetFileVersionInfoSizeW(TestPaths::kProduct, nullptr), 64));
        if (!GetFileVersionInfoW(TestPaths::kProduct, 0, static_cast<DWORD>(block.size()), block.data())) {
            std::fill(block.begin(), block.end(), BYTE{0});
        }
        return block;
    }

    [[nodiscard]] Names ImportedFunctions() const {
        Names functions;
        VisitImports(m_product.Get(), [&](const char*, const char* function, void**) { functions.insert(function); });
        return functions;
    }

    [[nodiscard]] Names ImportedLibraries() const {
        Names libraries;
        VisitImports(m_product.Get(), [&](const char* library, const char*, void**) {
            std::string name(library);
            std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
            libraries.insert(name);
        });
        return libraries;
    }

    static Names Common(const Names& left, const Names& right) {
        Names common;
        std::set_intersection(left.begin(), left.end(), right.begin(), right.end(),
                              std::inserter(common, common.begin()));
        return common;
    }

    static Names Without(const Names& all, const Names& some) {
        Names rest;
        std::set_difference(all.begin(), all.end(), some.begin(), some.end(), std::inserter(rest, rest.begin()));
        return rest;
    }

    CModule m_product;
};

TEST_F(ProductImageTest, ItLoads) {
    EXPECT_TRUE(m_product);
}

TEST_F(ProductImageTest, ItUnloads) {
    m_product.Reset();

    EXPECT_EQ(GetModuleHandleW(L"telvar-rmi.dll"), nullptr);
    m_product.Reset(LoadLibraryW(TestPaths::kProduct));
}

TEST_F(ProductImageTest, ItNeedsSystemLibrariesAlone) {
    EXPECT_EQ(Without(ImportedLibraries(), kSystemLibraries), Names{});
    EXPECT_EQ(Common(ImportedLibraries(), kOpensSockets), Names{});
}

TEST_F(ProductImageTest, ItStartsNoThreads) {
    EXPECT_EQ(Without(Common(ImportedFunctions(), kStartsThreads), kBroughtByTheRuntime), Names{});
}

TEST_F(ProductImageTest, ItWritesNoFiles) {
    EXPECT_EQ(Without(Common(ImportedFunctions(), kWritesFiles), kBroughtByTheRuntime), Names{});
}

TEST_F(ProductImageTest, ItHoldsTheProductsCode) {
    // Imports that only the product's own code has: without them the checks above would have nothing to look at.
    const Names own = {"RegSetValueExW", "StringFromCLSID", "SetDllDirectoryW", "LoadLibraryW", "FindFirstFileW"};

    EXPECT_EQ(Common(ImportedFunctions(), own), own);
}

TEST_F(ProductImageTest, ThreadNotificationsStayOn) {
    EXPECT_EQ(ImportedFunctions().count("DisableThreadLibraryCalls"), 0U);
}

TEST_F(ProductImageTest, TheEntryPointsAreExportedUnderTwoNamesEachAndNothingElse) {
    Names expected;
    for (const EntryPoint& entryPoint : kEntryPoints) {
        expected.insert({entryPoint.ofMinGw, entryPoint.ofMicrosoft});
    }

    Names exported;
    for (const auto& [name, index] : ExportedNames()) {
        exported.insert(name);
    }

    EXPECT_EQ(exported, expected);
}

TEST_F(ProductImageTest, NothingIsExportedByOrdinalAlone) {
    std::set<WORD> named;
    for (const auto& [name, index] : ExportedNames()) {
        named.insert(index);
    }

    EXPECT_EQ(Exports().NumberOfFunctions, 12U);
    EXPECT_EQ(named, (std::set<WORD>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST_F(ProductImageTest, BothNamesOfAnEntryPointMeanTheSameFunction) {
    std::set<FARPROC> functions;
    for (const EntryPoint& entryPoint : kEntryPoints) {
        const FARPROC function = GetProcAddress(m_product.Get(), entryPoint.ofMinGw);
        EXPECT_NE(function, nullptr) << entryPoint.ofMinGw;
        EXPECT_EQ(GetProcAddress(m_product.Get(), entryPoint.ofMicrosoft), function) << entryPoint.ofMicrosoft;
        functions.insert(function);
    }

    EXPECT_EQ(functions.size(), std::size(kEntryPoints)) << "two entry points are one function";
}

TEST_F(ProductImageTest, TheFilesPropertiesSayTheVersionAndTheName) {
    EXPECT_EQ(VersionText(L"FileVersion"), L"" PRODUCT_VERSION);
    EXPECT_EQ(VersionNumber(), PRODUCT_VERSION ".0");
    EXPECT_EQ(VersionText(L"OriginalFilename"), L"telvar-rmi.dll");
}

TEST_F(ProductImageTest, TheImageHoldsNoSymbolsButTheLinkToThem) {
    EXPECT_EQ(Headers().FileHeader.NumberOfSymbols, 0U);
    EXPECT_EQ(CountSectionsThatBeginWith(kSymbolsName), 1);
}

TEST_F(ProductImageTest, SymbolsAndMapAreKeptUnderTheImagesBuildId) {
    const std::string id = BuildId();

    ASSERT_EQ(id.size(), 32U);
    const std::filesystem::path folder = std::filesystem::path(TestPaths::kSymbols) / id;
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / kSymbolsName)) << folder;
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / kMapName)) << folder;
}

}  // namespace
