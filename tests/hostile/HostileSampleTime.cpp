#include "HostileSampleTime.h"

#include <cmath>
#include <cwchar>

namespace {

constexpr std::uint64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
constexpr int kFirstFileTimeYear = 1601;
constexpr int kFirstNamedYear = 1900;  // of the C library's

/// Days from 1970-01-01 in the calendar of today, for every year.
std::int64_t CountDays(int year, int month, int day) {
    static constexpr int kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    const bool isLeapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const std::int64_t past = year - 1;
    const std::int64_t days = past * 365 + past / 4 - past / 100 + past / 400 + kDaysBefore[month - 1] + day - 1 +
                              (isLeapYear && month > 2 ? 1 : 0);
    return days - 719'162;
}

}  // namespace

std::int64_t ModelJavaTime(DATE time) {
    SYSTEMTIME system{};
    std::int64_t seconds = -kSecondsFrom1601To1970;  // of what is no time, or none that files could have
    std::uint64_t ticksBeyond = 0;
    if (VariantTimeToSystemTime(time, &system) && system.wYear >= kFirstFileTimeYear) {
        seconds = CountDays(system.wYear, system.wMonth, system.wDay) * 86400 + std::int64_t{system.wHour} * 3600 +
                  std::int64_t{system.wMinute} * 60 + system.wSecond;
        ticksBeyond = system.wMilliseconds * (kTicksPerSecond / 1000);
    }
    // Before 1970 the count of ticks lies below zero, which there is none of: it goes round to the greatest numbers.
    const std::uint64_t ticks = static_cast<std::uint64_t>(seconds) * kTicksPerSecond + ticksBeyond;
    return static_cast<std::int64_t>(ticks / kTicksPerSecond * 1000);
}

std::wstring ModelTimeName(DATE time) {
    SYSTEMTIME system{};
    if (!std::isfinite(time) || !VariantTimeToSystemTime(time, &system) || system.wYear < kFirstNamedYear) {
        return L"Invalid DateTime";
    }
    wchar_t text[64];
    const int length = swprintf(text, 64, L"%02d/%02d/%02d %02d:%02d:%02d", system.wMonth, system.wDay,
                                system.wYear % 100, system.wHour, system.wMinute, system.wSecond);
    return std::wstring(text, static_cast<std::size_t>(length));
}
