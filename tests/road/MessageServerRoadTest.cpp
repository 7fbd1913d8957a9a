// From a host's call through the manager, the real Java runtime and the real message client to the message server, and
// back: which threads may call, and which server is called.

#include "CRoadTest.h"
#include "DataType.h"
#include "RunOnNewThread.h"

namespace {

class MessageServerRoadTest : public CRoadTest {
protected:
    static CMessageServer::Words Welcome() { return {"--answer", "onStartup=welcome"}; }
};

const std::string kReport = MakeStartupLine();

TEST_F(MessageServerRoadTest, TheFirstCallOfAllReachesTheServerAndItsAnswerTheHost) {
    const CMessageServer server("plain", Way::ePlain, Welcome());

    EXPECT_EQ(Dump(server, eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
    EXPECT_EQ(server.Record(), kReport);
}

TEST_F(MessageServerRoadTest, AThreadWithoutAContextClassLoaderReportsLikeTheFirst) {
    const CMessageServer plain("plain", Way::ePlain, Welcome());
    const CMessageServer tls("tls", Way::eTls, Welcome());
    ASSERT_EQ(Dump(plain, eStartup), S_OK);

    RunOnNewThread([&] {
        EXPECT_EQ(Dump(plain, eStartup), S_OK);
        EXPECT_EQ(Dump(tls, eStartup), S_OK) << "a connection of its own, too";
    });

    EXPECT_EQ(m_callback.Told(), Reports(3, {eStartup, L"welcome"}));
    EXPECT_EQ(plain.Record(), kReport + kReport);
    EXPECT_EQ(tls.Record(), kReport);
}

TEST_F(MessageServerRoadTest, AFirstCallMayComeFromAThreadThatDidNotStartJava) {
    const CMessageServer server("plain", Way::ePlain, Welcome());
    Start();

    RunOnNewThread([&] { EXPECT_EQ(Dump(server, eStartup), S_OK); });

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"welcome"}}));
}

TEST_F(MessageServerRoadTest, EveryCallGoesToTheServerThatItNames) {
    const CMessageServer one("one", Way::ePlain, {"--answer", "onStartup=one"});
    const CMessageServer other("other", Way::ePlain, {"--answer", "onStartup=other"});

    EXPECT_EQ(Dump(one, eStartup), S_OK);
    EXPECT_EQ(Dump(other, eStartup), S_OK);
    EXPECT_EQ(Dump(one, eStartup), S_OK);

    EXPECT_EQ(m_callback.Told(), (Reports{{eStartup, L"one"}, {eStartup, L"other"}, {eStartup, L"one"}}));
    EXPECT_EQ(one.Record(), kReport + kReport);
    EXPECT_EQ(other.Record(), kReport);
}

}  // namespace
