#pragma once

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "CRegisteredServer.h"
#include "CRoadTest.h"
#include "CSoakCaller.h"
#include "DataType.h"
#include "JavaWitness.h"

/// Fixture of a soak: two servers, who hears them, and how it came off.
class CSoakTest : public CRoadTest {
protected:
    /// How long it lasts, the fewest storms permitting.
    static unsigned long ReadSeconds() {
        constexpr unsigned long kDefault = 20;
        const char* const text = std::getenv("TELVAR_SOAK_SECONDS");
        const unsigned long seconds = text ? std::strtoul(text, nullptr, 10) : 0;
        return seconds > 0 ? seconds : kDefault;
    }

    /// A soak of an hour is no hang: the watchdog's own time comes on top of it, and the fewest storms may take some.
    static void SetUpTestSuite() {
        constexpr unsigned long kWatchdogSeconds = 300;
        if (!std::getenv("TELVAR_WATCHDOG_SECONDS")) {
            const std::string limit = std::to_string(ReadSeconds() + kWatchdogSeconds);
            ASSERT_EQ(_putenv_s("TELVAR_WATCHDOG_SECONDS", limit.c_str()), 0);
        }
    }

    void SetUp() override {
        CRoadTest::SetUp();
        Unregister();
        m_registered = std::make_unique<CRegisteredServer>(Host().MakeClassObject().Get());
        Host().Record().SetKeepsHistory(false);
        m_soak = std::make_unique<Soak>(*m_manager, Host());
        for (SoakedServer* const server : {&m_soak->first, &m_soak->second}) {
            ASSERT_EQ(m_manager->RegisterDataDumpCallback(server->url.c_str(), Soak::kToken, L"", &server->callback),
                      S_OK);
        }
    }

    void TearDown() override {
        for (SoakedServer* const server : {&m_soak->first, &m_soak->second}) {
            EXPECT_EQ(m_manager->UnregisterDataDumpCallback(server->url.c_str(), Soak::kToken, L"", &server->callback),
                      S_OK);
            EXPECT_EQ(server->callback.CountReferences(), 0);
        }
        m_soak.reset();
        m_registered.reset();
        CRoadTest::TearDown();
    }

    [[nodiscard]] std::wstring ConfigPath(unsigned index) const {
        return Registry().AgentKey() + L"\\Server " + std::to_wstring(index);
    }

    /// Has the configuration that names this path lead to a server of its own.
    static void SetServerAt(const std::wstring& path) {
        CAgentRegistry::SetBytes(path, L"MessageServerURL", REG_SZ, BytesOf(L"rmi://of " + path));
        CAgentRegistry::SetBytes(path, L"AdapterCertificate", REG_SZ, BytesOf(L"certificate of " + path));
    }

    /// Waits until it is so; now and then Java collects garbage meanwhile, and the host throws its log away.
    template <typename Condition>
    void Await(const Condition& isSo) {
        constexpr DWORD kPauseMs = 20;
        constexpr unsigned kPausesPerCollection = 20;
        while (!isSo()) {
            if (m_pauses++ % kPausesPerCollection == 0) {
                static_cast<void>(CountJavaHeap());
                Host().Log().Clear();
            }
            Sleep(kPauseMs);
        }
    }

    void AwaitMore(const std::atomic<long>& count, long more) {
        const long wanted = count + more;
        Await([&] { return count >= wanted; });
    }

    void ExpectEachAnswerAtItsCallback(SoakedServer& server) {
        const CRecordingCallback::Reports told = server.callback.Told();
        const std::string answer = server.Answer("onUserLogon");
        const CRecordingCallback::Reports::value_type report(eUserSessionLogon,
                                                             std::wstring(answer.begin(), answer.end()));
        EXPECT_EQ(static_cast<long>(told.size()), server.logons);
        EXPECT_EQ(static_cast<long>(std::count(told.begin(), told.end(), report)), server.logons);
    }

    void ExpectEachActionOnItsThread() {
        std::map<std::pair<DWORD, std::string>, long> actions;
        for (const HostAction& action : Host().Actions().GetEntries()) {
            ++actions[{action.threadId, action.text}];
        }
        EXPECT_TRUE(actions == m_soak->actions);
    }

    /// A line of the run's diary: how far it came, where the watchdog ends it.
    void Tell(const char* event) const {
        std::cout << (GetTickCount64() - m_beginMs) / 1000 << " s: " << event << "; " << m_soak->first.heard << " + "
                  << m_soak->second.heard << " calls succeeded, " << m_soak->first.refused << " + "
                  << m_soak->second.refused << " did not, " << m_soak->endedThreads << " threads ended, "
                  << m_soak->listeners << " callbacks came and went" << std::endl;
    }

    std::unique_ptr<Soak> m_soak;

private:
    const ULONGLONG m_beginMs = GetTickCount64();
    unsigned m_pauses = 0;
    std::unique_ptr<CRegisteredServer> m_registered;
};
