#include <climits>
#include <string>

#include "CUserSessionTest.h"

namespace {

using UserSessionConversionTest = CUserSessionTest;
using UserSessionClassTest = CDataConversionTest;

TEST_F(UserSessionClassTest, WithoutItThereIsNoSessionAndTheHostIsNotAsked) {
    const auto session = MakeUserSession(Host().ShareRecord(), SessionData{});

    EXPECT_EQ(MakeConvertor().GetUserSession(SharedVM(), session.Get()), nullptr);

    EXPECT_EQ(HostCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(UserSessionConversionTest, ANullSessionIsNoneWithoutAWordOrACall) {
    EXPECT_EQ(MakeConvertor().GetUserSession(SharedVM(), nullptr), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(UserSessionConversionTest, TheHostIsAskedInOrderAndJavaGetsEverything) {
    const Object session = Convert(MakeData(MakeProperties()));

    EXPECT_NE(session, nullptr);
    Names hostCalls = s_hostCallsBeforeProperties;
    hostCalls.insert(hostCalls.end(), {"Session 7: get_propertyBox", "Box: get_enumerator", "Box properties: Next",
                                       "Box properties: Next", "Box properties: Next", "Box properties: Next"});
    EXPECT_EQ(HostCalls(), hostCalls);
    EXPECT_EQ(JavaCalls(),
              (Names{kConstructed, R"(BaseUserSession.putProperty("a", "first"))",
                     R"(BaseUserSession.putProperty("b", "-2"))", R"(BaseUserSession.putProperty("c", "third"))"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionConversionTest, OnlyTheState1IsConnected) {
    struct Case {
        SHORT state;
        const char* connected;
    };
    for (const Case& c : {Case{1, "true"}, Case{0, "false"}, Case{2, "false"}, Case{VARIANT_TRUE, "false"},
                          Case{257, "false"}, Case{SHRT_MAX, "false"}, Case{SHRT_MIN, "false"}}) {
        SessionData data = MakeData();
        data.state = c.state;
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(),
                  Names{std::string(R"(BaseUserSession.<init>(7, "S-1-5-21", "user", "domain", )") + c.connected + ")"})
            << c.state;
    }
}

TEST_F(UserSessionConversionTest, TheIdIsHandedOnWithItsSign) {
    for (const LONG id : {0L, -1L, LONG_MAX, LONG_MIN}) {
        SessionData data = MakeData();
        data.id = id;
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(),
                  Names{"BaseUserSession.<init>(" + std::to_string(id) + R"(, "S-1-5-21", "user", "domain", true))"});
    }
}

TEST_F(UserSessionConversionTest, NullTextsAreEmpty) {
    for (const char* const operation : {"get_sid", "get_user", "get_domain"}) {
        Host().Record().GiveNull(std::string("Session 7: ") + operation);
    }

    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(Host().Record().CountFiredFaults(), 3);
    EXPECT_EQ(JavaCalls(), Names{R"(BaseUserSession.<init>(7, "", "", "", true))"});
}

TEST_F(UserSessionConversionTest, AFailureOfTheHostsBeforeTheObjectEndsItWithoutAWord) {
    for (std::size_t i = 0; i < s_hostCallsBeforeProperties.size(); ++i) {
        for (const HRESULT failure : kFailures) {
            Host().Record().ClearCalls();
            Host().Record().Fail(s_hostCallsBeforeProperties[i], 1, failure);

            EXPECT_EQ(Convert(MakeData()), nullptr) << s_hostCallsBeforeProperties[i];

            const auto end = s_hostCallsBeforeProperties.begin() + static_cast<std::ptrdiff_t>(i) + 1;
            EXPECT_EQ(HostCalls(), Names(s_hostCallsBeforeProperties.begin(), end));
        }
    }
    EXPECT_EQ(JavaCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionConversionTest, ATextThatJavaDoesNotTakeEndsItBeforeTheHostIsAskedForTheNext) {
    struct Case {
        long nth;
        const wchar_t* text;
    };
    for (const Case& c : {Case{1, L"S-1-5-21"}, Case{2, L"user"}, Case{3, L"domain"}}) {
        Host().Record().ClearCalls();
        Fake().Fail("NewString", c.nth);

        EXPECT_EQ(Convert(MakeData()), nullptr);

        EXPECT_EQ(Host().Errors().back(),
                  L"Failed to create a new Java string for " + std::wstring(c.text) + L".  " + kOutOfMemory);
        EXPECT_EQ(HostCalls(),
                  Names(s_hostCallsBeforeProperties.begin(), s_hostCallsBeforeProperties.begin() + c.nth + 1));
    }
    EXPECT_EQ(Host().Errors().size(), 3U);
    EXPECT_EQ(JavaCalls(), Names{});
    ExpectKeptLocals(3);
}

TEST_F(UserSessionConversionTest, AConstructorThatThrowsIsLoggedAndTheBoxIsNotAskedFor) {
    MakeThrow(Binding::BaseUserSession::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeData(MakeProperties())), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java user session object.  no %s%n"});
    EXPECT_EQ(HostCalls(), s_hostCallsBeforeProperties);
}

}  // namespace
