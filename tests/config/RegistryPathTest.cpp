#include "RegistryPath.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

struct RootCase {
    const wchar_t* name;
    std::uint32_t value;
};
constexpr RootCase kRoots[] = {
    {L"HKEY_CLASSES_ROOT", 0x80000000},        {L"HKEY_CURRENT_USER", 0x80000001},
    {L"HKEY_LOCAL_MACHINE", 0x80000002},       {L"HKEY_USERS", 0x80000003},
    {L"HKEY_PERFORMANCE_DATA", 0x80000004},    {L"HKEY_PERFORMANCE_TEXT", 0x80000050},
    {L"HKEY_PERFORMANCE_NLSTEXT", 0x80000060},
};

/// The root as its 32-bit number, and the key.
void ExpectSplit(const std::wstring& path, std::uint32_t root, const std::wstring& key) {
    const RegistryPath split = SplitRegistryPath(path);
    EXPECT_EQ(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(split.root)), root)
        << testing::PrintToString(path);
    EXPECT_EQ(split.key, key) << testing::PrintToString(path);
}

constexpr std::uint32_t kMachine = 0x80000002;

TEST(RegistryPathTest, EachRootNameIsItsRoot) {
    for (const RootCase& root : kRoots) {
        const std::wstring name(root.name);
        ExpectSplit(name + L"\\Software\\X", root.value, L"Software\\X");
        ExpectSplit(name + L"\\", root.value, L"");
        ExpectSplit(name, root.value, L"");
    }
}

TEST(RegistryPathTest, TheRootsAreTheSystemsOwnHandles) {
    EXPECT_EQ(SplitRegistryPath(L"HKEY_CLASSES_ROOT").root, HKEY_CLASSES_ROOT);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_CURRENT_USER").root, HKEY_CURRENT_USER);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_LOCAL_MACHINE").root, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_USERS").root, HKEY_USERS);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_PERFORMANCE_DATA").root, HKEY_PERFORMANCE_DATA);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_PERFORMANCE_TEXT").root, HKEY_PERFORMANCE_TEXT);
    EXPECT_EQ(SplitRegistryPath(L"HKEY_PERFORMANCE_NLSTEXT").root, HKEY_PERFORMANCE_NLSTEXT);
    EXPECT_EQ(SplitRegistryPath(L"Software").root, HKEY_LOCAL_MACHINE);
}

TEST(RegistryPathTest, OneBackslashBehindTheNameIsDroppedAtMost) {
    for (const RootCase& root : kRoots) {
        const std::wstring name(root.name);
        ExpectSplit(name + L"Software", root.value, L"Software");
        ExpectSplit(name + L"\\\\Software", root.value, L"\\Software");
        ExpectSplit(name + L"/Software", root.value, L"/Software");
        ExpectSplit(name + L" \\Software", root.value, L" \\Software");
    }
}

TEST(RegistryPathTest, ANameCountsAtTheVeryStartAlone) {
    for (const RootCase& root : kRoots) {
        const std::wstring name(root.name);
        for (const wchar_t* const before : {L"Software\\", L" ", L"\\", L"\n"}) {
            const std::wstring path = before + name;
            ExpectSplit(path, kMachine, path);
        }
        ExpectSplit(name + L"\\HKEY_USERS\\X", root.value, L"HKEY_USERS\\X");
    }
}

TEST(RegistryPathTest, ANameCountsInItsOwnCaseAlone) {
    for (const std::wstring path : {L"hkey_current_user\\X", L"Hkey_Users\\X", L"HKEY_current_USER\\X"}) {
        ExpectSplit(path, kMachine, path);
    }
}

TEST(RegistryPathTest, OtherNamesArePartsOfTheKey) {
    for (const std::wstring path : {L"HKCU\\X", L"HKLM\\X", L"HKEY_CURRENT_CONFIG\\X", L"HKEY_DYN_DATA\\X", L"HKEY_",
                                    L"HKEY_CURRENT_USE", L"HKEY_PERFORMANCE_", L"", L"\\", L"\\Software"}) {
        ExpectSplit(path, kMachine, path);
    }
}

TEST(RegistryPathTest, ThePathKeepsItsZeros) {
    const std::wstring path(L"Soft\0ware", 9);

    ExpectSplit(path, kMachine, path);
    ExpectSplit(L"HKEY_USERS\\" + path, 0x80000003, path);
}

}  // namespace
