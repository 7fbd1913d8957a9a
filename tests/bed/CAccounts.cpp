#include "CAccounts.h"

#include <utility>

CAccounts::CAccounts(std::vector<Quantity> quantities) {
    Add(std::move(quantities));
}

void CAccounts::Add(std::vector<Quantity> quantities) {
    for (Quantity& quantity : quantities) {
        m_accounts.push_back({std::move(quantity)});
    }
}

void CAccounts::Open() {
    // Twice unmeasured: what is loaded and kept on the way of counting is there then, and what was only on the way to
    // that is gone.
    Count(&Account::before);
    Count(&Account::before);
    Count(&Account::before);
}

testing::AssertionResult CAccounts::Close() {
    Count(&Account::after);
    testing::AssertionResult result = testing::AssertionSuccess();
    for (const Account& account : m_accounts) {
        const long long growth = account.after - account.before;
        const bool isKept = account.quantity.margin == 0 ? growth == 0 : growth < account.quantity.margin;
        if (!isKept) {
            result = (result ? testing::AssertionFailure() : result)
                     << account.quantity.name << ": " << account.before << " before, " << account.after << " after\n";
        }
    }
    return result;
}

std::string CAccounts::MakeHeading() const {
    std::string heading = "| what is called | calls |";
    std::string line = "|---|---|";
    for (const Account& account : m_accounts) {
        heading += " " + account.quantity.name + " |";
        line += "---|";
    }
    return heading + "\n" + line;
}

std::string CAccounts::MakeRow(const std::string& name, int calls) const {
    std::string row = "| " + name + " | " + std::to_string(calls) + " |";
    for (const Account& account : m_accounts) {
        row += " " + std::to_string(account.before);
        if (account.after != account.before) {
            row += " > " + std::to_string(account.after);
        }
        row += " |";
    }
    return row;
}

void CAccounts::Count(long long Account::*moment) {
    for (Account& account : m_accounts) {
        account.*moment = account.quantity.count();
    }
}
