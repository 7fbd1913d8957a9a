#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

/// Something that can be counted at any moment.
struct Quantity {
    std::string name;
    std::function<long long()> count;
    /// By how much it may grow between two counts; 0: it has to be the same again.
    long long margin = 0;
};

/// Counts quantities before and after a run of calls, compares them, and tells them as a row of a table. One thread.
class CAccounts {
public:
    explicit CAccounts(std::vector<Quantity> quantities);

    /// Quantities that are to be counted behind those that are there.
    void Add(std::vector<Quantity> quantities);

    /// What is there now counts as there before.
    void Open();

    /// Counts again. A failure names each quantity that is not the same, or has grown by its margin or more.
    [[nodiscard]] testing::AssertionResult Close();

    /// The names of the quantities, a column each, under a table's first two columns.
    [[nodiscard]] std::string MakeHeading() const;
    /// What was counted: "7" for what is the same before and after, "7 > 8" for what is not.
    [[nodiscard]] std::string MakeRow(const std::string& name, int calls) const;

private:
    struct Account {
        Quantity quantity;
        long long before = 0;
        long long after = 0;
    };

    void Count(long long Account::*moment);

    std::vector<Account> m_accounts;
};
