#include "CHostLog.h"

#include <utility>

std::vector<HostLogEntry> CHostLog::GetEntries() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_entries;
}

void CHostLog::Clear() {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_entries.clear();
}

void CHostLog::Add(HostLogEntry entry) {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_entries.push_back(std::move(entry));
}
