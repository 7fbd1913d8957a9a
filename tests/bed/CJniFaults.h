#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "FaultRounds.h"
#include "LoadedFakeRuntime.h"

/// The fake runtime's functions of the JNIEnv table, those that may fail. Each failure leaves an exception.
class CJniFaults final : public CFaultSource {
public:
    [[nodiscard]] const char* GetName() const noexcept override { return "JNI"; }
    void Start(long nth, bool isForEver) override {
        if (isForEver) {
            LoadedFakeRuntime().Fail("*", nth, -1);
        }
        LoadedFakeRuntime().Fail("*", nth);  // the last order, and so the one that is asked what came of it
    }
    /// What came of it is read here: the runtime forgets it with the order.
    void Stop() noexcept override {
        m_hasFired = LoadedFakeRuntime().GetFaultsFired() != 0;
        m_failed = m_hasFired ? LoadedFakeRuntime().GetFailedFunction() : "";
        LoadedFakeRuntime().ClearFaults();
    }
    [[nodiscard]] bool HasFired() const override { return m_hasFired; }
    [[nodiscard]] std::vector<std::string> NameFailed() const override { return {m_failed}; }
    [[nodiscard]] bool HasSaid(HRESULT result) const override { return result == E_FAIL; }

private:
    bool m_hasFired = false;
    std::string m_failed;
};

/// The fake runtime's functions outside that table: those that start a machine and that attach and detach threads.
class CMachineFaults final : public CFaultSource {
public:
    [[nodiscard]] const char* GetName() const noexcept override { return "Java machine"; }
    void Start(long nth, bool isForEver) override {
        m_nth = nth;
        m_callsBefore.clear();
        for (const char* const function : kFunctions) {
            m_callsBefore.push_back(LoadedFakeRuntime().GetCallCount(function));
            LoadedFakeRuntime().Fail(function, nth, isForEver ? -1 : 1, FakeFaultMode::eWithoutException);
        }
    }
    void Stop() noexcept override {
        m_failed.clear();
        for (std::size_t i = 0; i < m_callsBefore.size(); ++i) {
            if (LoadedFakeRuntime().GetCallCount(kFunctions[i]) - m_callsBefore[i] >= m_nth) {
                m_failed = kFunctions[i];
            }
        }
        LoadedFakeRuntime().ClearFaults();
    }
    [[nodiscard]] bool HasFired() const override { return !m_failed.empty(); }
    [[nodiscard]] std::vector<std::string> NameFailed() const override { return {m_failed}; }
    [[nodiscard]] bool HasSaid(HRESULT result) const override { return result == E_FAIL; }

private:
    static constexpr const char* kFunctions[] = {"JNI_CreateJavaVM", "AttachCurrentThread", "DetachCurrentThread"};

    long m_nth = 0;
    std::vector<long> m_callsBefore;
    std::string m_failed;
};
