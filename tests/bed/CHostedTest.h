#pragma once

#include <windows.h>

#include <objbase.h>

#include <memory>
#include <string>
#include <vector>

#include "CBridgeLog.h"
#include "CHost.h"
#include "CInProcessClassObject.h"
#include "CLeakCheckedTest.h"

/// Fixture with a whole host in front of the library: its class object is found by every thread of the process. After
/// each test nothing of the host's is referenced any more, and none of its rules were broken.
class CHostedTest : public CLeakCheckedTest {
protected:
    void SetUp() override {
        CLeakCheckedTest::SetUp();
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        m_host = std::make_unique<CHost>(HostData{});
        m_registration = std::make_unique<CInProcessClassObject>(m_host->MakeClassObject().Get());
    }

    void TearDown() override {
        m_registration.reset();
        EXPECT_EQ(m_host->Close(), "");
        EXPECT_EQ(m_host->Record().GetViolations(), std::vector<std::string>{});
        m_host.reset();
        CoUninitialize();
        CLeakCheckedTest::TearDown();
    }

    [[nodiscard]] CHost& Host() { return *m_host; }
    void Unregister() { m_registration.reset(); }

    /// The host's system information says this from now on to whoever asks for it anew.
    void SetSystem(SystemData data) {
        Host().Services().Set(ISystemInfo::kId, MakeSystemInfo(Host().ShareRecord(), std::move(data)).Get());
    }

    /// The host's logger as the library holds it.
    [[nodiscard]] CBridgeLog MakeLog() { return CBridgeLog(MakeLogger(m_host->ShareRecord(), m_log).Get()); }

    /// What the host's logger was told, a text each: "error: Failed ...".
    [[nodiscard]] std::vector<std::wstring> Logged() {
        std::vector<std::wstring> texts;
        for (const CHostLog* const log : {m_log.get(), &m_host->Log()}) {
            for (const HostLogEntry& entry : log->GetEntries()) {
                texts.push_back(LevelName(entry) + L": " + entry.text);
            }
        }
        return texts;
    }

    /// What the system says of a result, as error texts end in it: with its line break.
    [[nodiscard]] static std::wstring ErrorText(HRESULT result) {
        return std::wstring(FormatWithErrorText(ErrorTextForm::eSuffix, result, L"").GetView());
    }

private:
    static std::wstring LevelName(const HostLogEntry& entry) {
        switch (entry.level) {
            case HostLogLevel::eError:
                return L"error";
            case HostLogLevel::eWarning:
                return L"warning";
            case HostLogLevel::eInfo:
                return L"info";
            default:
                return L"verbose " + std::to_wstring(entry.detail);
        }
    }

    std::unique_ptr<CHost> m_host;
    std::shared_ptr<CHostLog> m_log = std::make_shared<CHostLog>();
    std::unique_ptr<CInProcessClassObject> m_registration;
};
