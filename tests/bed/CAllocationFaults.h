#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CAllocationFault.h"
#include "FaultRounds.h"

/// The C++ allocations of the thread that a round runs on.
class CAllocationFaults final : public CFaultSource {
public:
    [[nodiscard]] const char* GetName() const noexcept override { return "C++ memory"; }
    void Start(long nth, bool isForEver) override { m_fault.emplace(nth, isForEver); }
    void Stop() noexcept override { m_fault.reset(); }
    [[nodiscard]] bool HasFired() const override { return CAllocationFault::HasFired(); }
    [[nodiscard]] std::vector<std::string> NameFailed() const override { return {}; }
    [[nodiscard]] bool HasSaid(HRESULT result) const override { return result == E_OUTOFMEMORY; }
    [[nodiscard]] bool MayThrow(HRESULT result) const override { return result == E_OUTOFMEMORY; }
    [[nodiscard]] bool IsOfMemory() const noexcept override { return true; }

private:
    std::optional<CAllocationFault> m_fault;
};
