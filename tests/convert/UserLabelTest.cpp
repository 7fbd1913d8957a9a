#include "UserLabel.h"

#include "CConvertorHost.h"
#include "CLeakCheckedTest.h"

namespace {

class UserLabelTest : public CLeakCheckedTest {
protected:
    [[nodiscard]] CConvertorHost& Host() { return m_host; }
    [[nodiscard]] std::wstring LabelOf(const std::wstring& label) {
        SessionData data;
        data.label = label;
        return GetUserLabel(*MakeUserSession(m_host.ShareRecord(), data).Get());
    }

private:
    CConvertorHost m_host;
};

TEST_F(UserLabelTest, IsWhatTheHostSays) {
    EXPECT_EQ(LabelOf(L"DOMAIN\\gr\u00fc\u00df %s"), L"DOMAIN\\gr\u00fc\u00df %s");
    EXPECT_EQ(LabelOf(L""), L"");

    EXPECT_EQ(Host().Record().GetCallTexts(),
              (std::vector<std::string>{"Session 0: get_userLabel", "Session 0: get_userLabel"}));
}

TEST_F(UserLabelTest, IsNullWhereTheHostFails) {
    for (const HRESULT failure : {E_FAIL, E_NOTIMPL, static_cast<HRESULT>(0x8ABCDEF0)}) {
        Host().Record().Fail("IUserSessionInfo::get_userLabel", 1, failure);

        EXPECT_EQ(LabelOf(L"user"), L"NULL");
    }
}

TEST_F(UserLabelTest, IsEmptyWhereTheHostGivesNullWithSuccess) {
    Host().Record().GiveNull("IUserSessionInfo::get_userLabel");

    EXPECT_EQ(LabelOf(L"user"), L"");
}

TEST_F(UserLabelTest, AnotherSuccessIsOneToo) {
    Host().Record().Fail("IUserSessionInfo::get_userLabel", 1, S_FALSE);

    EXPECT_EQ(LabelOf(L"user"), L"") << "which the host left untouched";
}

}  // namespace
