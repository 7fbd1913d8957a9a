#include "ItemFixture.h"

namespace {

/// Measurements by instance, and what they belong to.
class ExtendedDataItemTest : public CItemFixture {
protected:
    /// Sends data whose property `name` is `value`, the rest being as it should.
    long SendWith(const wchar_t* name, const CVariantValue& value) {
        DataObjectData data = MakeData();
        for (PropertyData& property : data.properties->properties) {
            if (property.name == name) {
                property = {name, value};
            }
        }
        const auto object = Make(std::move(data));
        Forget();
        RefuseIdentities(S_FALSE);  // what a failure must not be taken for
        return Dump(eExtendedData, object.Get());
    }

    void ExpectNothingSentOrLogged(const char* what) {
        EXPECT_EQ(SentCalls(), Calls{}) << what;
        EXPECT_EQ(LoggedSinceStart(), Texts{}) << what;
        Host().Record().ClearFaults();
    }

    static constexpr const wchar_t* kProperties[] = {L"meta-data", L"metrics"};
};

TEST_F(ExtendedDataItemTest, ThePropertiesAreReadInTheirOrderBeforeTheMapIsMade) {
    Start();

    EXPECT_EQ(Send(eExtendedData), S_OK);

    Calls read;
    for (const std::string& call : Host().Record().GetCallTexts()) {
        if (call.rfind("Data: Get", 0) == 0 || call.rfind("Map: ", 0) == 0) {
            read.push_back(call);
        }
    }
    EXPECT_EQ(read, (Calls{"Data: GetProperty(meta-data)", "Data: GetProperty(metrics)", "Map: get_enumerator"}));
}

TEST_F(ExtendedDataItemTest, APropertyThatCannotBeReadEndsTheCallWithItsResultAlone) {
    Start();
    for (const char* const property : {"Data: GetProperty(meta-data)", "Data: GetProperty(metrics)"}) {
        for (const HRESULT failure : {E_ACCESSDENIED, DISP_E_UNKNOWNNAME, E_FAIL}) {
            Forget();
            Host().Record().Fail(property, 1, failure);

            EXPECT_EQ(Send(eExtendedData), failure) << property;

            EXPECT_EQ(ItemCalls(), Calls{s_makeConnection}) << property;
            ExpectNothingSentOrLogged(property);
        }
    }
    Host().Record().Fail("Data: GetProperty(meta-data)", 1, E_ACCESSDENIED);
    Forget();
    EXPECT_EQ(Send(eExtendedData), E_ACCESSDENIED);
    EXPECT_EQ(Host().Record().CountCalls("Data: GetProperty(metrics)"), 0) << "what comes behind it is not asked";
}

TEST_F(ExtendedDataItemTest, APropertyThatIsNoObjectEndsTheCallWithTheConversionsResult) {
    Start();
    for (const wchar_t* const property : kProperties) {
        for (const CVariantValue& value : {MakeText(L"text"), MakeInt(5), MakeDouble(0.5), MakeBool(true),
                                           MakeError(E_FAIL), MakeNull(), MakeEmpty()}) {
            EXPECT_EQ(SendWith(property, value), DISP_E_TYPEMISMATCH) << value.Get().vt;

            EXPECT_EQ(ItemCalls(), Calls{s_makeConnection}) << value.Get().vt;
            ExpectNothingSentOrLogged("no object");
        }
    }
}

TEST_F(ExtendedDataItemTest, AnObjectOfAnotherKindFailsWithoutAWord) {
    Start();
    const auto stranger = MakeSampleNode(Host().ShareRecord(), {});
    for (const wchar_t* const property : kProperties) {
        EXPECT_EQ(SendWith(property, MakeInterface(stranger.Get())), E_FAIL);
        ExpectNothingSentOrLogged("a stranger");

        EXPECT_EQ(SendWith(property, MakeInterface(nullptr)), E_FAIL);
        ExpectNothingSentOrLogged("null");
    }
}

TEST_F(ExtendedDataItemTest, DataWithoutPropertiesOrWithoutATimeFailsWithoutAWord) {
    Start();
    DataObjectData data = MakeData();
    data.properties.reset();
    const auto noProperties = Make(std::move(data));
    data = MakeData();
    data.sample.reset();
    const auto noTime = Make(std::move(data));
    Forget();

    EXPECT_EQ(Dump(eExtendedData, noProperties.Get()), E_NOINTERFACE);
    EXPECT_EQ(Dump(eExtendedData, noTime.Get()), E_FAIL);
    EXPECT_EQ(Dump(eExtendedData), E_FAIL) << "null";

    ExpectNothingSentOrLogged("data");
}

TEST_F(ExtendedDataItemTest, DataThatGivesNoPropertiesWithSuccessFails) {
    Start();
    Host().Record().SetRecordsQueries(true);
    Host().Record().LeaveUntouched("Data: QueryInterface(IPropertyBox)");

    EXPECT_EQ(Send(eExtendedData), E_FAIL);

    ExpectNothingSentOrLogged("no box");
}

TEST_F(ExtendedDataItemTest, AMapOrASampleThatJavaDoesNotMakeFailsWithTheConvertorsWordAlone) {
    struct Case {
        const char* className;
        const wchar_t* logged;
    };
    Start();
    for (const Case& c :
         {Case{Binding::BaseSample::kClass, L"error: Failed to create a new Java sample object.  no object"},
          Case{Binding::HashMap::kClass, L"error: Failed to create a new Java hash map object.  no object"}}) {
        Forget();
        Fake().MakeMethodThrow(c.className, "<init>", Exception("no object"));
        RefuseIdentities(S_FALSE);

        EXPECT_EQ(Send(eExtendedData), E_FAIL) << c.className;

        EXPECT_EQ(SentCalls(), Calls{}) << c.className;
        EXPECT_EQ(LoggedSinceStart(), Texts{c.logged});
    }
}

TEST_F(ExtendedDataItemTest, AMapWithoutValuesAndAWalkThatBreaksOffAreSent) {
    Start();
    Host().Record().Fail("Map: get_enumerator", 1, E_ACCESSDENIED);
    Host().Record().Fail("Data metrics: Next", 1, E_ACCESSDENIED);

    EXPECT_EQ(Send(eExtendedData), S_OK);

    EXPECT_EQ(ItemCalls(), (Calls{s_makeConnection, "HashMap.<init>()", "BaseSample.<init>(86400000)",
                                  "DesktopMessageClient.onExtendedDataCollected(DesktopConnection@instance, "
                                  "HashMap@instance, BaseSample@instance)"}));
    EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to get extended metrics."});
}

}  // namespace
