#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "FakeFunction.h"

/// What happened: calls counted and in order, Java methods with their arguments, breaches of JNI's rules.
class CFakeRecord {
public:
    void AddCall(const FakeFunction& function);
    void AddMethod(std::string call);
    void ForgetMethods() { m_methods.clear(); }
    void AddMisuse(std::string misuse);
    void SetCallLogEnabled(bool enabled) noexcept { m_isLogging = enabled; }

    [[nodiscard]] long GetCallCount(std::size_t function) const noexcept { return m_counts[function]; }
    [[nodiscard]] long GetCallLogSize() const noexcept { return static_cast<long>(m_calls.size()); }
    [[nodiscard]] const char* GetCall(long index) const noexcept;
    [[nodiscard]] const std::deque<std::string>& GetMethods() const noexcept { return m_methods; }
    [[nodiscard]] const std::deque<std::string>& GetMisuses() const noexcept { return m_misuses; }

private:
    std::array<long, kFunctionCount> m_counts{};
    std::vector<std::uint16_t> m_calls;  // places in kFunctionNames
    std::deque<std::string> m_methods;   // deques: their texts stay where they are while more are added
    std::deque<std::string> m_misuses;
    bool m_isLogging = true;
};
