#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CCallbackRegistry.h"
#include "CLeakCheckedTest.h"
#include "CRecordingCallback.h"

using Heard = std::vector<std::size_t>;

inline const ServerConfig kServer{L"rmi://one", L"token", L"certificate"};
inline const ServerConfig kOther{L"rmi://two", L"token", L"certificate"};
inline const ServerConfig kNowhere{L"rmi://three", L"token", L"certificate"};

/// Four callbacks in the order of their pointers. After each test the registry is gone and holds none of them.
class CCallbackRegistryFixture : public CLeakCheckedTest {
protected:
    void SetUp() override {
        CLeakCheckedTest::SetUp();
        for (std::size_t i = 0; i < m_callbacks.size(); ++i) {
            WhenTold(i, [] {});
        }
    }

    void TearDown() override {
        m_registry.reset();
        for (std::size_t i = 0; i < m_callbacks.size(); ++i) {
            EXPECT_EQ(m_callbacks[i].CountReferences(), 0) << i;
        }
        CLeakCheckedTest::TearDown();
    }

    [[nodiscard]] CCallbackRegistry& Registry() { return *m_registry; }
    void Register(const ServerConfig& server, std::size_t index) { m_registry->Register(server, &m_callbacks[index]); }
    void Unregister(const ServerConfig& server, std::size_t index) {
        m_registry->Unregister(server, &m_callbacks[index]);
    }
    [[nodiscard]] HRESULT Call(const ServerConfig& server, const wchar_t* text = L"text") {
        return m_registry->CallCallback(server, eStartup, text);
    }
    [[nodiscard]] long References(std::size_t index) const { return m_callbacks[index].CountReferences(); }

    /// Whose report ran, in order, since this was asked last.
    [[nodiscard]] Heard TakeHeard() { return std::exchange(m_heard, {}); }
    /// What the callback does in its report.
    template <typename Work>
    void WhenTold(std::size_t index, Work work) {
        m_callbacks[index].SetHook([this, index, work] {
            m_heard.push_back(index);
            work();
        });
    }

    std::array<CRecordingCallback, 4> m_callbacks;
    std::unique_ptr<CCallbackRegistry> m_registry = std::make_unique<CCallbackRegistry>();

private:
    Heard m_heard;
};
