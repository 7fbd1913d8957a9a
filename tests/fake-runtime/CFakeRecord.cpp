#include "CFakeRecord.h"

#include <utility>

namespace {

constexpr std::size_t kLogLimit = 100000;

void AppendWithinLimit(std::deque<std::string>& log, std::string entry) {
    if (log.size() < kLogLimit) {
        log.push_back(std::move(entry));
    }
}

}  // namespace

void CFakeRecord::AddCall(const FakeFunction& function) {
    ++m_counts[function.index];
    if (m_isLogging && m_calls.size() < kLogLimit) {
        m_calls.push_back(static_cast<std::uint16_t>(function.index));
    }
}

void CFakeRecord::AddMethod(std::string call) {
    AppendWithinLimit(m_methods, std::move(call));
}

void CFakeRecord::AddMisuse(std::string misuse) {
    AppendWithinLimit(m_misuses, std::move(misuse));
}

const char* CFakeRecord::GetCall(long index) const noexcept {
    if (index < 0 || index >= GetCallLogSize()) {
        return nullptr;
    }
    return kFunctionNames[m_calls[static_cast<std::size_t>(index)]];
}
