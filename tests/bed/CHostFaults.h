#pragma once

#include <string>
#include <vector>

#include "CHost.h"
#include "FaultRounds.h"

/// The operations of a host's objects, queries for the interfaces that they have included.
class CHostFaults final : public CFaultSource {
public:
    static constexpr HRESULT kRefusal = E_ACCESSDENIED;

    explicit CHostFaults(CHost& host, HRESULT refusal = kRefusal) noexcept : m_host(host), m_refusal(refusal) {}

    [[nodiscard]] const char* GetName() const noexcept override { return "host"; }
    void Start(long nth, bool isForEver) override { m_host.Record().Fail("*", nth, m_refusal, isForEver ? -1 : 1); }
    void Stop() noexcept override {
        m_failed = m_host.Record().GetFirstFailedCall();
        m_host.Record().ClearFaults();
    }
    [[nodiscard]] bool HasFired() const override { return !m_failed.empty(); }
    [[nodiscard]] std::vector<std::string> NameFailed() const override { return {m_failed}; }
    [[nodiscard]] bool HasSaid(HRESULT result) const override { return result == m_refusal; }

private:
    CHost& m_host;
    const HRESULT m_refusal;
    std::string m_failed;
};
