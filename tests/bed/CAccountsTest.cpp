#include "CAccounts.h"

namespace {

class CAccountsTest : public testing::Test {
protected:
    /// Counts these two, before and after they are changed; what is said of it.
    std::string Told(long long exact, long long wavering) {
        m_accounts.Open();
        m_exact += exact;
        m_wavering += wavering;
        return m_accounts.Close().message();
    }

    long long m_exact = 7;
    long long m_wavering = 1'000;
    CAccounts m_accounts{{{"things", [this] { return m_exact; }}, {"bytes", [this] { return m_wavering; }, 100}}};
};

TEST_F(CAccountsTest, NothingIsToldOfWhatIsAsItWas) {
    EXPECT_EQ(Told(0, 0), "");
    EXPECT_TRUE(m_accounts.Close());
}

TEST_F(CAccountsTest, OneMoreAndOneLessAreTold) {
    EXPECT_EQ(Told(1, 0), "things: 7 before, 8 after\n");
    EXPECT_FALSE(m_accounts.Close());
    EXPECT_EQ(Told(-1, 0), "things: 8 before, 7 after\n");
}

TEST_F(CAccountsTest, GrowthByTheMarginIsToldAndLessIsNot) {
    EXPECT_EQ(Told(0, 99), "");
    EXPECT_EQ(Told(0, 100), "bytes: 1099 before, 1199 after\n");
    EXPECT_EQ(Told(0, -500), "") << "what is given back is no leak";
}

TEST_F(CAccountsTest, EachDifferenceIsTold) {
    EXPECT_EQ(Told(2, 200), "things: 7 before, 9 after\nbytes: 1000 before, 1200 after\n");
}

TEST_F(CAccountsTest, TheRowTellsEachQuantity) {
    m_accounts.Open();
    m_wavering += 5;
    static_cast<void>(m_accounts.Close());

    EXPECT_EQ(m_accounts.MakeHeading(), "| what is called | calls | things | bytes |\n|---|---|---|---|");
    EXPECT_EQ(m_accounts.MakeRow("item", 10), "| item | 10 | 7 | 1000 > 1005 |");
}

}  // namespace
