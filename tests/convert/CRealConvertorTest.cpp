#include "CRealConvertorTest.h"

#include <utility>

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertSample(SampleData sample, std::vector<SessionData> sessions) {
    const auto node = MakeSampleNode(Record(), std::move(sample));
    const auto collection = MakeSessionCollection(Record(), std::move(sessions));
    return MakeConvertor().GetSample(SharedVM(), node.Get(), collection.Get());
}

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertMetric(const std::wstring& name, const CVariantValue& value) {
    return MakeConvertor().GetMetric(SharedVM(), name, &value.Get());
}

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertSession(SessionData session) {
    const auto info = MakeUserSession(Record(), std::move(session));
    return MakeConvertor().GetUserSession(SharedVM(), info.Get());
}

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertDesktop(SystemData system) {
    const auto info = MakeSystemInfo(Record(), std::move(system));
    return MakeConvertor().GetDesktop(SharedVM(), info.Get());
}

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertProperties(PropertyBoxData properties) {
    const auto box = MakePropertyBox(Record(), std::move(properties));
    return MakeConvertor().GetHashMap(SharedVM(), box.Get());
}

std::shared_ptr<CJavaObject> CRealConvertorTest::ConvertExtendedSample(DATE time, std::vector<NameValueData> metrics,
                                                                       WalkData walk) {
    SampleData sample;
    sample.time = time;
    const auto node = MakeSampleNode(Record(), std::move(sample));
    const auto values = MakeNameValueEnumerator(Record(), "Extended", std::move(metrics), walk);
    return MakeConvertor().GetExtendedSample(SharedVM(), node.Get(), values.Get());
}
