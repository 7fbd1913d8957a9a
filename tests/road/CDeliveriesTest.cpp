#include "CDeliveries.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using Complaints = std::vector<std::string>;

constexpr char kLine[] = "an item\n";

Complaints Compare(HRESULT result, const std::string& record) {
    CDeliveries deliveries;
    deliveries.Add(kLine, result);
    return deliveries.Compare(record);
}

TEST(CDeliveriesTest, AnItemOfACallThatSucceededIsRecordedOnce) {
    EXPECT_EQ(Compare(S_OK, "an item\n"), Complaints{});
    EXPECT_EQ(Compare(S_OK, ""), Complaints{"recorded 0 times, result 0: an item\n"});
    EXPECT_EQ(Compare(S_OK, "an item\nan item\n"), Complaints{"recorded 2 times, result 0: an item\n"});
}

TEST(CDeliveriesTest, AnItemOfACallThatFailedIsRecordedAtMostOnce) {
    EXPECT_EQ(Compare(S_FALSE, ""), Complaints{});
    EXPECT_EQ(Compare(S_FALSE, "an item\n"), Complaints{});
    EXPECT_EQ(Compare(S_FALSE, "an item\nan item\n"), Complaints{"recorded 2 times, result 1: an item\n"});
}

TEST(CDeliveriesTest, WhatWasNeverSentIsNotRecorded) {
    EXPECT_EQ(Compare(S_FALSE, "another item\n"), Complaints{"recorded, but never sent: another item"});
}

TEST(CDeliveriesTest, AnItemWithoutALineCountsNowhere) {
    CDeliveries deliveries;
    deliveries.Add("", S_OK);
    deliveries.Add("", S_OK);

    EXPECT_EQ(deliveries.Compare(""), Complaints{});
}

TEST(CDeliveriesTest, NoItemIsSentTwice) {
    CDeliveries deliveries;
    deliveries.Add(kLine, S_OK);

    EXPECT_THROW(deliveries.Add(kLine, S_OK), std::logic_error);
}

TEST(CDeliveriesTest, TheSummaryTellsRefusedItemsThatWereHeard) {
    CDeliveries deliveries;
    deliveries.Add("heard\n", S_OK);
    deliveries.Add("refused\n", E_FAIL);
    deliveries.Add("both\n", E_FAIL);
    EXPECT_EQ(deliveries.Compare("heard\nboth\n"), Complaints{});

    EXPECT_EQ(deliveries.Summarize(), "1 items heard, 2 refused, of which 1 heard all the same");
}

}  // namespace
