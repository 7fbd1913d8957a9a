#pragma once

#include <boost/thread/detail/tss_hooks.hpp>
#include <memory>
#include <string>
#include <vector>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CRMICommManagerImpl.h"
#include "CThreadSlots.h"
#include "LoadedFakeRuntime.h"
#include "TestPaths.h"

/// Fixture with everything around the manager: a host, its registry, and the fake Java runtime, which fails on demand
/// and counts exactly. After each test no rule of JNI's was broken.
class CFakeBridgeTest : public CHostedTest {
protected:
    using Texts = std::vector<std::wstring>;

    static void SetUpTestSuite() { static_cast<void>(LoadedFakeRuntime()); }

    void SetUp() override {
        CHostedTest::SetUp();
        Fake().Reset();
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kFakeRuntime);
    }

    void TearDown() override {
        boost::on_thread_exit();  // gives back what Boost keeps for this thread to its end
        m_registry.reset();
        EXPECT_EQ(Fake().GetLocalReferences(), 0);
        EXPECT_EQ(Fake().GetOpenFrames(), 0);
        EXPECT_EQ(Fake().GetPinnedStrings(), 0);
        for (long i = 0; i < Fake().GetMisuseCount(); ++i) {
            ADD_FAILURE() << "broken rule: " << Fake().GetMisuse(i);
        }
        CHostedTest::TearDown();
    }

    [[nodiscard]] static IFakeRuntime& Fake() { return LoadedFakeRuntime(); }
    [[nodiscard]] CAgentRegistry& Registry() { return *m_registry; }
    [[nodiscard]] CThreadSlots& Slots() { return m_slots; }

    /// The Java methods that were called from the `first` on, in order, without their classes' packages and their
    /// signatures: `DesktopMessageClient.setProviderUrl("rmi://one")`.
    [[nodiscard]] static std::vector<std::string> MethodCalls(long first = 0) {
        std::vector<std::string> calls;
        for (long i = first; i < Fake().GetMethodLogSize(); ++i) {
            const std::string call = Fake().GetMethodLogEntry(i);
            if (call.find(".toString(") != std::string::npos || call.find(".getStackTrace(") != std::string::npos) {
                continue;  // of an exception that was read
            }
            const std::size_t signature = call.find('(');
            const std::size_t className = call.rfind('/', signature) + 1;
            const std::size_t arguments = call.find('(', call.find(')', signature));
            calls.push_back(call.substr(className, signature - className) + call.substr(arguments));
        }
        return calls;
    }

private:
    std::unique_ptr<CAgentRegistry> m_registry;
    CThreadSlots m_slots;
};
