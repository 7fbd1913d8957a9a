#include "ItemFixture.h"

namespace {

/// Items that the host sends, on the same thread, out of the calls that an item makes.
class ItemReentryTest : public CItemFixture {
protected:
    /// The server that the client was pointed at when `method` was called; how often that was, in `times`.
    std::string ServerOf(const char* method, long& times) {
        std::string current = "\"rmi://one\"";
        std::string server = "none";
        times = 0;
        for (const std::string& call : SentCalls()) {
            if (call.rfind(s_pointing, 0) == 0) {
                current = call.substr(s_pointing.size(), call.size() - s_pointing.size() - 1);
            } else if (call.rfind(std::string("DesktopMessageClient.") + method + "(", 0) == 0) {
                server = current;
                ++times;
            }
        }
        return server;
    }

private:
    static inline const std::string s_pointing = "DesktopMessageClient.setProviderUrl(";
};

TEST_F(ItemReentryTest, WhereverTheyComeFromAnItemIsWholeAndGoesToItsOwnServer) {
    Start();
    Host().Record().SetRecordsQueries(true);
    for (const ItemKind& kind : kItemKinds) {
        Host().Record().ClearCalls();
        ASSERT_EQ(Send(kind), S_OK);
        const std::size_t places = Host().Record().GetCallTexts().size();
        ASSERT_GE(places, 9U);
        const ItemKind& other =
            kItemKinds[kind.type == eUserSessionReconnect ? eUserSessionDisconnect : eUserSessionReconnect];
        for (std::size_t place = 0; place < places; ++place) {
            Forget();
            std::size_t call = 0;
            bool isNested = false;
            long nested = E_PENDING;
            Host().Record().SetBeforeCall([&](const std::string&) {
                if (!isNested && call++ == place) {
                    isNested = true;
                    nested = m_manager->DumpData<IUnknown>(L"rmi://two", L"other", kCertificate, 2, other.type,
                                                           m_data.Get());
                    isNested = false;
                }
            });

            EXPECT_EQ(Send(kind), S_OK) << kind.name << place;

            Host().Record().SetBeforeCall({});
            EXPECT_EQ(nested, S_OK) << kind.name << place;
            long times = 0;
            EXPECT_EQ(ServerOf(other.method, times), "\"rmi://two\"") << kind.name << place;
            EXPECT_EQ(times, 1) << kind.name << place;
            if (kind.method) {
                EXPECT_EQ(ServerOf(kind.method, times), "\"rmi://one\"") << kind.name << place;
                EXPECT_EQ(times, 1) << kind.name << place;
            }
            ASSERT_EQ(Dump(kNamelessKind), S_OK) << "back to the first server";
        }
    }
}

}  // namespace
