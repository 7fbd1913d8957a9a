#include <string>
#include <utility>
#include <vector>

#include "CImportHook.h"
#include "CUserSessionTest.h"
#include "RefusedMemory.h"
#include "StackObjects.h"

namespace {

using UserSessionPropertiesTest = CUserSessionTest;

TEST_F(UserSessionPropertiesTest, ABoxThatCannotBeHadIsLoggedRunTogetherAndTheSessionStays) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Session 7: get_propertyBox", 1, failure);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get property box" + RunTogether(failure));
        EXPECT_EQ(JavaCalls(), Names{kConstructed});
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get property boxError code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
    EXPECT_EQ(Host().Record().CountCalls("IPropertyBox::get_enumerator"), 0);
}

TEST_F(UserSessionPropertiesTest, AnEnumeratorThatCannotBeHadIsLoggedRunTogetherAndTheSessionStays) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Box: get_enumerator", 1, failure);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr);

        EXPECT_EQ(Host().Errors().back(), L"Failed to get enumerator from property box" + RunTogether(failure));
        EXPECT_EQ(JavaCalls(), Names{kConstructed});
    }
    EXPECT_EQ(Host().Errors().back(), L"Failed to get enumerator from property boxError code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
}

TEST_F(UserSessionPropertiesTest, ASystemTextStandsBehindTheCode) {
    Host().Record().Fail("Session 7: get_propertyBox", 1, E_ACCESSDENIED);

    EXPECT_NE(Convert(MakeData()), nullptr);

    ASSERT_EQ(Host().Errors().size(), 1U);
    const std::wstring beginning = L"Failed to get property boxError code 0x80070005 -- ";
    EXPECT_EQ(Host().Errors()[0].substr(0, beginning.size()), beginning);
    EXPECT_GT(Host().Errors()[0].size(), beginning.size());
}

TEST_F(UserSessionPropertiesTest, WhatAFailingHostLeavesBehindIsNotTouched) {
    CStackValues properties;
    CStackBox box(&properties, E_FAIL);
    CStackSession sessionWithFailingBox(&box);
    CStackSession failingSession(&box, E_FAIL);

    EXPECT_NE(MakeConvertor().GetUserSession(SharedVM(), &sessionWithFailingBox), nullptr);
    EXPECT_NE(MakeConvertor().GetUserSession(SharedVM(), &failingSession), nullptr);

    EXPECT_EQ(properties.CountReferences(), 0);
    EXPECT_EQ(box.CountReferences(), 0);
    EXPECT_EQ(Host().Errors().size(), 2U);
}

TEST_F(UserSessionPropertiesTest, NothingGivenWithSuccessMeansNoProperties) {
    for (const char* const operation : {"Session 7: get_propertyBox", "Box: get_enumerator"}) {
        Host().Record().GiveNull(operation);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr) << operation;

        EXPECT_EQ(JavaCalls(), Names{kConstructed}) << operation;
    }
    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionPropertiesTest, AnyOtherResultOfNextEndsTheWalkWithoutAWord) {
    for (const HRESULT result : {S_FALSE, E_FAIL, E_ABORT, kUntold, static_cast<HRESULT>(0x00040000)}) {
        SessionData data = MakeData(MakeProperties());
        data.properties.walk.failAt = 1;
        data.properties.walk.failure = result;
        Host().Record().ClearCalls();
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(BaseUserSession.putProperty("a", "first"))"})) << result;
        EXPECT_EQ(Host().Record().CountCalls("INameValueEnumerator::Next"), 2) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionPropertiesTest, APropertyWithoutANameIsNotPut) {
    SessionData data = MakeData(MakeProperties());
    data.properties.walk.nullNameAt = 1;

    EXPECT_NE(Convert(data), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(BaseUserSession.putProperty("a", "first"))",
                                  R"(BaseUserSession.putProperty("c", "third"))"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionPropertiesTest, ANameOrValueThatJavaDoesNotTakeIsLoggedAndItsPropertySkipped) {
    struct Case {
        long nth;
        const wchar_t* text;
    };
    for (const Case& c : {Case{6, L"b"}, Case{7, L"-2"}}) {
        ForgetJavaCalls();
        Fake().Fail("NewString", c.nth);

        EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr);

        EXPECT_EQ(Host().Errors().back(),
                  L"Failed to create a new Java string for " + std::wstring(c.text) + L".  " + kOutOfMemory);
        EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(BaseUserSession.putProperty("a", "first"))",
                                      R"(BaseUserSession.putProperty("c", "third"))"}));
    }
    EXPECT_EQ(Host().Errors().size(), 2U);
    EXPECT_EQ(Fake().GetCallCount("NewString"), 18) << "a name that fails does not spare its value";
}

TEST_F(UserSessionPropertiesTest, APropertyThatJavaRefusesIsLoggedWithTheUsersLabelAndTheNextGoesOn) {
    Fake().Fail("CallVoidMethodV", 2);

    EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to set user property b for user DOMAIN\\user.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(BaseUserSession.putProperty("a", "first"))",
                                  R"(BaseUserSession.putProperty("c", "third"))"}));
    EXPECT_EQ(Host().Record().CountCalls("IUserSessionInfo::get_userLabel"), 1);
}

TEST_F(UserSessionPropertiesTest, AUserWhoseLabelFailsIsNull) {
    MakeThrow(Binding::BaseUserSession::kClass, "putProperty", "refused %s%n");
    Host().Record().Fail("Session 7: get_userLabel", 2, E_FAIL);

    EXPECT_NE(Convert(MakeData(MakeProperties())), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to set user property a for user DOMAIN\\user.  refused %s%n",
                                      L"Failed to set user property b for user NULL.  refused %s%n",
                                      L"Failed to set user property c for user DOMAIN\\user.  refused %s%n"}));
    EXPECT_EQ(JavaCalls().size(), 4U);
}

TEST_F(UserSessionPropertiesTest, EachKindOfValueIsPutAsTheSystemsTextOfItOrAsTheEmptyOne) {
    CStackValues object;
    LONG number = 12;
    const std::vector<PropertyData> properties = {
        {L"short", MakeShort(-7)},
        {L"unsigned", MakeUnsigned(0xFFFFFFFF)},
        {L"int64", MakeInt64(-1)},
        {L"double", MakeDouble(1.5)},
        {L"date", MakeDate(45351.25)},
        {L"true", MakeBool(true)},
        {L"false", MakeBool(false)},
        {L"currency", MakeScalar(VT_CY, 12345)},
        {L"empty", MakeEmpty()},
        {L"null", MakeNull()},
        {L"error", MakeError(E_FAIL)},
        {L"null text", MakeNullText()},
        {L"text", MakeText(L"gr\u00fc\u00df")},
        {L"object", MakeInterface(&object)},
        {L"reference", MakeScalar(VT_BYREF | VT_I4, reinterpret_cast<ULONGLONG>(&number))},
        {L"null reference", MakeScalar(VT_BYREF | VT_I4, 0)},
        {L"no type", MakeScalar(0x0FFF, 1)},
    };
    Names expected = {kConstructed};
    for (const PropertyData& property : properties) {
        expected.push_back("BaseUserSession.putProperty(" + Quote(property.name) + ", " +
                           Quote(TextOf(property.value.Get())) + ")");
    }

    EXPECT_NE(Convert(MakeData(properties)), nullptr);

    EXPECT_EQ(JavaCalls(), expected);
    EXPECT_EQ(JavaCalls()[4], R"(BaseUserSession.putProperty("double", "1.5"))");
    EXPECT_EQ(JavaCalls()[10], R"(BaseUserSession.putProperty("null", ""))");
    EXPECT_EQ(JavaCalls()[15], R"(BaseUserSession.putProperty("reference", "12"))");
    EXPECT_EQ(Host().Errors(), Texts{});
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(UserSessionPropertiesTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto session = MakeUserSession(Host().ShareRecord(), MakeData(MakeProperties()));

    FailEachJniCall([&] { return MakeConvertor().GetUserSession(SharedVM(), session.Get()); },
                    [](const FaultRound& round) {
                        const long put = CountCalls(round.calls, "BaseUserSession.putProperty");
                        if (round.isOnce) {
                            const bool isFrame = round.failed == "PushLocalFrame";
                            EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
                            EXPECT_EQ(put, !round.object ? 0 : isFrame ? 3 : 2) << round.failed;
                        }
                        EXPECT_TRUE(round.object || put == 0);
                    });
}

TEST_F(UserSessionPropertiesTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto session = MakeUserSession(Host().ShareRecord(), MakeData(MakeProperties()));
    const auto convert = [&](const CJNIConvertor& convertor) {
        ForgetJavaCalls();
        MakeThrow(Binding::BaseUserSession::kClass, "putProperty", "refused");
        Host().Record().ClearCalls();
        EXPECT_NE(convertor.GetUserSession(SharedVM(), session.Get()), nullptr);
        return JavaCalls();
    };

    const Names logged = convert(MakeConvertor());

    EXPECT_EQ(convert(MakeConvertorWithoutLogger()), logged);
    EXPECT_EQ(logged.size(), 4U);
    EXPECT_EQ(Host().Record().CountCalls("Logger*"), 0);
}

TEST_F(UserSessionPropertiesTest, TenThousandRefusedPropertiesDoNotFillTheFrame) {
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::BaseUserSession::kClass, "putProperty", "refused");
    std::vector<PropertyData> properties(10'000, {L"name", MakeText(L"value")});

    EXPECT_NE(Convert(MakeData(std::move(properties))), nullptr);

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Host().Errors().size(), 10'000U);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(UserSessionPropertiesTest, EachAllocationMayFail) {
    const CVariantValue value = MakeText(L"a value that is longer than a short text");
    const StackPair pairs[] = {{L"a name that is longer than a short text", value.Get()},
                               {L"a second name that is no shorter", value.Get()}};
    CStackValues properties(pairs);
    CStackBox box(&properties);
    CStackSession session(&box);
    const CJNIConvertor convertor = MakeConvertor();

    const long thrown = FailEachAllocation([&] {
        properties.Rewind();
        return convertor.GetUserSession(SharedVM(), &session);
    });

    EXPECT_EQ(thrown, 4);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(UserSessionPropertiesTest, EachAllocationMayFailWhereJavaRefuses) {
    const CVariantValue value = MakeText(L"a value that is longer than a short text");
    const StackPair pairs[] = {{L"a name that is longer than a short text", value.Get()}};
    CStackValues properties(pairs);
    CStackBox box(&properties);
    CStackSession session(&box);
    MakeThrow(Binding::BaseUserSession::kClass, "putProperty", "a reason that is longer than a short text");
    const CJNIConvertor convertor = MakeConvertorWithoutLogger();

    const long thrown = FailEachAllocation([&] {
        properties.Rewind();
        return convertor.GetUserSession(SharedVM(), &session);
    });

    EXPECT_EQ(thrown, 8);
}

TEST_F(UserSessionPropertiesTest, AMessageThatFindsNoMemoryIsThrownAndNothingIsLeft) {
    const StackPair pairs[] = {{L"a", MakeInt(1).Detach()}, {L"b", MakeInt(2).Detach()}};
    CStackValues properties(pairs);
    CStackBox box(&properties);
    CStackSession session(&box);
    MakeThrow(Binding::BaseUserSession::kClass, "putProperty", "refused");
    const CJNIConvertor convertor = MakeConvertor();
    const auto convert = [&] { static_cast<void>(convertor.GetUserSession(SharedVM(), &session)); };
    {
        const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));
        EXPECT_TRUE(IsMemoryExhausted(convert)) << "the message's text";
    }
    properties.Rewind();
    {
        const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseText));
        EXPECT_TRUE(IsMemoryExhausted(convert)) << "its copy for the logger";
    }

    EXPECT_EQ(CountCalls(JavaCalls(), "BaseUserSession.putProperty"), 2);
    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(box.CountReferences() + properties.CountReferences(), 0);
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
