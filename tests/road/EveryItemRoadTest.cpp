// Every kind of item, from the host's object to the server's record with every value, and the answers back to the host.

#include <fstream>

#include "CRoadTest.h"
#include "DataType.h"
#include "Road.h"
#include "RunOnNewThread.h"

namespace {

constexpr unsigned __int64 kNumber = 0xFFFFFFFFFFFFFFFE;  // -2 in Java, which has no unsigned type

const CMessageServer::Words kAnswers = {"--answer", "onStartup=welcome",
                                        "--answer", "onUserLogon=@greeting.txt",
                                        "--answer", "onExtendedDataCollected=act on the disks",
                                        "--answer", "onDataCollected=act on the sample",
                                        "--answer", "onActionPerformed=nobody hears this",
                                        "--answer", "onDesktopPoll=act on the poll"};

class CSentItemsTest : public CRoadTest {
protected:
    void SendAll(const CMessageServer& server, const std::vector<RoadItem>& items) {
        for (const RoadItem& item : items) {
            EXPECT_EQ(Dump(server, item), S_OK) << "type " << int{item.type};
        }
    }
};

class EveryItemRoadTest : public CSentItemsTest, public testing::WithParamInterface<Way> {};

TEST_P(EveryItemRoadTest, ArrivesWithItsValuesAndIsAnswered) {
    std::ofstream(Road::File("greeting.txt"), std::ios::binary) << "gr\xc3\xbc\xc3\x9f \xe4\xb8\xad\n";
    const CMessageServer server("server", GetParam(), kAnswers);
    const std::vector<RoadItem> items = MakeItems(kNumber);
    Start();

    RunOnNewThread([&] { SendAll(server, items); });

    EXPECT_EQ(SortMaps(server.Record()), JoinLines(items));
    EXPECT_EQ(m_callback.Told(), (Reports{{eUserSessionLogon, L"gr\u00fc\u00df \u4e2d\n"}, {eStartup, L"welcome"}}));
    EXPECT_EQ(Actions(),
              (std::vector<std::string>{"BSTR act on the disks", "BSTR act on the sample", "BSTR act on the poll"}));
    EXPECT_EQ(LoggedErrors(), Texts(2, L"Invalid type for metric 'flag'.")) << "of the logoff and of the sample";
}

INSTANTIATE_TEST_SUITE_P(Ways, EveryItemRoadTest, testing::Values(Way::ePlain, Way::eTls), NameWay);

class AnswerlessItemRoadTest : public CSentItemsTest {};

TEST_F(AnswerlessItemRoadTest, ArrivesAndNobodyIsToldAnything) {
    const CMessageServer server("server");
    const std::vector<RoadItem> items = MakeItems(1);

    SendAll(server, items);

    EXPECT_EQ(SortMaps(server.Record()), JoinLines(items));
    EXPECT_EQ(m_callback.Told(), Reports{});
    EXPECT_EQ(Actions(), std::vector<std::string>{});
}

}  // namespace
