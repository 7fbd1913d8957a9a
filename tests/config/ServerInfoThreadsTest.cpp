// Many threads at once, in apartments of both kinds.

#include <algorithm>
#include <thread>

#include "CConfigDocumentTest.h"
#include "RunOnNewThread.h"

namespace {

class ServerInfoThreadsTest : public CConfigDocumentTest {
protected:
    /// A thread's own key, and what is read there.
    void SetServerOf(int thread) const {
        const std::wstring number = std::to_wstring(thread);
        CAgentRegistry::SetBytes(KeyOf(thread), L"MessageServerURL", REG_SZ, BytesOf(L"rmi://" + number));
        CAgentRegistry::SetBytes(KeyOf(thread), L"AdapterCertificate", REG_SZ, BytesOf(L"cert " + number));
    }
    [[nodiscard]] std::wstring KeyOf(int thread) const { return DocumentKey() + std::to_wstring(thread); }
    [[nodiscard]] static ServerInfo ServerOf(int thread) {
        const std::wstring number = std::to_wstring(thread);
        return {S_OK, L"rmi://" + number, kUniqueId, L"cert " + number};
    }

    /// Runs `work` in an apartment of its own thread where the host's class is found.
    template <typename Work>
    void RunInApartment(COINIT kind, const Work& work) {
        EXPECT_EQ(CoInitializeEx(nullptr, kind), S_OK);
        if (kind == COINIT_APARTMENTTHREADED) {
            const CInProcessClassObject registration(Host().MakeClassObject().Get());
            work();
        } else {
            work();
        }
        CoUninitialize();
    }
};

TEST_F(ServerInfoThreadsTest, EightThreadsInSeveralApartmentsEachGetTheirOwnAnswer) {
    constexpr int kThreads = 8;
    constexpr int kCalls = 25;
    for (int i = 0; i < kThreads; ++i) {
        SetServerOf(i);
    }

    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            RunInApartment(i % 2 == 0 ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED, [&] {
                const std::wstring document = DocumentNaming(KeyOf(i));
                for (int call = 0; call < kCalls; ++call) {
                    EXPECT_EQ(Load(document), ServerOf(i));
                    VARIANT content{};
                    EXPECT_EQ(CRMIConfigLoader::GetConfigContent(MakeText(document).Get(), &content), S_OK);
                    EXPECT_EQ(std::wstring(content.bstrVal), KeyOf(i));
                    VariantClear(&content);
                }
            });
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    const Texts logged = Logged();
    EXPECT_EQ(logged.size(), static_cast<std::size_t>(kThreads * kCalls));
    EXPECT_EQ(std::count(logged.begin(), logged.end(), NoList(kNotFound)), kThreads * kCalls);
    EXPECT_EQ(Host().Record().CountCalls(kUniqueIdAsked), kThreads * kCalls);
}

TEST_F(ServerInfoThreadsTest, AnElementOfAnApartmentsOwnIsReadThere) {
    SetServerOf(1);
    RunOnNewThread([&] {
        RunInApartment(COINIT_APARTMENTTHREADED, [&] {
            const Element element = MakeElement(DocumentNaming(KeyOf(1)), L"/agent");
            EXPECT_EQ(Load(MakeInterface(element.Get())), ServerOf(1));
        });
    });
}

TEST_F(ServerInfoThreadsTest, AThousandCallsLeaveNothingBehind) {
    SetServerOf(1);
    const CVariantValue document = MakeText(DocumentNaming(KeyOf(1)));
    Host().Record().SetKeepsHistory(false);
    EXPECT_EQ(Load(document), ServerOf(1));
    const ResourceCounts before = CResourceLedger::Get().Count();

    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(Load(document), ServerOf(1));
    }

    EXPECT_EQ(CResourceLedger::Get().Count(), before);
}

}  // namespace
