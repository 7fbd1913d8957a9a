#pragma once

#include <boost/thread/detail/tss_hooks.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CRMICommManagerImpl.h"
#include "CRecordingCallback.h"
#include "CThreadSlots.h"
#include "TestPaths.h"

/// Fixture with a manager between a host and the real Java runtime. A process runs one such test: there is no second
/// machine in it.
class CRealManagedTest : public CHostedTest {
protected:
    using Texts = std::vector<std::wstring>;
    using Reports = CRecordingCallback::Reports;

    static constexpr unsigned char kNamelessKind = 11;
    static constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);
    static constexpr const wchar_t* kToken = L"the token";

    /// The archives of this folder are Java's class path.
    explicit CRealManagedTest(const wchar_t* archives) : m_archives(archives) {}

    void SetUp() override {
        CHostedTest::SetUp();
        TakeRegistry();
        SetSystem(MakeSystem());
        m_manager = std::make_unique<CRMICommManagerImpl>(m_slots);
        ExpectKept(&ResourceCounts::comBlocks, 1);  // by the runtime's own libraries
        ASSERT_EQ(m_manager->RegisterDataDumpCallback(L"any", L"", L"", &m_callback), S_OK);
    }

    void TearDown() override {
        m_slots.RunCleaner();
        m_manager.reset();
        boost::on_thread_exit();  // gives back what Boost keeps for this thread to its end
        EXPECT_EQ(m_callback.CountReferences(), 0);
        GiveBackRegistry();
        CHostedTest::TearDown();
    }

    void TakeRegistry() {
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kRealRuntime);
        m_registry->SetAgentText(L"ClassPath", m_archives);
        m_registry->SetAgentText(L"ConfigDirectory", L"C:\\Config");
    }
    /// Lets other processes' tests go on, which each take the registry for themselves, while a long one does without:
    /// it is read when Java is started and when another server is switched to.
    void GiveBackRegistry() { m_registry.reset(); }
    [[nodiscard]] const CAgentRegistry& Registry() const { return *m_registry; }

    static SystemData MakeSystem() {
        SystemData system;
        system.machineName = L"desk \u00e9\u4e2d";
        system.machineId = L"machine 7";
        system.virtualMachineId = L"vm 7";
        system.isDesktop = VARIANT_TRUE;
        return system;
    }

    long Dump(const std::wstring& url, const std::wstring& certificate, unsigned char type, IUnknown* data = nullptr,
              unsigned __int64 id = 1) {
        return m_manager->DumpData<IUnknown>(url.c_str(), kToken, certificate.c_str(), id, type, data);
    }

    /// Starts Java on this thread, and points the client at a server that is not there.
    void Start() { ASSERT_EQ(m_manager->SetCurrentServerConfig(L"rmi://nobody", L"", L""), S_OK); }

    /// What was logged as errors, one after the other.
    [[nodiscard]] Texts LoggedErrors() {
        Texts errors;
        for (const std::wstring& entry : Logged()) {
            if (entry.rfind(kErrorLevel, 0) == 0) {
                errors.push_back(entry.substr(kErrorLevel.size()));
            }
        }
        return errors;
    }
    /// What the last of them is from its beginning on, as far as `expected` goes: stacks and systems' texts behind it
    /// are nobody's to know.
    void ExpectLastError(const std::wstring& expected) {
        const Texts errors = LoggedErrors();
        ASSERT_FALSE(errors.empty());
        EXPECT_EQ(errors.back().substr(0, expected.size()), expected);
    }

    CRecordingCallback m_callback;
    CThreadSlots m_slots;
    std::unique_ptr<CRMICommManagerImpl> m_manager;

private:
    static constexpr std::wstring_view kErrorLevel = L"error: ";

    const wchar_t* const m_archives;
    std::unique_ptr<CAgentRegistry> m_registry;
};
