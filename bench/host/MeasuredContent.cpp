#include "MeasuredContent.h"

namespace {

constexpr int kMetaDataTexts = 5;

/// Of ten values four are fractions, five whole numbers of different types, and one a text.
CVariantValue MakeValue(int number) {
    switch (number % 10) {
        case 0:
        case 3:
        case 5:
        case 8:
            return MakeDouble(number * 1.25);
        case 1:
        case 6:
            return MakeInt(number);
        case 2:
        case 7:
            return MakeUnsigned(static_cast<ULONG>(number));
        case 4:
            return MakeInt64(LONGLONG{number} << 33);
        default:
            return MakeText(L"text value " + std::to_wstring(number));
    }
}

/// Texts named `name` and a number.
std::vector<PropertyData> MakeTexts(int count, const wchar_t* name) {
    std::vector<PropertyData> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const std::wstring number = std::to_wstring(i);
        texts.push_back({name + number, MakeText(L"value of " + number)});
    }
    return texts;
}

}  // namespace

std::vector<MetricData> MakeMetrics(int count, int first) {
    std::vector<MetricData> metrics;
    metrics.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        metrics.push_back({L"Measured value " + std::to_wstring(i), MakeValue(first + i)});
    }
    return metrics;
}

std::vector<PropertyData> MakeMetaData() {
    return MakeTexts(kMetaDataTexts, L"meta-data ");
}

std::wstring NameApplication(int number) {
    return L"application " + std::to_wstring(number);
}

std::wstring NameExtendedMetric(int number) {
    return L"Extended metric " + std::to_wstring(number);
}

SessionData MakeMeasuredSession(LONG id, int properties) {
    const std::wstring number = std::to_wstring(id);
    SessionData session;
    session.id = id;
    session.sid = L"S-1-5-21-3623811015-3361044348-30300820-" + number;
    session.user = L"user" + number;
    session.domain = L"EXAMPLE";
    session.label = session.user;
    session.properties.properties = MakeTexts(properties, L"property ");
    return session;
}
