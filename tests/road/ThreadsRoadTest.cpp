// Many of a host's threads, in apartments of all kinds, send at once.

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <thread>

#include "CMeeting.h"
#include "CRegisteredServer.h"
#include "CRoadTest.h"
#include "DataType.h"
#include "JavaWitness.h"
#include "RunInApartment.h"

namespace {

constexpr std::size_t kThreads = 16;
constexpr std::size_t kRounds = 2;  // of an item of each kind

/// One thread of the host's: what it sends and what came of it.
struct Sender {
    std::vector<RoadItem> items;
    std::vector<long> results{};
    DWORD threadId = 0;
};

class ThreadsRoadTest : public CRoadTest {
protected:
    void SetUp() override {
        CRoadTest::SetUp();
        Unregister();
        m_registered = std::make_unique<CRegisteredServer>(Host().MakeClassObject().Get());
    }

    void TearDown() override {
        m_registered.reset();
        CRoadTest::TearDown();
    }

    /// Numbered through, and beginning with another kind than the thread before.
    [[nodiscard]] Sender MakeSender(std::size_t index) {
        Sender sender;
        for (std::size_t round = 0; round < kRounds; ++round) {
            std::vector<RoadItem> items = MakeItems(index * kRounds + round);
            const auto first = static_cast<std::ptrdiff_t>(index % items.size());
            std::rotate(items.begin(), items.begin() + first, items.end());
            std::move(items.begin(), items.end(), std::back_inserter(sender.items));
        }
        return sender;
    }

    void Run(std::size_t index, const CMessageServer& server, Sender& sender) {
        RunInApartment(index, [&] {
            sender.threadId = GetCurrentThreadId();
            m_begin.Wait();
            for (const RoadItem& item : sender.items) {
                sender.results.push_back(Dump(server, item));
            }
            sender.items.clear();
        });
        // Nobody is in Java any more when the first of them ends: under Wine, that may lock up where Java starts a
        // thread.
        m_end.Wait();
    }

    CMeeting m_begin{kThreads};
    CMeeting m_end{kThreads};

private:
    std::unique_ptr<CRegisteredServer> m_registered;
};

std::vector<std::string> SortLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

TEST_F(ThreadsRoadTest, EachItemOfSixteenThreadsArrivesOnceAndIsAnsweredOnItsThread) {
    const CMessageServer server(
        "server", Way::ePlain,
        {"--answer", "onStartup=s", "--answer", "onUserLogon=l", "--answer", "onExtendedDataCollected=a", "--answer",
         "onDataCollected=a", "--answer", "onDesktopPoll=a"});
    ASSERT_EQ(Dump(server, eStartup), S_OK);  // here, so that RMI has its threads when those of the test end
    const int javaThreads = CountJavaThreads();
    std::string expected = server.Record();
    std::vector<Sender> senders;
    for (std::size_t index = 0; index < kThreads; ++index) {
        senders.push_back(MakeSender(index));
        expected += JoinLines(senders.back().items);
    }

    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (std::size_t index = 0; index < kThreads; ++index) {
        threads.emplace_back([&, index] { Run(index, server, senders[index]); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(SortLines(SortMaps(server.Record())), SortLines(expected));
    std::map<DWORD, std::size_t> actions;
    for (const HostAction& action : Host().Actions().GetEntries()) {
        ++actions[action.threadId];
    }
    EXPECT_EQ(actions.size(), kThreads);
    for (const Sender& sender : senders) {
        EXPECT_EQ(std::count(sender.results.begin(), sender.results.end(), S_OK),
                  static_cast<std::ptrdiff_t>(sender.results.size()));
        EXPECT_EQ(actions[sender.threadId], 3 * kRounds) << "of extended data, samples and polls";
    }
    EXPECT_EQ(m_callback.Told().size(), 1 + 2 * kThreads * kRounds) << "of start-ups and logons";
    EXPECT_EQ(CountJavaThreads(), javaThreads) << "each was detached at its end";
}

}  // namespace
