// Long and stormy: 32 threads call everything there is, some of them come and go, Java collects garbage, and message
// servers go and come back meanwhile. TELVAR_SOAK_SECONDS says for how long, 20 where it says nothing.

#include <iostream>
#include <thread>
#include <vector>

#include "CMeeting.h"
#include "CSoakTest.h"
#include "JavaWitness.h"
#include "ProcessQuantities.h"
#include "RunInApartment.h"

namespace {

constexpr unsigned kLastingThreads = 24;
constexpr unsigned kPassingThreads = 8;  // at a time
constexpr unsigned kThreads = kLastingThreads + kPassingThreads;
constexpr unsigned kMostThreads = kThreads + kPassingThreads;  // with those that replace the passing ones
constexpr std::size_t kPassingKinds = 3;                       // of items, in the life of a passing thread
constexpr unsigned kFewestStorms = 2;

// What the soak waits for before it goes on, in calls and ended threads.
constexpr long kCalmCalls = 100;
constexpr long kCalmEnds = 16;
constexpr long kStormyCalls = 40;
constexpr long kRefusals = 5;

/// For Java's sockets, and for what Java and Wine make when threads first meet at a lock. A soak of minutes ends more
/// threads than that.
constexpr long kHandleMargin = 64;

class SoakRoadTest : public CSoakTest {
protected:
    void SetUp() override {
        CSoakTest::SetUp();
        for (unsigned index = 0; index <= kThreads; ++index) {
            SetServerAt(ConfigPath(index));
        }
    }

    /// As many threads as there ever are at once, all of them known to Java and COM, which keep things of a thread for
    /// the next one: these are there from now on.
    void HaveThreadsOnce() {
        CMeeting called(kMostThreads);
        std::vector<std::thread> threads;
        for (unsigned index = 0; index < kMostThreads; ++index) {
            threads.emplace_back([&, index] {
                RunInApartment(index, [&] {
                    CSoakCaller caller(*m_soak, kThreads, ConfigPath(kThreads));
                    caller.FindServer();
                    EXPECT_EQ(caller.Poll(), S_OK);
                    called.Wait();
                });
            });
        }
        JoinAll(threads);
    }

    static void JoinAll(std::vector<std::thread>& threads) {
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Calls to the end, which it meets together with all others of its kind.
    void Last(unsigned index, CMeeting& end) {
        RunInApartment(index, [&] {
            CSoakCaller caller(*m_soak, index, ConfigPath(index));
            while (!m_soak->isOver) {
                caller.RunRound();
            }
        });
        end.Wait();
    }

    /// Has one thread after the other call for a while, and sees to it that none ends in a storm.
    void Replace(unsigned index, CMeeting& end) {
        for (unsigned seed = index; !m_soak->isOver; seed += kThreads) {
            CMeeting called(2);
            CMeeting mayEnd(2);
            std::thread passing([&] {
                RunInApartment(index, [&] { CSoakCaller(*m_soak, seed, ConfigPath(index)).RunRound(kPassingKinds); });
                called.Wait();
                mayEnd.Wait();
            });
            called.Wait();
            const std::shared_lock<CSharedLock> calm(m_soak->threadEnds);
            mayEnd.Wait();
            passing.join();
            ++m_soak->endedThreads;
        }
        end.Wait();
    }

    void StayCalm() {
        AwaitMore(m_soak->first.heard, kCalmCalls);
        AwaitMore(m_soak->endedThreads, kCalmEnds);
    }

    void BeginStorm() {
        m_soak->threadEnds.lock();
        const std::unique_lock<CSharedLock> alone(m_soak->calls);
        m_soak->isStormy = true;
    }

    /// Calm is when the first server is known to be there.
    void EndStorm(CSoakCaller& caller) {
        {
            const std::unique_lock<CSharedLock> alone(m_soak->calls);
            Await([&] { return caller.PollFirstAlone() == S_OK; });
            m_soak->isStormy = false;
        }
        m_soak->threadEnds.unlock();
    }

    /// As a user ends it, or amid calls.
    void Restart(SoakedServer& server, bool isKilled) {
        if (isKilled) {
            server.server.Kill();
        } else {
            server.server.Stop();
        }
        AwaitMore(server.refused, kRefusals);
        server.server.StartAgain(server.options);
        EXPECT_EQ(server.server.Url(), server.url);
        AwaitMore(server.heard, kRefusals);
    }

    void Storm(unsigned number, CSoakCaller& caller) {
        Tell("a storm begins");
        BeginStorm();
        AwaitMore(m_soak->first.heard, kStormyCalls);
        AwaitMore(m_soak->second.heard, kRefusals);
        Restart(m_soak->first, number % 2 == 0);
        if (number % 2 == 1) {
            Restart(m_soak->second, true);
        }
        EndStorm(caller);
        Tell("calm");
    }
};

TEST_F(SoakRoadTest, EachItemIsDeliveredOnceOrItsCallFails) {
    const ULONGLONG endMs = GetTickCount64() + 1000ULL * ReadSeconds();
    CSoakCaller here(*m_soak, kThreads, ConfigPath(kThreads));
    here.SendEachTo(m_soak->first);
    here.SendEachTo(m_soak->second);
    here.RunRound();
    m_soak->isStormy = false;
    ASSERT_EQ(here.Poll(), S_OK);
    HaveThreadsOnce();
    const int javaThreads = CountJavaThreads();
    const int references = CountJavaGlobalReferences();
    const long handles = CountHandles();

    CMeeting end(kThreads);
    std::vector<std::thread> threads;
    for (unsigned index = 0; index < kLastingThreads; ++index) {
        threads.emplace_back([&, index] { Last(index, end); });
    }
    for (unsigned index = kLastingThreads; index < kThreads; ++index) {
        threads.emplace_back([&, index] { Replace(index, end); });
    }
    unsigned storms = 0;
    while (storms < kFewestStorms || GetTickCount64() < endMs) {
        StayCalm();
        Storm(storms++, here);
    }
    Tell("over");
    m_soak->isOver = true;
    JoinAll(threads);

    for (SoakedServer* const server : {&m_soak->first, &m_soak->second}) {
        EXPECT_EQ(server->deliveries.Compare(server->server.Record()), std::vector<std::string>{});
        std::cout << server->name << " server: " << server->deliveries.Summarize() << std::endl;
        ExpectEachAnswerAtItsCallback(*server);
    }
    ExpectEachActionOnItsThread();
    EXPECT_EQ(CountJavaThreads(), javaThreads) << "each was detached at its end";
    static_cast<void>(CountJavaHeap());
    EXPECT_EQ(CountJavaGlobalReferences(), references);
    EXPECT_LT(CountHandles(), handles + kHandleMargin);
}

}  // namespace
