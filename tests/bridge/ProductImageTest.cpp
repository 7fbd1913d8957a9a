// What the product's file asks of the system and offers to hosts.

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

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

class ProductImageTest : public CLeakCheckedTest {
protected:
    ProductImageTest() : m_product(LoadLibraryW(TestPaths::kProduct)) {}

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

TEST_F(ProductImageTest, NothingUnnamedIsExported) {
    const auto* const base = reinterpret_cast<const BYTE*>(m_product.Get());
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + directory.VirtualAddress);

    EXPECT_EQ(directory.Size == 0 ? 0 : exports->NumberOfFunctions, 0U);
}

}  // namespace
