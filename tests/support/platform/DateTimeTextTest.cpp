#include "DateTimeText.h"

#include <clocale>
#include <limits>

#include "CLeakCheckedTest.h"

namespace {

class DateTimeTextTest : public CLeakCheckedTest {};

constexpr wchar_t kAllParts[] = L"%Y-%m-%d %H:%M:%S %j %w";

TEST_F(DateTimeTextTest, EveryPartOfTheDateIsTakenAsItIs) {
    // 2026-11-21 18:30:15, a Saturday, the 325th day of its year.
    EXPECT_EQ(FormatDateTime(46347.0 + 66615.0 / 86400.0, kAllParts).GetView(), L"2026-11-21 18:30:15 325 6");
}

TEST_F(DateTimeTextTest, TheDayBeforeTheEpochCountsItsTimeForward) {
    // -1.25 is 1899-12-29 06:00: the fraction of a negative date still counts forward in its day.
    EXPECT_EQ(FormatDateTime(-1.25, kAllParts).GetView(), L"1899-12-29 06:00:00 363 5");
}

TEST_F(DateTimeTextTest, TheRangeEndsAtTheYears100And9999) {
    EXPECT_EQ(FormatDateTime(-657434.0, L"%m-%d").GetView(), L"01-01");
    EXPECT_EQ(FormatDateTime(2958465.0, L"%Y-%m-%d").GetView(), L"9999-12-31");
}

TEST_F(DateTimeTextTest, OutOfRangeThereIsNoText) {
    EXPECT_TRUE(FormatDateTime(-657435.0, kAllParts).IsEmpty());
    EXPECT_TRUE(FormatDateTime(2958466.0, kAllParts).IsEmpty());
    EXPECT_TRUE(FormatDateTime(1e300, kAllParts).IsEmpty());
}

TEST_F(DateTimeTextTest, WhatIsNoNumberHasNoText) {
    EXPECT_TRUE(FormatDateTime(std::numeric_limits<double>::quiet_NaN(), kAllParts).IsEmpty());
    EXPECT_TRUE(FormatDateTime(std::numeric_limits<double>::infinity(), kAllParts).IsEmpty());
}

TEST_F(DateTimeTextTest, TheLocalesFormIsThatOfTheCRuntime) {
    EXPECT_EQ(FormatDateTime(25570.5, L"%c").GetView(), L"01/02/70 12:00:00");
}

TEST_F(DateTimeTextTest, AFormatThatYieldsNothingGivesNoText) {
    EXPECT_TRUE(FormatDateTime(1.0, L"").IsEmpty());
}

}  // namespace
