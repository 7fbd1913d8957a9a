#include "CResourceLedger.h"

#include <objbase.h>

#include "CLeakCheckedTest.h"

namespace {

class CResourceLedgerTest : public CLeakCheckedTest {};

TEST_F(CResourceLedgerTest, WhatIsGivenBackIsNotCounted) {
    const ResourceCounts before = CResourceLedger::Get().Count();

    CoTaskMemFree(CoTaskMemAlloc(10));
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(key);

    EXPECT_EQ(CResourceLedger::Get().Count(), before);
}

TEST_F(CResourceLedgerTest, AFailedCallIsNotCounted) {
    const ResourceCounts before = CResourceLedger::Get().Count();

    HKEY key = nullptr;
    EXPECT_NE(RegOpenKeyExW(HKEY_CURRENT_USER, L"No such key", 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(LoadLibraryW(L"no such library.dll"), nullptr);

    EXPECT_EQ(CResourceLedger::Get().Count(), before);
}

TEST_F(CResourceLedgerTest, EachBlockOfComIsCountedOnce) {
    void* const block = CoTaskMemAlloc(10);
    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 1);

    CoTaskMemFree(block);
    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 0);
}

}  // namespace
