#include <cwchar>
#include <utility>

#include "ItemFixture.h"

namespace {

/// Data that is properties alone, whose route is whatever the test says: also a value beside a failure, as no healthy
/// host leaves one.
class CRouteData final : public IPropertyBox {
public:
    CRouteData(IUnknown* metadata, HRESULT result, CVariantValue route)
        : m_metadata(MakeInterface(metadata)), m_result(result), m_route(std::move(route)) {}
    virtual ~CRouteData() { EXPECT_EQ(m_references, 0) << "references left"; }

    CRouteData(const CRouteData&) = delete;
    CRouteData& operator=(const CRouteData&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
        *object = IsEqualGUID(interfaceId, IPropertyBox::kId) ? this : nullptr;
        m_references += *object ? 1 : 0;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--m_references); }
    STDMETHODIMP get_enumerator(INameValueEnumerator**) override { return E_NOTIMPL; }
    STDMETHODIMP GetProperty(BSTR name, VARIANT* value) override {
        const bool isRoute = wcscmp(name, L"route") == 0;
        *value = CVariantValue(isRoute ? m_route : m_metadata).Detach();
        return isRoute ? m_result : S_OK;
    }

private:
    const CVariantValue m_metadata;
    const HRESULT m_result;
    const CVariantValue m_route;
    long m_references = 0;
};

/// The route that the host traced on the server's order.
class TraceRouteItemTest : public CItemFixture {
protected:
    void SetUp() override {
        CItemFixture::SetUp();
        m_map = MakePropertyBox(Host().ShareRecord(), MakeBox("Map", {{L"action", MakeText(L"trace")}}));
    }
    void TearDown() override {
        m_map.Reset();
        CItemFixture::TearDown();
    }

    /// Sends a route whose reading ends so.
    long SendRoute(HRESULT read, CVariantValue route) {
        CRouteData data(m_map.Get(), read, std::move(route));
        Forget();
        return Dump(eTraceRoute, &data);
    }
    /// Sends data whose metadata is `value`.
    long SendMetadata(CVariantValue value) {
        DataObjectData data;
        data.properties = MakeBox("Data", {{L"metadata", std::move(value)}, {L"route", MakeText(L"hop 1")}});
        const auto object = Make(std::move(data));
        Forget();
        return Dump(eTraceRoute, object.Get());
    }

    static std::string Sent(const std::string& route) {
        return "DesktopMessageClient.onActionPerformed(DesktopConnection@instance, HashMap@instance, \"" + route +
               "\")";
    }
    static std::wstring NoMetadata(HRESULT result) {
        return L"error: Failed to handle metadata property for traceroute msg" + ErrorText(result);
    }
    static std::wstring NoRoute(HRESULT result) {
        return L"error: Failed to handle route property for traceroute msg" + ErrorText(result);
    }

    CHostReference<IPropertyBox> m_map;
};

TEST_F(TraceRouteItemTest, ThePropertiesAreReadBeforeTheMapIsMade) {
    Start();

    EXPECT_EQ(Send(eTraceRoute), S_OK);

    Calls read;
    for (const std::string& call : Host().Record().GetCallTexts()) {
        if (call.rfind("Data: ", 0) == 0 || call.rfind("Map: ", 0) == 0) {
            read.push_back(call);
        }
    }
    EXPECT_EQ(read, (Calls{"Data: GetProperty(metadata)", "Data: GetProperty(route)", "Map: get_enumerator"}));
}

TEST_F(TraceRouteItemTest, DataWithoutPropertiesIsLoggedAsMetadataThatIsMissing) {
    Start();
    DataObjectData data = MakeData();
    data.properties.reset();
    const auto noProperties = Make(std::move(data));
    Forget();

    EXPECT_EQ(Dump(eTraceRoute, noProperties.Get()), E_NOINTERFACE);
    EXPECT_EQ(Dump(eTraceRoute), E_FAIL) << "null";

    EXPECT_EQ(LoggedSinceStart(), (Texts{NoMetadata(E_NOINTERFACE), NoMetadata(E_FAIL)}));
    EXPECT_EQ(SentCalls(), Calls{});
}

TEST_F(TraceRouteItemTest, MetadataThatCannotBeReadEndsTheCallWithItsResult) {
    Start();
    constexpr auto kUntold = static_cast<HRESULT>(0x8ABCDEF0);
    for (const HRESULT failure : {DISP_E_UNKNOWNNAME, E_ACCESSDENIED, kUntold}) {
        Forget();
        Host().Record().Fail("Data: GetProperty(metadata)", 1, failure);

        EXPECT_EQ(Send(eTraceRoute), failure);

        EXPECT_EQ(ItemCalls(), Calls{s_makeConnection});
        EXPECT_EQ(LoggedSinceStart(), Texts{NoMetadata(failure)});
        EXPECT_EQ(Host().Record().CountCalls("Data: GetProperty(route)"), 0);
    }
    EXPECT_EQ(LastLogged(), L"error: Failed to handle metadata property for traceroute msg  Error code 0x8abcdef0.");
}

TEST_F(TraceRouteItemTest, MetadataThatIsNoObjectEndsTheCallWithTheConversionsResult) {
    Start();
    for (const CVariantValue& value :
         {MakeText(L"text"), MakeInt(5), MakeDouble(0.5), MakeBool(true), MakeError(E_FAIL), MakeNull(), MakeEmpty()}) {
        EXPECT_EQ(SendMetadata(value), DISP_E_TYPEMISMATCH) << value.Get().vt;

        EXPECT_EQ(SentCalls(), Calls{}) << value.Get().vt;
        EXPECT_EQ(LoggedSinceStart(), Texts{NoMetadata(DISP_E_TYPEMISMATCH)}) << value.Get().vt;
    }
}

TEST_F(TraceRouteItemTest, AnObjectThatIsNoMapFails) {
    Start();
    const auto stranger = MakeSampleNode(Host().ShareRecord(), {});
    for (IUnknown* const object : {static_cast<IUnknown*>(stranger.Get()), static_cast<IUnknown*>(nullptr)}) {
        EXPECT_EQ(SendMetadata(MakeInterface(object)), E_FAIL);

        EXPECT_EQ(SentCalls(), Calls{});
        EXPECT_EQ(LoggedSinceStart(), Texts{L"error: Failed to GetMetadata for traceroute msg"});
    }
}

TEST_F(TraceRouteItemTest, AMapThatJavaDoesNotMakeFails) {
    Start();
    Fake().MakeMethodThrow(Binding::HashMap::kClass, "<init>", Exception("no map"));

    EXPECT_EQ(Send(eTraceRoute), E_FAIL);

    EXPECT_EQ(SentCalls(), Calls{});
    EXPECT_EQ(LoggedSinceStart(), (Texts{L"error: Failed to create a new Java hash map object.  no map",
                                         L"error: Failed to GetMetadata for traceroute msg"}));
}

TEST_F(TraceRouteItemTest, ARouteThatIsNotToBeHadIsSentAsAnEmptyText) {
    Start();
    for (const HRESULT failure : {DISP_E_UNKNOWNNAME, E_ACCESSDENIED}) {
        EXPECT_EQ(SendRoute(failure, MakeEmpty()), S_OK);

        EXPECT_EQ(SentCalls(), Calls{Sent("")});
        EXPECT_EQ(LoggedSinceStart(), Texts{});
    }
}

TEST_F(TraceRouteItemTest, WhatAFailedReadingLeavesIsSentAsAText) {
    Start();

    EXPECT_EQ(SendRoute(E_ACCESSDENIED, MakeInt(42)), S_OK);
    EXPECT_EQ(SentCalls(), Calls{Sent("42")});

    EXPECT_EQ(SendRoute(E_ACCESSDENIED, MakeText(L"half a route")), S_OK);
    EXPECT_EQ(SentCalls(), Calls{Sent("half a route")});
    EXPECT_EQ(LoggedSinceStart(), Texts{});
}

TEST_F(TraceRouteItemTest, WhatAFailedReadingLeavesAndNobodyCanReadEndsTheCall) {
    Start();
    for (const CVariantValue& left : {MakeNull(), MakeError(E_FAIL), MakeInterface(m_map.Get())}) {
        EXPECT_EQ(SendRoute(E_ACCESSDENIED, left), DISP_E_TYPEMISMATCH) << left.Get().vt;

        EXPECT_EQ(ItemCalls(), Calls{s_makeConnection}) << left.Get().vt;
        EXPECT_EQ(LoggedSinceStart(), Texts{NoRoute(DISP_E_TYPEMISMATCH)}) << left.Get().vt;
    }
}

TEST_F(TraceRouteItemTest, ARouteThatIsReadAndIsNoTextIsNotSentAndIsNoFailure) {
    Start();
    for (const CVariantValue& route : {MakeInt(42), MakeEmpty(), MakeNull(), MakeDouble(0.5), MakeBool(true),
                                       MakeInterface(m_map.Get()), MakeInterface(nullptr)}) {
        for (const HRESULT read : {S_OK, S_FALSE}) {
            RefuseIdentities(E_ACCESSDENIED);

            EXPECT_EQ(SendRoute(read, route), S_OK) << route.Get().vt;

            EXPECT_EQ(SentCalls(), Calls{}) << route.Get().vt;
            EXPECT_EQ(LastLogged(), L"error: No traceResult.") << route.Get().vt;
            EXPECT_EQ(LoggedSinceStart().size(), 2U) << route.Get().vt << ", with that of the identities";
        }
    }
}

TEST_F(TraceRouteItemTest, ATextIsSentAsItIs) {
    Start();

    EXPECT_EQ(SendRoute(S_OK, MakeText(L"hop \u00e9")), S_OK);
    EXPECT_EQ(SentCalls(), Calls{Sent("hop \\u00e9")});

    EXPECT_EQ(SendRoute(S_OK, MakeText(L"")), S_OK);
    EXPECT_EQ(SentCalls(), Calls{Sent("")});

    EXPECT_EQ(SendRoute(S_OK, MakeNullText()), S_OK);
    EXPECT_EQ(SentCalls(), Calls{Sent("")});
}

TEST_F(TraceRouteItemTest, ARouteThatJavaHasNoStringForIsNotSentAndIsNoFailure) {
    Start();
    const long before = Fake().GetCallCount("NewString");
    ASSERT_EQ(Send(eTraceRoute), S_OK);
    const long strings = Fake().GetCallCount("NewString") - before;
    Forget();
    Fake().Fail("NewString", strings);
    RefuseIdentities(S_FALSE);

    EXPECT_EQ(Send(eTraceRoute), S_OK);

    EXPECT_EQ(SentCalls(), Calls{});
    EXPECT_EQ(LoggedSinceStart(),
              (Texts{L"error: Failed to create a new Java string for hop 1; hop 2.  java.lang.OutOfMemoryError: "
                     L"injected",
                     L"error: No traceResult."}));
}

}  // namespace
