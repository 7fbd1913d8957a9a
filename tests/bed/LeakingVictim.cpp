// Leaves one thing of each kind behind. Every one of these tests has to fail, and to fail for nothing else.

#include <windows.h>

#include <oleauto.h>

#include "CLeakCheckedTest.h"

namespace {

class LeakingVictim : public CLeakCheckedTest {};

TEST_F(LeakingVictim, CriticalSection) {
    static CRITICAL_SECTION section;
    ASSERT_TRUE(InitializeCriticalSectionAndSpinCount(&section, 0));
}

TEST_F(LeakingVictim, HeldLock) {
    static CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
}

TEST_F(LeakingVictim, RegistryKey) {
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key), ERROR_SUCCESS);
    HKEY created = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software", 0, nullptr, 0, KEY_READ, nullptr, &created, nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegCloseKey(created), ERROR_SUCCESS);
}

TEST_F(LeakingVictim, Library) {
    ASSERT_TRUE(FreeLibrary(LoadLibraryW(L"msxml6.dll")));
    ASSERT_NE(LoadLibraryW(L"version.dll"), nullptr);
}

TEST_F(LeakingVictim, Search) {
    WIN32_FIND_DATAW match;
    ASSERT_TRUE(FindClose(FindFirstFileW(L"C:\\*", &match)));
    ASSERT_NE(FindFirstFileW(L"C:\\*", &match), INVALID_HANDLE_VALUE);
}

TEST_F(LeakingVictim, HeapBlock) {
    ASSERT_TRUE(HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 10)));
    ASSERT_NE(HeapAlloc(GetProcessHeap(), 0, 10), nullptr);
}

TEST_F(LeakingVictim, Bstr) {
    SysFreeString(SysAllocString(L"freed"));
    ASSERT_NE(SysAllocString(L"not freed"), nullptr);
}

}  // namespace
