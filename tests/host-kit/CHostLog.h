#pragma once

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

enum class HostLogLevel { eError, eWarning, eInfo, eVerbose };

struct HostLogEntry {
    HostLogLevel level;
    LONG detail;  ///< the level of a verbose entry, 0 of the others
    std::wstring component;
    std::wstring text;
    DWORD threadId;
};

/// What a host's logger was told, in order. Any thread.
class CHostLog {
public:
    [[nodiscard]] std::vector<HostLogEntry> GetEntries() const;
    void Clear();

    // For the logger.
    void Add(HostLogEntry entry);

private:
    mutable std::mutex m_lock;
    std::vector<HostLogEntry> m_entries;
};
