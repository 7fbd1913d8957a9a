#pragma once

#include <windows.h>

#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

/// What was sent to a server and what the host was told of each item, to be compared with the server's record. No two
/// items are the same. Any thread.
class CDeliveries {
public:
    /// A call that is over.
    /// @param line what the server records of the item; empty: nothing
    void Add(const std::string& line, HRESULT result);

    /// Whether each item that was sent with success is recorded once, each other one at most once, and nothing else is.
    /// Empty when it is so, else what is wrong, a line each. After the last call.
    [[nodiscard]] std::vector<std::string> Compare(const std::string& record);

    /// Of those that are recorded: how often the call succeeded, and how often it did not.
    [[nodiscard]] std::string Summarize() const;

private:
    struct Delivery {
        HRESULT result;
        int recorded = 0;
        std::string beginning;  // of the line, for whoever reads of it
    };

    mutable std::mutex m_lock;  // guards what follows
    /// By the lines' hashes: the lines of a long run would fill the memory.
    std::unordered_map<std::size_t, Delivery> m_deliveries;
};
