#include "CSystemFaults.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <iterator>

namespace {

constexpr std::size_t kMostFunctions = 256;

// Whether a fault is in force, and of which call. Counting takes no memory: there may be none.
std::atomic<bool> g_isInForce{false};
long g_callsToFault = 0;
bool g_isForEver = false;
/// Those that have failed, the first one first.
std::array<const SystemFunction*, kMostFunctions> g_failed;
std::size_t g_failedCount = 0;

void NoteFailed(const SystemFunction& function) noexcept {
    const auto end = g_failed.begin() + g_failedCount;
    if (std::find(g_failed.begin(), end, &function) == end) {
        g_failed[g_failedCount++] = &function;
    }
}

template <typename Predicate>
bool HasFailed(const Predicate& predicate) {
    return std::any_of(g_failed.begin(), g_failed.begin() + g_failedCount, predicate);
}

}  // namespace

bool IsSystemCallToFail(const SystemFunction& function) noexcept {
    if (!g_isInForce) {
        return false;
    }
    const bool isToFail = g_failedCount != 0 ? g_isForEver : --g_callsToFault == 0;
    if (isToFail) {
        NoteFailed(function);
    }
    return isToFail;
}

CSystemFaults::CSystemFaults(SystemGroup group) : m_group(group) {
    for (const SystemFunction& function : SystemFunctions()) {
        if (function.group == group) {
            if (void* const* const slot = FindImportSlot(GetModuleHandleW(nullptr), function.name)) {
                *function.original = *slot;
            }
            m_hooks.push_back(
                std::make_unique<CImportHook>(GetModuleHandleW(nullptr), function.name, function.replacement));
        }
    }
}

const char* CSystemFaults::GetName() const noexcept {
    switch (m_group) {
        case SystemGroup::eHeap:
            return "process heap";
        case SystemGroup::eComMemory:
            return "COM memory";
        default:
            return "system";
    }
}

void CSystemFaults::Start(long nth, bool isForEver) {
    g_callsToFault = nth;
    g_isForEver = isForEver;
    g_failedCount = 0;
    g_isInForce = true;
}

void CSystemFaults::Stop() noexcept {
    g_isInForce = false;
}

bool CSystemFaults::HasFired() const {
    return g_failedCount != 0;
}

std::vector<std::string> CSystemFaults::NameFailed() const {
    std::vector<std::string> names;
    std::transform(g_failed.begin(), g_failed.begin() + g_failedCount, std::back_inserter(names),
                   [](const SystemFunction* function) { return function->name; });
    return names;
}

bool CSystemFaults::HasSaid(HRESULT result) const {
    return HasFailed([result](const SystemFunction* function) { return function->result == result; });
}

bool CSystemFaults::MayThrow(HRESULT result) const {
    return HasFailed([result](const SystemFunction* function) {
        return function->leaves == SystemFailure::eException && function->result == result;
    });
}
