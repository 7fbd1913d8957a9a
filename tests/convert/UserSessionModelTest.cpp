#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "CModelTest.h"

namespace {

/// User sessions as the data model holds them.
class UserSessionModelTest : public CModelTest {
protected:
    [[nodiscard]] static SessionData MakeSession(std::vector<PropertyData> properties = {}) {
        SessionData session;
        session.id = 7;
        session.sid = L"sid";
        session.user = L"user";
        session.domain = L"domain";
        session.properties.properties = std::move(properties);
        return session;
    }
    [[nodiscard]] static std::string Session(const std::string& properties) {
        return R"(UserSession(id=7, sid="sid", user="user", domain="domain", connected=true, properties={)" +
               properties + "}, metrics=[], remoteApps=[])";
    }

    /// The text that the system makes of a value, as the model tells it; the empty one where it makes none.
    [[nodiscard]] static std::string TextOf(CVariantValue value) {
        VARIANT changed = value.Detach();
        const HRESULT result = VariantChangeType(&changed, &changed, 0, VT_BSTR);
        const CVariantValue owner(changed);
        return SUCCEEDED(result) ? TellText({changed.bstrVal, SysStringLen(changed.bstrVal)}) : R"("")";
    }
};

CVariantValue MakeDecimal(BYTE scale, ULONGLONG digits) {
    VARIANT value{};
    value.decVal.scale = scale;
    value.decVal.Lo64 = digits;
    value.vt = VT_DECIMAL;  // shares the decimal's bytes
    return CVariantValue(value);
}

CVariantValue MakeArray(VARTYPE type) {
    VARIANT value{};
    value.vt = VT_ARRAY | type;
    value.parray = SafeArrayCreateVector(type, 0, 2);
    return CVariantValue(value);
}

TEST_F(UserSessionModelTest, EveryFieldArrives) {
    SessionData session = MakeSession({{L"client", MakeText(L"desk")}});
    session.user = L"gr\u00fc\u00df \U0001f600";
    session.domain = std::wstring(L"a\0b", 3);

    const std::string told = TellSession(ConvertSession(session));

    EXPECT_EQ(told, R"(UserSession(id=7, sid="sid", user="gr\u00fc\u00df \ud83d\ude00", domain="a\u0000b", )"
                    R"(connected=true, properties={"client"="desk"}, metrics=[], remoteApps=[]))");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionModelTest, AnIdIsAnyJavaInt) {
    for (const LONG id : {0L, -1L, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()}) {
        SessionData session;
        session.id = id;

        EXPECT_EQ(TellSession(ConvertSession(session)),
                  "UserSession(id=" + std::to_string(id) +
                      R"(, sid="", user="", domain="", connected=true, properties={}, metrics=[], remoteApps=[]))");
    }
}

TEST_F(UserSessionModelTest, OnlyTheStateOneIsConnected) {
    constexpr SHORT kStates[] = {
        0, 1, 2, -1, 257, std::numeric_limits<SHORT>::min(), std::numeric_limits<SHORT>::max()};
    for (const SHORT state : kStates) {
        SessionData session;
        session.state = state;

        EXPECT_EQ(TellSession(ConvertSession(session)),
                  std::string(R"(UserSession(id=0, sid="", user="", domain="", connected=)") +
                      (state == 1 ? "true" : "false") + ", properties={}, metrics=[], remoteApps=[])")
            << state;
    }
}

TEST_F(UserSessionModelTest, NullTextsAreEmptyOnes) {
    Record()->GiveNull("IUserSessionInfo::get_sid");
    Record()->GiveNull("IUserSessionInfo::get_user");
    Record()->LeaveUntouched("IUserSessionInfo::get_domain");

    const std::string told = TellSession(ConvertSession(MakeSession()));

    EXPECT_EQ(told, R"(UserSession(id=7, sid="", user="", domain="", connected=true, properties={}, metrics=[], )"
                    "remoteApps=[])");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionModelTest, PropertiesAreTheTextsThatTheSystemMakesOfTheirValues) {
    LONG referenced = -5;
    const auto object = MakePropertyBox(Record(), {});
    const std::pair<const char*, CVariantValue> values[] = {
        {"an empty value", MakeEmpty()},
        {"a null value", MakeNull()},
        {"a date", MakeDate(45351.524259259)},
        {"a date before its zero", MakeDate(-1.25)},
        {"no date", MakeDate(1e300)},
        {"true", MakeBool(true)},
        {"false", MakeBool(false)},
        {"a currency", MakeScalar(VT_CY, static_cast<ULONGLONG>(-12345678))},
        {"a decimal", MakeDecimal(2, 12345)},
        {"a double", MakeDouble(0.1)},
        {"a great double", MakeDouble(1.7976931348623157e308)},
        {"a float", MakeFloat(-0.5F)},
        {"a byte", MakeScalar(VT_UI1, 255)},
        {"a 64-bit number", MakeInt64(std::numeric_limits<LONGLONG>::min())},
        {"a referenced number", MakeScalar(VT_BYREF | VT_I4, reinterpret_cast<ULONG_PTR>(&referenced))},
        {"an error", MakeError(DISP_E_PARAMNOTFOUND)},
        {"an object", MakeInterface(object.Get())},
        {"no object", MakeInterface(nullptr)},
        {"an array of numbers", MakeArray(VT_I4)},
        {"an array of bytes", MakeArray(VT_UI1)},
        {"a type that does not exist", MakeScalar(0x0F42, 5)},
        {"no text", MakeNullText()},
    };
    std::vector<PropertyData> properties;
    std::string expected;
    for (const auto& [name, value] : values) {
        const std::string text = TextOf(value);
        properties.push_back({std::wstring(name, name + std::string(name).size()), value});
        expected += (expected.empty() ? "\"" : ", \"") + std::string(name) + "\"=" + text;
    }

    const std::string told = TellSession(ConvertSession(MakeSession(properties)));

    EXPECT_EQ(told, Session(expected));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionModelTest, WhatHasNoTextIsAnEmptyProperty) {
    const auto object = MakePropertyBox(Record(), {});

    const std::string told =
        TellSession(ConvertSession(MakeSession({{L"number", MakeInt(-5)},
                                                {L"empty", MakeEmpty()},
                                                {L"null", MakeNull()},
                                                {L"object", MakeInterface(object.Get())},
                                                {L"array", MakeArray(VT_I4)},
                                                {L"error", MakeError(E_FAIL)},
                                                {L"null reference", MakeScalar(VT_BYREF | VT_I4, 0)},
                                                {L"text", MakeText(std::wstring(L"a\0\xd83d", 3))}})));

    EXPECT_EQ(told, Session(R"("number"="-5", "empty"="", "null"="", "object"="", "array"="", "error"="", )"
                            R"("null reference"="", "text"="a\u0000\ud83d")"));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionModelTest, OfAPropertyThatComesTwiceTheLaterValueCounts) {
    const std::string told = TellSession(
        ConvertSession(MakeSession({{L"a", MakeText(L"first")}, {L"b", MakeInt(1)}, {L"a", MakeText(L"second")}})));

    EXPECT_EQ(told, Session(R"("a"="second", "b"="1")"));
}

TEST_F(UserSessionModelTest, WithoutAFieldThereIsNoSession) {
    for (const char* const getter : {"get_id", "get_sid", "get_user", "get_domain", "get_state"}) {
        Record()->Fail(std::string("IUserSessionInfo::") + getter, 1, kFailure);

        EXPECT_EQ(TellSession(ConvertSession(MakeSession({{L"a", MakeInt(1)}}))), "null") << getter;

        EXPECT_EQ(Record()->CountCalls(std::string("IUserSessionInfo::") + getter), 1) << getter;
        EXPECT_EQ(Host().Errors(), Texts{}) << getter;
        Record()->ClearFaults();
        Record()->ClearCalls();
    }
}

TEST_F(UserSessionModelTest, OfSpoiltPropertiesTheSessionAndTheOthersAreLeft) {
    struct Case {
        const char* what;
        void (*spoil)(SessionData& session, CCallRecord& record);
        std::string left;
        Texts errors;
    };
    const std::string all = R"("a"="1", "b"="2", "c"="3")";
    const Case cases[] = {
        {"nothing", [](SessionData&, CCallRecord&) {}, all, {}},
        {"no box",
         [](SessionData&, CCallRecord& record) { record.Fail("IUserSessionInfo::get_propertyBox", 1, kFailure); },
         "",
         {L"Failed to get property box" + kFailureText}},
        {"a null box",
         [](SessionData&, CCallRecord& record) { record.GiveNull("IUserSessionInfo::get_propertyBox"); },
         "",
         {}},
        {"no enumerator",
         [](SessionData&, CCallRecord& record) { record.Fail("IPropertyBox::get_enumerator", 1, kFailure); },
         "",
         {L"Failed to get enumerator from property box" + kFailureText}},
        {"a null enumerator",
         [](SessionData&, CCallRecord& record) { record.GiveNull("IPropertyBox::get_enumerator"); },
         "",
         {}},
        {"a failure midway",
         [](SessionData& session, CCallRecord&) { session.properties.walk.failAt = 2; },
         R"("a"="1", "b"="2")",
         {}},
        {"a null name",
         [](SessionData& session, CCallRecord&) { session.properties.walk.nullNameAt = 0; },
         R"("b"="2", "c"="3")",
         {}},
        {"a null value",
         [](SessionData& session, CCallRecord&) { session.properties.walk.nullItemAt = 1; },
         R"("a"="1", "b"="", "c"="3")",
         {}},
        {"an untouched pair, then all of them",
         [](SessionData&, CCallRecord& record) { record.LeaveUntouched("INameValueEnumerator::Next", 2); },
         all,
         {}},
    };
    for (const Case& each : cases) {
        SessionData session = MakeSession({{L"a", MakeInt(1)}, {L"b", MakeInt(2)}, {L"c", MakeInt(3)}});
        each.spoil(session, *Record());

        EXPECT_EQ(TellSession(ConvertSession(session)), Session(each.left)) << each.what;

        EXPECT_EQ(Host().Errors(), each.errors) << each.what;
        Record()->ClearFaults();
        Host().ForgetLog();
    }
}

}  // namespace
