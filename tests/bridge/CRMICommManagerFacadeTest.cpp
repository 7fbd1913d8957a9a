#include "CRMICommManagerFacade.h"

#include <thread>

#include "BindingTable.h"
#include "CFakeBridgeTest.h"
#include "CHresultException.h"
#include "CImportHook.h"
#include "CRecordingCallback.h"

namespace {

using Reports = CRecordingCallback::Reports;

constexpr unsigned char kNamelessKind = 11;

BOOL WINAPI MakeNoLock(CRITICAL_SECTION*, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

void* WINAPI AllocateNothing(HANDLE, DWORD, SIZE_T) {
    return nullptr;
}

/// The object behind GetInstance, on the fake runtime.
class CRMICommManagerFacadeTest : public CFakeBridgeTest {
protected:
    void SetUp() override {
        CFakeBridgeTest::SetUp();
        Registry().SetAgentText(L"ConfigDirectory", L"C:\\Config");
        m_facade = std::make_unique<CRMICommManagerFacade>(Slots());
    }

    void TearDown() override {
        m_facade.reset();
        CFakeBridgeTest::TearDown();
    }

    std::unique_ptr<CRMICommManagerFacade> m_facade;
    CRecordingCallback m_callback;
};

TEST_F(CRMICommManagerFacadeTest, ThereIsOneObject) {
    EXPECT_EQ(&CRMICommManager::GetInstance(), &CRMICommManager::GetInstance());
}

TEST_F(CRMICommManagerFacadeTest, TheManagerIsMadeByTheFirstCallThatNeedsIt) {
    EXPECT_FALSE(m_facade->HasImpl());
    EXPECT_EQ(m_facade->RegisterDataDumpCallback(L"", L"", L"", nullptr), S_OK);
    EXPECT_TRUE(m_facade->HasImpl());

    m_facade = std::make_unique<CRMICommManagerFacade>(Slots());
    EXPECT_EQ(m_facade->UnregisterDataDumpCallback(L"", L"", L"", nullptr), S_OK);
    EXPECT_TRUE(m_facade->HasImpl());

    m_facade = std::make_unique<CRMICommManagerFacade>(Slots());
    EXPECT_EQ(m_facade->DumpData<IUnknown>(L"", L"", L"", 1, kNamelessKind, nullptr), S_OK);
    EXPECT_TRUE(m_facade->HasImpl());
}

TEST_F(CRMICommManagerFacadeTest, ThreadsThatComeAtOnceGetTheSameManager) {
    std::vector<CRMICommManagerImpl*> managers(16);
    std::vector<std::thread> threads;
    threads.reserve(managers.size());
    for (CRMICommManagerImpl*& manager : managers) {
        threads.emplace_back([&] { manager = &m_facade->GetImpl(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(managers, std::vector<CRMICommManagerImpl*>(16, &m_facade->GetImpl()));
}

TEST_F(CRMICommManagerFacadeTest, WithoutItsLockThereIsNoFacade) {
    const CImportHook noLock(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount",
                             AddressOf(&MakeNoLock));
    try {
        const CRMICommManagerFacade facade(Slots());
        ADD_FAILURE() << "made";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY));
    }
}

TEST_F(CRMICommManagerFacadeTest, AManagerThatCannotBeMadeIsTriedAgain) {
    {
        const CImportHook noLock(GetModuleHandleW(nullptr), "InitializeCriticalSectionAndSpinCount",
                                 AddressOf(&MakeNoLock));
        EXPECT_THROW(static_cast<void>(m_facade->GetImpl()), CHresultException);
        EXPECT_FALSE(m_facade->HasImpl());
    }

    EXPECT_EQ(m_facade->RegisterDataDumpCallback(L"", L"", L"", nullptr), S_OK);
}

TEST_F(CRMICommManagerFacadeTest, TextsOfEveryLengthAreCarriedToTheManager) {
    Fake().MakeMethodReturnText(Binding::DesktopMessageClient::kClass, "onStartup", "welcome");
    for (const std::size_t length : {0U, 1U, 127U, 128U, 129U, 100'000U}) {
        const std::wstring text(length, L'x');
        const wchar_t* const t = text.c_str();
        CRecordingCallback another;
        ASSERT_EQ(m_facade->RegisterDataDumpCallback(t, t, t, &m_callback), S_OK);
        ASSERT_EQ(m_facade->RegisterDataDumpCallback(L"other", t, t, &another), S_OK);

        EXPECT_EQ(m_facade->DumpData<IUnknown>(t, t, t, 1, eStartup, nullptr), S_OK) << length;

        EXPECT_EQ(another.Told(), Reports{}) << length;
        EXPECT_EQ(m_facade->UnregisterDataDumpCallback(t, t, t, &m_callback), S_OK);
        EXPECT_EQ(m_facade->UnregisterDataDumpCallback(L"other", t, t, &another), S_OK);
        EXPECT_EQ(m_callback.CountReferences() + another.CountReferences(), 0) << length;
    }
    EXPECT_EQ(m_callback.Told(), Reports(6, {eStartup, L"welcome"}));
}

TEST_F(CRMICommManagerFacadeTest, NullTextsAreEmptyOnes) {
    EXPECT_EQ(m_facade->RegisterDataDumpCallback(nullptr, nullptr, nullptr, &m_callback), S_OK);
    EXPECT_EQ(m_facade->RegisterDataDumpCallback(L"", nullptr, L"", &m_callback), S_OK);
    EXPECT_EQ(m_callback.CountReferences(), 1);

    EXPECT_EQ(m_facade->UnregisterDataDumpCallback(L"", L"", L"", &m_callback), S_OK);
    EXPECT_EQ(m_callback.CountReferences(), 0);
}

TEST_F(CRMICommManagerFacadeTest, ATextThatCannotBeCopiedIsThrown) {
    const std::wstring text(129, L'x');
    const CImportHook noMemory(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&AllocateNothing));
    const auto expectThrow = [](const auto& call) {
        try {
            static_cast<void>(call());
            ADD_FAILURE() << "not thrown";
        } catch (const CHresultException& exception) {
            EXPECT_EQ(exception.GetResult(), E_OUTOFMEMORY);
        }
    };

    expectThrow([&] { return m_facade->RegisterDataDumpCallback(text.c_str(), L"", L"", &m_callback); });
    expectThrow([&] { return m_facade->RegisterDataDumpCallback(L"", text.c_str(), L"", &m_callback); });
    expectThrow([&] { return m_facade->UnregisterDataDumpCallback(L"", L"", text.c_str(), &m_callback); });

    EXPECT_FALSE(m_facade->HasImpl()) << "copied before the manager is needed";
    EXPECT_EQ(m_callback.CountReferences(), 0);
}

TEST_F(CRMICommManagerFacadeTest, ItsEndOnTheStartingThreadDisposesTheClient) {
    ASSERT_EQ(m_facade->DumpData<IUnknown>(L"", L"", L"", 1, kNamelessKind, nullptr), S_OK);
    ASSERT_EQ(m_facade->RegisterDataDumpCallback(L"", L"", L"", &m_callback), S_OK);

    m_facade.reset();

    EXPECT_EQ(MethodCalls().back(), "DesktopMessageClient.dispose()");
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
    EXPECT_EQ(Fake().GetCallCount("DestroyJavaVM"), 0);
    EXPECT_EQ(m_callback.CountReferences(), 0);
}

TEST_F(CRMICommManagerFacadeTest, WhatALastReleaseStartsAtItsEndEndsWithIt) {
    ASSERT_EQ(m_facade->RegisterDataDumpCallback(L"", L"", L"", &m_callback), S_OK);
    CRMICommManagerFacade& facade = *m_facade;
    m_callback.SetLastRelease([&] {
        EXPECT_EQ(facade.UnregisterDataDumpCallback(L"", L"", L"", &m_callback), S_OK);
        EXPECT_EQ(facade.DumpData<IUnknown>(L"", L"", L"", 1, kNamelessKind, nullptr), S_OK);
    });

    m_facade.reset();

    EXPECT_EQ(MethodCalls().back(), "DesktopMessageClient.dispose()");
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
}

}  // namespace
