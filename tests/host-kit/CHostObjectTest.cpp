#include "CHostObject.h"

#include "HostKitFixture.h"

namespace {

using testing::ElementsAre;

// No interface of the kit's.
constexpr IID kStrangeInterface = {0x7B1F0C52, 0x3D0A, 0x4C1B, {0x9A, 0x41, 0x52, 0xE6, 0x0D, 0x77, 0xC3, 0x11}};

class CHostObjectTest : public CHostKitTest {
protected:
    [[nodiscard]] CHostReference<IUnknown> MakeWhole() const {
        DataObjectData data;
        data.sample = SampleData{1.5};
        data.session = SessionData{3};
        data.properties = PropertyBoxData{};
        data.values.emplace();
        return MakeDataObject(m_record, data);
    }

    template <typename Interface>
    [[nodiscard]] static CHostReference<Interface> Query(IUnknown* object, HRESULT expected = S_OK) {
        CHostReference<Interface> queried;
        EXPECT_EQ(object->QueryInterface(Interface::kId, reinterpret_cast<void**>(queried.Receive())), expected);
        return queried;
    }
};

TEST_F(CHostObjectTest, AllInterfacesShareOneIdentity) {
    const auto object = MakeWhole();
    const auto node = Query<ISampleNode>(object.Get());
    const auto session = Query<IUserSessionInfo>(node.Get());
    const auto box = Query<IPropertyBox>(session.Get());
    const auto values = Query<INameValueEnumerator>(box.Get());

    CHostReference<IUnknown> identity;
    ASSERT_EQ(values->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.Receive())), S_OK);

    EXPECT_EQ(identity.Get(), object.Get());
}

TEST_F(CHostObjectTest, InterfacesWithoutDataAreDenied) {
    DataObjectData data;
    data.session = SessionData{3};
    const auto object = MakeDataObject(m_record, data);

    void* out = &data;
    EXPECT_EQ(object->QueryInterface(ISampleNode::kId, &out), E_NOINTERFACE);

    EXPECT_EQ(out, nullptr);
}

TEST_F(CHostObjectTest, AQueryWithoutAnAddressIsRefused) {
    const auto object = MakeWhole();

    EXPECT_EQ(object->QueryInterface(ISampleNode::kId, nullptr), E_POINTER);
}

TEST_F(CHostObjectTest, ReferencesAreCountedPerInterface) {
    const auto object = MakeWhole();
    const auto node = Query<ISampleNode>(object.Get());
    node->AddRef();

    EXPECT_EQ(m_record->CountReferences(IID_IUnknown), 1);
    EXPECT_EQ(m_record->CountReferences(ISampleNode::kId), 2);
    EXPECT_EQ(m_record->CountReferences(IUserSessionInfo::kId), 0);
    EXPECT_EQ(m_record->CountLiveObjects(), 1);
    EXPECT_EQ(m_record->DescribeLeftovers(), "1 of Data; 1 references to IUnknown; 2 references to ISampleNode; ");
    node->Release();
}

TEST_F(CHostObjectTest, AReleaseThroughTheWrongInterfaceIsAViolation) {
    const auto object = MakeWhole();
    const auto node = Query<ISampleNode>(object.Get());
    const auto session = Query<IUserSessionInfo>(object.Get());
    session->Release();

    session->Release();

    EXPECT_EQ(m_record->CountReferences(ISampleNode::kId), 1);
    ExpectViolations({"Data: IUserSessionInfo released below zero"});
    session->AddRef();  // for the owner above
}

TEST_F(CHostObjectTest, UseAfterTheLastReleaseIsAViolation) {
    ISampleNode* const node = MakeSampleNode(m_record, {}).Get();

    DATE time = 7;
    EXPECT_EQ(node->get_time(&time), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(time, 7);
    EXPECT_EQ(node->AddRef(), 0U);
    EXPECT_EQ(node->Release(), 0U);
    void* out = &time;
    EXPECT_EQ(node->QueryInterface(ISampleNode::kId, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);

    ExpectViolations({"Sample: get_time after the last release",
                      "Sample: ISampleNode referenced after the last release",
                      "Sample: ISampleNode released after the last release",
                      "Sample: QueryInterface(ISampleNode) after the last release"});
}

TEST_F(CHostObjectTest, ADestroyedObjectHoldsNothingAnyMore) {
    const auto box = MakePropertyBox(m_record, {});
    {
        const auto values = MakeNameValueEnumerator(m_record, "Values", {{L"box", MakeInterface(box.Get())}});
        EXPECT_EQ(m_record->CountReferences(IPropertyBox::kId), 2);
    }

    EXPECT_EQ(m_record->CountReferences(IPropertyBox::kId), 1);
}

TEST_F(CHostObjectTest, ObjectsKeepTheirRecordUntilTheirEnd) {
    std::weak_ptr<CCallRecord> weak;
    {
        CHostReference<ISampleNode> node;
        {
            const auto record = std::make_shared<CCallRecord>();
            weak = record;
            node = MakeSampleNode(record, {2.5});
        }
        DATE time = 0;
        EXPECT_EQ(node->get_time(&time), S_OK);
        EXPECT_EQ(time, 2.5);
    }
    EXPECT_TRUE(weak.expired());
}

TEST_F(CHostObjectTest, ObjectsOfAnUnkeptHistoryComeAndGo) {
    m_record->SetKeepsHistory(false);
    {
        const auto object = MakeWhole();
        DATE time = 0;
        EXPECT_EQ(Query<ISampleNode>(object.Get())->get_time(&time), S_OK);
    }

    EXPECT_THAT(m_record->GetCallTexts(), ElementsAre());
    EXPECT_EQ(m_record->CountLiveObjects(), 0);
}

TEST_F(CHostObjectTest, QueriesAreRecordedWhenAskedFor) {
    m_record->SetRecordsQueries(true);
    const auto object = MakeWhole();

    const auto node = Query<ISampleNode>(object.Get());
    void* out = nullptr;
    EXPECT_EQ(object->QueryInterface(kStrangeInterface, &out), E_NOINTERFACE);

    EXPECT_THAT(m_record->GetCallTexts(), ElementsAre("Data: QueryInterface(ISampleNode)",
                                                      "Data: QueryInterface({7B1F0C52-3D0A-4C1B-9A41-52E60D77C311})"));
}

TEST_F(CHostObjectTest, AnInterfaceIsDeniedAsOftenAsTold) {
    const auto object = MakeWhole();
    m_record->RefuseQuery("Data", ISampleNode::kId, 2);

    EXPECT_FALSE(Query<ISampleNode>(object.Get(), E_NOINTERFACE));
    EXPECT_TRUE(Query<IPropertyBox>(object.Get()));
    EXPECT_FALSE(Query<ISampleNode>(object.Get(), E_NOINTERFACE));
    EXPECT_TRUE(Query<ISampleNode>(object.Get()));
}

}  // namespace
