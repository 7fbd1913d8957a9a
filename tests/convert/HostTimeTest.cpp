#include "HostTime.h"

#include <cmath>
#include <ctime>
#include <cwchar>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "CLeakCheckedTest.h"
#include "HostObjects.h"
#include "StackObjects.h"

namespace {

class HostTimeTest : public CLeakCheckedTest {
protected:
    static constexpr double kSecond = 1.0 / 86400;
    static constexpr DATE kEpoch = 25569.0;
    static constexpr DATE kLastDay = 2958465.0;   // 9999-12-31
    static constexpr DATE kFirstDay = -657434.0;  // 0100-01-01
};

TEST_F(HostTimeTest, SecondsCountFromTheFirstDayOf1970) {
    EXPECT_EQ(DateToUnixSeconds(25569.0), 0U);
    EXPECT_EQ(DateToUnixSeconds(25570.0), 86400U);
    EXPECT_EQ(DateToUnixSeconds(25569.0 + kSecond), 1U);
    EXPECT_EQ(DateToUnixSeconds(36526.0), 946684800U) << "2000-01-01";
    EXPECT_EQ(DateToUnixSeconds(45351.0 + 45296 * kSecond), 1709210096U) << "2024-02-29 12:34:56";
    EXPECT_EQ(DateToUnixSeconds(50424.0), 2147472000U) << "2038-01-19";
    EXPECT_EQ(DateToUnixSeconds(50425.0), 2147558400U) << "more than 32 bits with a sign hold";
    EXPECT_EQ(DateToUnixSeconds(kLastDay), 253402214400U);
}

TEST_F(HostTimeTest, AJavaTimeIsInMillisecondsOfWholeSeconds) {
    EXPECT_EQ(DateToJavaTime(kEpoch), 0);
    EXPECT_EQ(DateToJavaTime(25570.0), 86400000);
    EXPECT_EQ(DateToJavaTime(25570.0 + 1.4 * kSecond), 86401000);
    EXPECT_EQ(DateToJavaTime(kLastDay), 253402214400000);
}

TEST_F(HostTimeTest, AJavaTimeBefore1970IsTheWrappedSecondsInMilliseconds) {
    EXPECT_EQ(DateToJavaTime(25568.0), 1844674320970000);
    EXPECT_EQ(DateToJavaTime(kLastDay + 1), 1833029933770000) << "no date counts as 1601";
}

TEST_F(HostTimeTest, NoFractionOfASecondIsLeft) {
    EXPECT_EQ(DateToUnixSeconds(kEpoch + 0.4 * kSecond), 0U);
    EXPECT_EQ(DateToUnixSeconds(kEpoch + 1.4 * kSecond), 1U);
    EXPECT_EQ(DateToUnixSeconds(45351.0 + 45296.3 * kSecond), 1709210096U);
}

TEST_F(HostTimeTest, ATimeBefore1970WrapsBeforeItIsDivided) {
    // 2^64 less the time's distance in units of 100 ns, divided by 10,000,000.
    EXPECT_EQ(DateToUnixSeconds(25568.0), 1844674320970U) << "1969-12-31";
    EXPECT_EQ(DateToUnixSeconds(kEpoch - kSecond), 1844674407369U);
    EXPECT_EQ(DateToUnixSeconds(0.0), 1842465245770U) << "1899-12-30";
    EXPECT_EQ(DateToUnixSeconds(-109205.0), 1833029933770U) << "1601-01-01, which is zero as a file time";
}

TEST_F(HostTimeTest, AValueThatIsNoDateCountsAs1601) {
    EXPECT_EQ(DateToUnixSeconds(kLastDay + 1), 1833029933770U);
    EXPECT_EQ(DateToUnixSeconds(kFirstDay - 1), 1833029933770U);
    EXPECT_EQ(DateToUnixSeconds(1e300), 1833029933770U);
    EXPECT_EQ(DateToUnixSeconds(-1e300), 1833029933770U);
}

TEST_F(HostTimeTest, ADateBeforeTheFirstFileTimeCountsAs1601) {
    EXPECT_EQ(DateToUnixSeconds(-109206.0), 1833029933770U) << "1600-12-31";
    EXPECT_EQ(DateToUnixSeconds(kFirstDay), 1833029933770U);
}

TEST_F(HostTimeTest, ASampleIsNamedByTheLocalesDateAndTime) {
    std::tm calendar{};
    calendar.tm_year = 124;
    calendar.tm_mon = 1;
    calendar.tm_mday = 29;
    calendar.tm_hour = 12;
    calendar.tm_min = 34;
    calendar.tm_sec = 56;
    calendar.tm_wday = 4;
    calendar.tm_yday = 59;
    wchar_t expected[64] = L"";
    ASSERT_GT(std::wcsftime(expected, 64, L"%c", &calendar), 0U);

    const CWideString text = FormatSampleTime(45351.0 + 45296 * kSecond);

    EXPECT_EQ(text.GetView(), expected);
}

TEST_F(HostTimeTest, ASampleOfATimeThatIsNoDateIsNamedSo) {
    EXPECT_EQ(FormatSampleTime(kLastDay + 1).GetView(), L"Invalid DateTime");
    EXPECT_EQ(FormatSampleTime(kFirstDay - 1).GetView(), L"Invalid DateTime");
    EXPECT_EQ(FormatSampleTime(std::nan("")).GetView(), L"Invalid DateTime");
    EXPECT_EQ(FormatSampleTime(std::numeric_limits<DATE>::infinity()).GetView(), L"Invalid DateTime");
}

TEST_F(HostTimeTest, ASampleOfTheLastDayIsNamedByIt) {
    EXPECT_EQ(FormatSampleTime(kLastDay).GetView(), L"12/31/99 00:00:00");
}

TEST_F(HostTimeTest, ANodeIsNamedByItsTime) {
    const auto record = std::make_shared<CCallRecord>();
    const auto node = MakeSampleNode(record, {kLastDay});
    const auto undated = MakeSampleNode(record, {kLastDay + 1});

    EXPECT_EQ(NameSample(*node.Get()).GetView(), L"12/31/99 00:00:00");
    EXPECT_EQ(NameSample(*undated.Get()).GetView(), L"Invalid DateTime");

    EXPECT_EQ(record->GetCallTexts(), (std::vector<std::string>{"Sample: get_time", "Sample: get_time"}));
}

TEST_F(HostTimeTest, ANodeThatDoesNotTellItsTimeHasNone) {
    const auto record = std::make_shared<CCallRecord>();
    const auto node = MakeSampleNode(record, {kLastDay});
    for (const HRESULT failure : {E_FAIL, E_NOTIMPL, static_cast<HRESULT>(0x8ABCDEF0)}) {
        record->Fail("Sample: get_time", 1, failure);

        EXPECT_EQ(NameSample(*node.Get()).GetView(), L"Invalid DateTime");
    }
}

TEST_F(HostTimeTest, ANodeThatFailsHasNoTimeWhateverItLeavesBehind) {
    CStackNode node;
    node.getTime = E_FAIL;

    EXPECT_EQ(NameSample(node).GetView(), L"Invalid DateTime");
}

}  // namespace
