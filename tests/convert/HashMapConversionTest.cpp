#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"
#include "StackObjects.h"

namespace {

constexpr char kConstructed[] = "HashMap.<init>()";

using HashMapClassTest = CDataConversionTest;

TEST_F(HashMapClassTest, WithoutItThereIsNoMapAndTheHostIsNotAsked) {
    const auto box = MakePropertyBox(Host().ShareRecord(), PropertyBoxData{});

    EXPECT_EQ(MakeConvertor().GetHashMap(SharedVM(), box.Get()), nullptr);

    EXPECT_EQ(HostCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

class HashMapConversionTest : public CDataConversionTest {
protected:
    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::HashMap::kClass});
    }

    [[nodiscard]] static PropertyBoxData MakeData() {
        return {"Box", {{L"a", MakeText(L"first")}, {L"b", MakeInt(-2)}, {L"c", MakeText(L"third")}}};
    }
    [[nodiscard]] Object Convert(PropertyBoxData data) {
        const auto box = MakePropertyBox(Host().ShareRecord(), std::move(data));
        return MakeConvertor().GetHashMap(SharedVM(), box.Get());
    }
};

TEST_F(HashMapConversionTest, ANullBoxIsNoMapWithoutAWordOrACall) {
    EXPECT_EQ(MakeConvertor().GetHashMap(SharedVM(), nullptr), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(HashMapConversionTest, EachPairIsPutAndWhatPutReturnsIsReleased) {
    Fake().MakeMethodReturnText(Binding::HashMap::kClass, "put", "the value before");

    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(HashMap.put("a", "first"))", R"(HashMap.put("b", "-2"))",
                                  R"(HashMap.put("c", "third"))"}));
    EXPECT_EQ(HostCalls(), (Names{"Box: get_enumerator", "Box properties: Next", "Box properties: Next",
                                  "Box properties: Next", "Box properties: Next"}));
    EXPECT_EQ(CountCalls(Calls(), "DeleteLocalRef"), 10) << "the map, three names, three values, three results";
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(HashMapConversionTest, AConstructorThatThrowsIsLoggedAndTheHostIsNotAsked) {
    MakeThrow(Binding::HashMap::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeData()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java hash map object.  no %s%n"});
    EXPECT_EQ(HostCalls(), Names{});
}

TEST_F(HashMapConversionTest, AnEnumeratorThatCannotBeHadLeavesTheMapEmptyWithoutAWord) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("Box: get_enumerator", 1, failure);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData()), nullptr);

        EXPECT_EQ(JavaCalls(), Names{kConstructed});
    }
    Host().Record().GiveNull("Box: get_enumerator");
    ForgetJavaCalls();
    EXPECT_NE(Convert(MakeData()), nullptr);
    EXPECT_EQ(JavaCalls(), Names{kConstructed});

    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(HashMapConversionTest, WhatAFailingHostLeavesBehindIsNotTouched) {
    CStackValues values;
    CStackBox box(&values, E_FAIL);

    EXPECT_NE(MakeConvertor().GetHashMap(SharedVM(), &box), nullptr);

    EXPECT_EQ(values.CountReferences(), 0);
    EXPECT_EQ(JavaCalls(), Names{kConstructed});
}

TEST_F(HashMapConversionTest, AnyOtherResultOfNextEndsTheWalkWithoutAWord) {
    for (const HRESULT result : {S_FALSE, E_FAIL, kUntold, static_cast<HRESULT>(0x00040000)}) {
        PropertyBoxData data = MakeData();
        data.walk.failAt = 1;
        data.walk.failure = result;
        Host().Record().ClearCalls();
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(HashMap.put("a", "first"))"})) << result;
        EXPECT_EQ(Host().Record().CountCalls("INameValueEnumerator::Next"), 2) << result;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(HashMapConversionTest, APairWithoutANameIsNotPut) {
    PropertyBoxData data = MakeData();
    data.walk.nullNameAt = 0;

    EXPECT_NE(Convert(data), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(HashMap.put("b", "-2"))", R"(HashMap.put("c", "third"))"}));
}

TEST_F(HashMapConversionTest, AValueWithoutATextIsTheEmptyOne) {
    CStackValues object;
    PropertyBoxData data{"Box",
                         {{L"object", MakeInterface(&object)},
                          {L"null", MakeNull()},
                          {L"null reference", MakeScalar(VT_BYREF | VT_BSTR, 0)},
                          {L"null text", MakeNullText()},
                          {L"empty", MakeEmpty()},
                          {L"number", MakeDouble(1.5)}}};

    EXPECT_NE(Convert(data), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(HashMap.put("object", ""))", R"(HashMap.put("null", ""))",
                                  R"(HashMap.put("null reference", ""))", R"(HashMap.put("null text", ""))",
                                  R"(HashMap.put("empty", ""))", R"(HashMap.put("number", "1.5"))"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(HashMapConversionTest, ANameOrValueThatJavaDoesNotTakeIsLoggedAndItsPairSkipped) {
    struct Case {
        long nth;
        const wchar_t* text;
    };
    for (const Case& c : {Case{3, L"b"}, Case{4, L"-2"}}) {
        ForgetJavaCalls();
        Fake().Fail("NewString", c.nth);

        EXPECT_NE(Convert(MakeData()), nullptr);

        EXPECT_EQ(Host().Errors().back(),
                  L"Failed to create a new Java string for " + std::wstring(c.text) + L".  " + kOutOfMemory);
        EXPECT_EQ(JavaCalls(), (Names{kConstructed, R"(HashMap.put("a", "first"))", R"(HashMap.put("c", "third"))"}));
    }
    EXPECT_EQ(Host().Errors().size(), 2U);
}

TEST_F(HashMapConversionTest, WhatPutThrowsIsDroppedUnseenAndTheNextPairGoesOn) {
    MakeThrow(Binding::HashMap::kClass, "put", "refused");

    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(JavaCalls().size(), 4U);
    EXPECT_FALSE(Fake().IsExceptionPending());
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Fake().GetCallCount("ExceptionOccurred"), 0);
}

TEST_F(HashMapConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto box = MakePropertyBox(Host().ShareRecord(), MakeData());

    FailEachJniCall([&] { return MakeConvertor().GetHashMap(SharedVM(), box.Get()); },
                    [](const FaultRound& round) {
                        const long put = CountCalls(round.calls, "HashMap.put");
                        if (round.isOnce) {
                            const bool isFrame = round.failed == "PushLocalFrame";
                            const bool isSilent = isFrame || round.failed == "CallObjectMethodV";
                            EXPECT_EQ(round.errors.size(), isSilent ? 0U : 1U) << round.failed;
                            EXPECT_EQ(put, !round.object ? 0 : isFrame ? 3 : 2) << round.failed;
                        }
                        EXPECT_TRUE(round.object || put == 0);
                    });
}

TEST_F(HashMapConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto box = MakePropertyBox(Host().ShareRecord(), MakeData());
    EXPECT_NE(MakeConvertor().GetHashMap(SharedVM(), box.Get()), nullptr);
    const Names logged = JavaCalls();
    ForgetJavaCalls();

    EXPECT_NE(MakeConvertorWithoutLogger().GetHashMap(SharedVM(), box.Get()), nullptr);
    EXPECT_EQ(JavaCalls(), logged);

    Fake().Fail("NewObjectV", 1);
    ExpectKeptLocals(1);
    EXPECT_EQ(MakeConvertorWithoutLogger().GetHashMap(SharedVM(), box.Get()), nullptr);
    EXPECT_FALSE(Fake().IsExceptionPending());
}

TEST_F(HashMapConversionTest, TenThousandRefusedPairsDoNotFillTheFrame) {
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::HashMap::kClass, "put", "refused");
    std::vector<PropertyData> properties(10'000, {L"name", MakeText(L"value")});

    EXPECT_NE(Convert({"Box", std::move(properties)}), nullptr);

    EXPECT_EQ(JavaCalls().size(), 10'001U);
    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
}

TEST_F(HashMapConversionTest, EachAllocationMayFail) {
    const CVariantValue value = MakeText(L"a value that is longer than a short text");
    const StackPair pairs[] = {{L"a name that is longer than a short text", value.Get()},
                               {L"a second name that is no shorter", value.Get()}};
    CStackValues values(pairs);
    CStackBox box(&values);
    const CJNIConvertor convertor = MakeConvertor();
    const auto convert = [&] {
        values.Rewind();
        return convertor.GetHashMap(SharedVM(), &box);
    };

    EXPECT_EQ(FailEachAllocation(convert), 4);

    MakeThrow(Binding::HashMap::kClass, "put", "refused");
    EXPECT_EQ(FailEachAllocation(convert), 4);
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
