#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CImportHook.h"
#include "FaultRounds.h"
#include "SystemFunctions.h"

/// The system functions of one group, as this program imports them: the product is linked into it. One at a time.
class CSystemFaults final : public CFaultSource {
public:
    explicit CSystemFaults(SystemGroup group);

    [[nodiscard]] const char* GetName() const noexcept override;
    void Start(long nth, bool isForEver) override;
    void Stop() noexcept override;
    [[nodiscard]] bool HasFired() const override;
    [[nodiscard]] std::vector<std::string> NameFailed() const override;
    [[nodiscard]] bool HasSaid(HRESULT result) const override;
    [[nodiscard]] bool MayThrow(HRESULT result) const override;
    [[nodiscard]] bool IsOfMemory() const noexcept override { return m_group != SystemGroup::eSystem; }

private:
    const SystemGroup m_group;
    std::vector<std::unique_ptr<CImportHook>> m_hooks;
};
