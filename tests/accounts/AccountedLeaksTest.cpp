// That the accounts of the other tests tell each kind of leak: one of each is made, and undone again.

#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <thread>

#include "CHost.h"
#include "CRealJvmTest.h"
#include "HostQuantities.h"
#include "JavaQuantities.h"
#include "ProcessQuantities.h"
#include "WatchedRun.h"

namespace {

using Names = std::vector<std::string>;
using testing::Contains;
using testing::IsSupersetOf;

class AccountedLeaksTest : public CRealJvmTest {
protected:
    /// The same accounts as for the real runtime's calls, without the memory, which wavers so soon after a start.
    AccountedLeaksTest() : m_accounts(MakeJavaQuantities(kHeapMarginPerCall * kCalls)) {
        m_accounts.Add(MakeHostQuantities(m_host.Record()));
        m_accounts.Add(MakeProcessQuantities());
    }

    /// The names of the quantities that are told to differ behind `leak`.
    template <typename Leak>
    Names ToldAfter(const Leak& leak) {
        m_accounts.Open();
        leak();
        const testing::AssertionResult result = m_accounts.Close();
        Names names;
        std::istringstream lines(result.message());
        for (std::string line; std::getline(lines, line);) {
            names.push_back(line.substr(0, line.find(':')));
        }
        return names;
    }

    CHost m_host;
    CAccounts m_accounts;
};

TEST_F(AccountedLeaksTest, NoLeakTellsNothing) {
    EXPECT_EQ(ToldAfter([] {}), Names{});
}

TEST_F(AccountedLeaksTest, WhatIsLeakedOfJavaIsTold) {
    jobject reference = nullptr;
    EXPECT_EQ(ToldAfter([&] { reference = Env()->NewGlobalRef(Env()->NewStringUTF("leaked")); }),
              Names{"global references"});
    Env()->DeleteGlobalRef(reference);

    // As much as the smallest object for each call.
    jobject bytes = nullptr;
    EXPECT_EQ(ToldAfter([&] { bytes = Env()->NewByteArray(kCalls * 16); }), Names{"bytes of Java heap"});
    Env()->DeleteLocalRef(bytes);
}

TEST_F(AccountedLeaksTest, AThreadThatStaysIsToldByTheSystemAndByJava) {
    HANDLE const attached = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    HANDLE const end = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread thread;

    const Names told = ToldAfter([&] {
        thread = std::thread([&] {
            EXPECT_EQ(VM().AttachCurrentThread(), JNI_OK);
            SetEvent(attached);
            WaitForSingleObject(end, INFINITE);
            VM().DetachCurrentThread();
        });
        WaitForSingleObject(attached, INFINITE);
    });
    SetEvent(end);
    thread.join();
    CloseHandle(end);
    CloseHandle(attached);

    EXPECT_THAT(told, IsSupersetOf({"threads", "Java threads", "kernel handles", "heap blocks"}));
}

TEST_F(AccountedLeaksTest, WhatIsLeakedOfTheHostsIsTold) {
    const CHostReference<IHostServiceProvider> provider = m_host.MakeProvider();
    EXPECT_EQ(ToldAfter([&] { provider->AddRef(); }), Names{"COM references"});
    provider->Release();

    CHostReference<IHostServiceProvider> another;
    EXPECT_THAT(ToldAfter([&] { another = m_host.MakeProvider(); }), IsSupersetOf({"COM references", "COM objects"}));
}

TEST_F(AccountedLeaksTest, WhatIsLeakedOfComsMemoryIsTold) {
    BSTR text = nullptr;
    EXPECT_EQ(ToldAfter([&] { text = SysAllocString(L"leaked"); }), (Names{"BSTRs and COM blocks", "heap blocks"}));
    SysFreeString(text);

    void* block = nullptr;
    EXPECT_EQ(ToldAfter([&] { block = CoTaskMemAlloc(1); }), (Names{"BSTRs and COM blocks", "heap blocks"}));
    CoTaskMemFree(block);
}

TEST_F(AccountedLeaksTest, WhatIsLeakedOfTheSystemIsTold) {
    HKEY key = nullptr;
    EXPECT_EQ(ToldAfter([&] { RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key); }),
              (Names{"registry keys", "kernel handles"}));
    RegCloseKey(key);

    HMODULE library = nullptr;
    EXPECT_THAT(ToldAfter([&] { library = LoadLibraryW(L"version.dll"); }), Contains("libraries"));
    FreeLibrary(library);

    WIN32_FIND_DATAW match;
    HANDLE search = nullptr;
    EXPECT_THAT(ToldAfter([&] { search = FindFirstFileW(L"C:\\*", &match); }),
                IsSupersetOf({"searches", "heap blocks"}));
    FindClose(search);

    HANDLE event = nullptr;
    EXPECT_EQ(ToldAfter([&] { event = CreateEventW(nullptr, FALSE, FALSE, nullptr); }), Names{"kernel handles"});
    CloseHandle(event);

    CRITICAL_SECTION section;
    EXPECT_THAT(ToldAfter([&] { InitializeCriticalSectionAndSpinCount(&section, 0); }), Contains("critical sections"));
    EXPECT_THAT(ToldAfter([&] { EnterCriticalSection(&section); }), Contains("locks held"));
    LeaveCriticalSection(&section);
    DeleteCriticalSection(&section);
}

TEST_F(AccountedLeaksTest, WhatIsLeakedOfMemoryIsTold) {
    void* volatile block = nullptr;  // a block that nobody can see is not taken at all
    for (const std::size_t bytes : {1U, 100U, 5'000U, 1'000'000U}) {
        EXPECT_THAT(ToldAfter([&] { block = std::malloc(bytes); }), Contains("heap blocks")) << bytes;
        std::free(block);
    }

    // As much as the smallest block for each call, in pages of its own.
    m_accounts.Add({MakeMemoryQuantity(kMemoryMarginPerCall * kCalls)});
    constexpr std::size_t kBytes = std::size_t{32} * kCalls;
    void* pages = nullptr;
    EXPECT_THAT(ToldAfter([&] {
                    pages = VirtualAlloc(nullptr, kBytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
                    std::memset(pages, 1, kBytes);
                }),
                Contains("bytes of memory"));
    VirtualFree(pages, 0, MEM_RELEASE);
}

}  // namespace
