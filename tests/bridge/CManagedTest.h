#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CFakeBridgeTest.h"

/// Fixture with a manager between a host and the fake runtime. It is disposed after the test, and nothing of Java's is
/// left over then.
class CManagedTest : public CFakeBridgeTest {
protected:
    using Calls = std::vector<std::string>;

    static constexpr const char* kClient = Binding::DesktopMessageClient::kClass;

    void SetUp() override {
        CFakeBridgeTest::SetUp();
        Registry().SetAgentText(L"ConfigDirectory", L"C:\\Config");
        m_manager = std::make_unique<CRMICommManagerImpl>(Slots());
    }

    void TearDown() override {
        EXPECT_FALSE(Fake().IsExceptionPending());
        Slots().RunCleaner();
        EXPECT_EQ(Fake().GetGlobalReferences(), 0);
        m_manager.reset();
        CFakeBridgeTest::TearDown();
    }

    /// What was called and logged so far counts as the bridge's start.
    void ForgetStart() {
        m_firstCall = Fake().GetMethodLogSize();
        m_firstEntry = Logged().size();
    }

    Calls CallsSinceStart() { return MethodCalls(m_firstCall); }
    Texts LoggedSinceStart() {
        Texts logged = Logged();
        logged.erase(logged.begin(), logged.begin() + static_cast<std::ptrdiff_t>(m_firstEntry));
        return logged;
    }

    static FakeException Exception(const char* description) {
        FakeException exception;
        exception.description = description;
        return exception;
    }

    std::unique_ptr<CRMICommManagerImpl> m_manager;

private:
    long m_firstCall = 0;
    std::size_t m_firstEntry = 0;
};
