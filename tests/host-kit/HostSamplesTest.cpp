#include "HostObjects.h"

#include "HostKitFixture.h"

namespace {

using testing::ElementsAre;

class HostSamplesTest : public CHostKitTest {
protected:
    /// Takes the next node as its key, "(null)" behind it where there is none; the result where there is no key.
    [[nodiscard]] static std::string TakeNext(IInstanceEnumerator* instances) {
        CBstr key;
        CHostReference<ISampleNode> node;
        const HRESULT result = instances->Next(key.Receive(), node.Receive());
        return result == S_OK ? DescribeText(key.Get()) + (node ? "" : " (null)") : DescribeResult(result);
    }
    using CHostKitTest::TakeNext;

    [[nodiscard]] static CHostReference<INameValueEnumerator> GetMetrics(ISampleNode* node) {
        CHostReference<INameValueEnumerator> metrics;
        EXPECT_EQ(node->get_metrics(metrics.Receive(), 1), S_OK);
        return metrics;
    }
};

TEST_F(HostSamplesTest, ANodeGivesItsData) {
    const auto node = MakeSampleNode(
        m_record, {45000.25, {{L"cpu", MakeDouble(12.5)}}, {{L"3", {1.0, {{L"ram", MakeInt(5)}}}}, {L"4"}}});

    DATE time = 0;
    EXPECT_EQ(node->get_time(&time), S_OK);
    EXPECT_EQ(time, 45000.25);
    const auto metrics = GetMetrics(node.Get());
    EXPECT_EQ(TakeNext(metrics.Get()), "cpu = R8 12.5");
    EXPECT_EQ(TakeNext(metrics.Get()), DescribeResult(S_FALSE));
    CHostReference<IInstanceEnumerator> instances;
    ASSERT_EQ(node->get_instances(instances.Receive()), S_OK);
    CBstr key;
    CHostReference<ISampleNode> below;
    ASSERT_EQ(instances->Next(key.Receive(), below.Receive()), S_OK);
    EXPECT_EQ(key.GetView(), L"3");
    EXPECT_EQ(TakeNext(GetMetrics(below.Get()).Get()), "ram = I4 5");
    EXPECT_EQ(TakeNext(instances.Get()), "4");
    EXPECT_EQ(TakeNext(instances.Get()), DescribeResult(S_FALSE));
    EXPECT_THAT(
        m_record->GetCallTexts(),
        ElementsAre("Sample: get_time", "Sample: get_metrics(1)", "Sample metrics: Next", "Sample metrics: Next",
                    "Sample: get_instances", "Sample instances: Next", "Sample/3: get_metrics(1)",
                    "Sample/3 metrics: Next", "Sample instances: Next", "Sample instances: Next"));
}

TEST_F(HostSamplesTest, AnExtendedMetricsValueEnumeratesItsInstancesEachTimeAnew) {
    const auto node =
        MakeSampleNode(m_record, {0, {MakeExtendedMetric(L"disk", {{L"C:", MakeInt(1)}, {L"D:", MakeInt(2)}})}});

    for (int round = 0; round < 2; ++round) {
        CBstr name;
        CVariant value;
        ASSERT_EQ(GetMetrics(node.Get())->Next(name.Receive(), value.Receive()), S_OK);
        ASSERT_EQ(value.vt, VT_UNKNOWN);
        CHostReference<INameValueEnumerator> values;
        ASSERT_EQ(value.punkVal->QueryInterface(INameValueEnumerator::kId, reinterpret_cast<void**>(values.Receive())),
                  S_OK);
        EXPECT_EQ(TakeNext(values.Get()), "C: = I4 1");
        EXPECT_EQ(TakeNext(values.Get()), "D: = I4 2");
        EXPECT_EQ(TakeNext(values.Get()), DescribeResult(S_FALSE));
    }
}

TEST_F(HostSamplesTest, AWalkOverValuesStraysAsTold) {
    WalkData walk;
    walk.nullNameAt = 0;
    walk.nullItemAt = 1;
    walk.failAt = 2;
    walk.failure = E_ABORT;
    const auto values =
        MakeNameValueEnumerator(m_record, "Values", {{L"a", MakeInt(1)}, {L"b", MakeInt(2)}, {L"c", MakeInt(3)}}, walk);

    EXPECT_EQ(TakeNext(values.Get()), "null = I4 1");
    EXPECT_EQ(TakeNext(values.Get()), "b = EMPTY");
    EXPECT_EQ(TakeNext(values.Get()), DescribeResult(E_ABORT));
    EXPECT_EQ(TakeNext(values.Get()), DescribeResult(E_ABORT));
}

TEST_F(HostSamplesTest, AWalkOverNodesStraysAsTold) {
    WalkData walk;
    walk.nullNameAt = 0;
    walk.nullItemAt = 1;
    walk.endResult = E_ABORT;
    const auto instances = MakeInstanceEnumerator(m_record, "Sample", {{L"1"}, {L"2"}}, walk);

    EXPECT_EQ(TakeNext(instances.Get()), "null");
    EXPECT_EQ(TakeNext(instances.Get()), "2 (null)");
    EXPECT_EQ(TakeNext(instances.Get()), DescribeResult(E_ABORT));
}

TEST_F(HostSamplesTest, AFaultDoesNotSkipAnItem) {
    const auto values = MakeNameValueEnumerator(m_record, "Values", {{L"a", MakeInt(1)}});
    m_record->Fail("Values: Next", 1, E_FAIL);

    EXPECT_EQ(TakeNext(values.Get()), DescribeResult(E_FAIL));
    EXPECT_EQ(TakeNext(values.Get()), "a = I4 1");
}

TEST_F(HostSamplesTest, ADataObjectGivesEachPartsData) {
    DataObjectData data;
    data.name = "Event";
    data.sample = SampleData{2.5};
    data.session = SessionData{9, L"S-9"};
    const auto object = MakeDataObject(m_record, data);
    CHostReference<ISampleNode> node;
    ASSERT_EQ(object->QueryInterface(ISampleNode::kId, reinterpret_cast<void**>(node.Receive())), S_OK);
    CHostReference<IUserSessionInfo> session;
    ASSERT_EQ(node->QueryInterface(IUserSessionInfo::kId, reinterpret_cast<void**>(session.Receive())), S_OK);

    DATE time = 0;
    EXPECT_EQ(node->get_time(&time), S_OK);

    EXPECT_EQ(time, 2.5);
    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_sid), "S-9");
    EXPECT_THAT(m_record->GetCallTexts(), ElementsAre("Event: get_time", "Event: get_sid"));
}

}  // namespace
