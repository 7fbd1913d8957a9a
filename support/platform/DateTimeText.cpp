#include "DateTimeText.h"

#include <cmath>
#include <ctime>
#include <cwchar>

namespace {

constexpr int kFirstTmYear = 1900;
constexpr std::size_t kLongestText = 256;

std::tm MakeCalendarTime(const UDATE& date) {
    std::tm calendar{};
    calendar.tm_sec = date.st.wSecond;
    calendar.tm_min = date.st.wMinute;
    calendar.tm_hour = date.st.wHour;
    calendar.tm_mday = date.st.wDay;
    calendar.tm_mon = date.st.wMonth - 1;
    calendar.tm_year = date.st.wYear - kFirstTmYear;
    calendar.tm_wday = date.st.wDayOfWeek;
    calendar.tm_yday = date.wDayOfYear - 1;
    return calendar;
}

}  // namespace

CWideString FormatDateTime(DATE date, const wchar_t* format) {
    UDATE parts{};
    // Asked first: what the conversion makes of "not a number" differs between Windows versions.
    if (!std::isfinite(date) || FAILED(VarUdateFromDate(date, 0, &parts))) {
        return {};
    }
    const std::tm calendar = MakeCalendarTime(parts);
    wchar_t text[kLongestText];
    return CWideString({text, std::wcsftime(text, kLongestText, format, &calendar)});
}
