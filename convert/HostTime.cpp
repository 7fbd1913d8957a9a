#include "HostTime.h"

#include "DateTimeText.h"

namespace {

constexpr std::uint64_t kUnixEpochAsFileTime = 116444736000000000;
constexpr std::uint64_t kFileTimePerSecond = 10000000;
constexpr std::uint64_t kMillisecondsPerSecond = 1000;
constexpr wchar_t kSampleTimeFormat[] = L"%c";
constexpr wchar_t kInvalidTime[] = L"Invalid DateTime";

}  // namespace

std::uint64_t DateToUnixSeconds(DATE date) noexcept {
    // Neither conversion writes anything where it fails; the zeros then are the result.
    SYSTEMTIME systemTime{};
    FILETIME fileTime{};
    static_cast<void>(VariantTimeToSystemTime(date, &systemTime));
    static_cast<void>(SystemTimeToFileTime(&systemTime, &fileTime));
    const std::uint64_t ticks = (static_cast<std::uint64_t>(fileTime.dwHighDateTime) << 32) |
                                static_cast<std::uint64_t>(fileTime.dwLowDateTime);
    return (ticks - kUnixEpochAsFileTime) / kFileTimePerSecond;
}

jlong DateToJavaTime(DATE date) noexcept {
    return static_cast<jlong>(DateToUnixSeconds(date) * kMillisecondsPerSecond);
}

CWideString FormatSampleTime(DATE time) {
    CWideString text = FormatDateTime(time, kSampleTimeFormat);
    return text.IsEmpty() ? CWideString(kInvalidTime) : text;
}

CWideString NameSample(ISampleNode& node) {
    DATE time = 0;
    return SUCCEEDED(node.get_time(&time)) ? FormatSampleTime(time) : CWideString(kInvalidTime);
}
