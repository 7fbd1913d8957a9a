#include "CCriticalSection.h"

#include <thread>

#include "CHresultException.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"

namespace {

constexpr LockRank kAnyRank = LockRank::eInnermost;

class CCriticalSectionTest : public CLeakCheckedTest {};

DWORD g_spinCount;

BOOL WINAPI RefuseToInitialize(CRITICAL_SECTION*, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

BOOL WINAPI NoteSpinCount(CRITICAL_SECTION* section, DWORD spinCount) {
    g_spinCount = spinCount;
    InitializeCriticalSection(section);
    return TRUE;
}

TEST_F(CCriticalSectionTest, TheThreadThatHoldsItMayTakeItAgain) {
    CCriticalSection section(kAnyRank);
    const CCriticalSectionLock outer(section);
    const CCriticalSectionLock inner(section);

    EXPECT_EQ(CResourceLedger::Get().Count().locksHeld, 2);
}

TEST_F(CCriticalSectionTest, AnotherThreadWaitsUntilItIsLeft) {
    CCriticalSection section(kAnyRank);
    int order = 0;
    int seenByOther = 0;
    std::thread other;
    {
        const CCriticalSectionLock lock(section);
        other = std::thread([&] {
            const CCriticalSectionLock otherLock(section);
            seenByOther = ++order;
        });
        order = 1;
    }
    other.join();

    EXPECT_EQ(seenByOther, 2);
}

TEST_F(CCriticalSectionTest, ItIsInitialisedWithASpinCountOfZero) {
    g_spinCount = 4711;
    const CImportHook hook(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount",
                           AddressOf(&NoteSpinCount));
    {
        const ResourceCounts before = CResourceLedger::Get().Count();
        alignas(CCriticalSection) std::byte place[sizeof(CCriticalSection)];
        new (place) CCriticalSection(kAnyRank);  // destroyed past the ledger, which did not see it made
        EXPECT_EQ(CResourceLedger::Get().Count(), before);
    }

    EXPECT_EQ(g_spinCount, 0U);
}

TEST_F(CCriticalSectionTest, ALockThatCannotBeMadeIsThrownAsTheLastError) {
    const CImportHook hook(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount",
                           AddressOf(&RefuseToInitialize));

    try {
        const CCriticalSection section(kAnyRank);
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80070008));
    }
}

}  // namespace
