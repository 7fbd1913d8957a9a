#include "CFaultTable.h"

#include <utility>

bool MatchesCall(const std::string& pattern, const std::string& operation, const std::string& text) {
    if (pattern.empty() || pattern.back() != '*') {
        return operation == pattern || text == pattern;
    }
    const std::size_t length = pattern.size() - 1;
    return operation.compare(0, length, pattern, 0, length) == 0 || text.compare(0, length, pattern, 0, length) == 0;
}

void CFaultTable::Add(std::string pattern, long nth, Fault fault, long times) {
    m_rows.push_back({std::move(pattern), nth - 1, times, fault});
    m_firstFailed.clear();
}

Fault CFaultTable::Take(const std::string& operation, const std::string& text) {
    Fault taken;
    for (Row& row : m_rows) {
        if (!MatchesCall(row.pattern, operation, text)) {
            continue;
        }
        if (row.callsUntilDue > 0) {
            --row.callsUntilDue;
        } else if (row.times != 0 && taken.kind == FaultKind::eNone) {
            row.times -= row.times > 0 ? 1 : 0;
            taken = row.fault;
            ++m_fired;
            if (&row == &m_rows.back() && m_firstFailed.empty()) {
                m_firstFailed = text;
            }
        }
    }
    return taken;
}
