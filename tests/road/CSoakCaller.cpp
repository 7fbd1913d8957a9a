#include "CSoakCaller.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <algorithm>

#include "CRMIConfigLoader.h"
#include "CVariantValue.h"
#include "DataType.h"

namespace {

constexpr unsigned kStormySwitch = 8;  // of so many items one goes to the second server
const std::string kCommonToken = R"("authToken":"the token")";

std::wstring Widen(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

/// The text that the system gave, freed.
std::wstring TakeText(wchar_t* text) {
    std::wstring taken(text ? text : L"(none)");
    SysFreeString(text);
    return taken;
}

}  // namespace

SoakedServer::SoakedServer(std::string serverName)
    : name(std::move(serverName)),
      options({"--answer", "onStartup=" + Answer("onStartup"), "--answer", "onUserLogon=" + Answer("onUserLogon"),
               "--answer", "onExtendedDataCollected=" + Answer("onExtendedDataCollected"), "--answer",
               "onDataCollected=" + Answer("onDataCollected"), "--answer", "onDesktopPoll=" + Answer("onDesktopPoll"),
               // Long, and in storms alone: so that a server is often killed amid a call.
               "--delay", "onStartup=200"}),
      server(name, Way::ePlain, options) {}

CSoakCaller::CSoakCaller(Soak& soak, unsigned seed, std::wstring configPath)
    : m_soak(soak), m_configPath(std::move(configPath)), m_random(seed) {}

void CSoakCaller::RunRound(std::size_t kinds) {
    std::vector<RoadItem> items = MakeItems();
    const std::size_t first = m_random() % items.size();
    std::rotate(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(first), items.end());
    for (std::size_t i = 0; i < std::min(kinds, items.size()) && !m_soak.isOver; ++i) {
        if (items[i].type == eStartup) {
            SendStartup();
        } else {
            Send(items[i]);
        }
    }
    ListenForALogon();
    FindServer();
}

void CSoakCaller::SendEachTo(SoakedServer& server) {
    for (const RoadItem& item : MakeItems()) {
        if (item.type != eStartup) {
            EXPECT_EQ(SendNow(server, Soak::kToken, item), S_OK);
        }
    }
}

long CSoakCaller::Poll() {
    return Send(MakeItem(kDesktopPoll));
}

long CSoakCaller::PollFirstAlone() {
    return SendNow(m_soak.first, Soak::kToken, MakeItem(kDesktopPoll));
}

/// Nothing tells one start-up from another but its token. Another token is another server to the manager: it switches,
/// and a callback of that token alone is told the answer.
void CSoakCaller::SendStartup() {
    const std::shared_lock<CSharedLock> call(m_soak.calls);
    if (!m_soak.isStormy) {
        return;
    }
    SoakedServer& server = PickServer();
    RoadItem item = MakeItem(eStartup);
    const std::string token = "token " + std::to_string(item.id);
    item.line.replace(item.line.find(kCommonToken), kCommonToken.size(), R"("authToken":")" + token + R"(")");
    const std::wstring wideToken = Widen(token);

    CRecordingCallback callback;
    EXPECT_EQ(m_soak.manager.RegisterDataDumpCallback(server.url.c_str(), wideToken.c_str(), L"", &callback), S_OK);
    const long result = SendNow(server, wideToken, item);
    EXPECT_EQ(m_soak.manager.UnregisterDataDumpCallback(server.url.c_str(), wideToken.c_str(), L"", &callback), S_OK);

    const CRecordingCallback::Reports answer = {{eStartup, Widen(server.Answer("onStartup"))}};
    EXPECT_EQ(callback.Told(), result == S_OK ? answer : CRecordingCallback::Reports{});
    EXPECT_EQ(callback.CountReferences(), 0);
}

/// Beside the first server's own callback, for as long as one logon.
void CSoakCaller::ListenForALogon() {
    const std::shared_lock<CSharedLock> call(m_soak.calls);
    const std::wstring& url = m_soak.first.url;
    CRecordingCallback callback;
    EXPECT_EQ(m_soak.manager.RegisterDataDumpCallback(url.c_str(), Soak::kToken, L"", &callback), S_OK);
    const long result = SendNow(m_soak.first, Soak::kToken, MakeItem(eUserSessionLogon));
    EXPECT_EQ(m_soak.manager.UnregisterDataDumpCallback(url.c_str(), Soak::kToken, L"", &callback), S_OK);

    // Other threads' answers are its own as well.
    const CRecordingCallback::Reports told = callback.Told();
    const CRecordingCallback::Reports::value_type answer(eUserSessionLogon, Widen(m_soak.first.Answer("onUserLogon")));
    EXPECT_EQ(std::count(told.begin(), told.end(), answer), static_cast<std::ptrdiff_t>(told.size()));
    EXPECT_GE(told.size(), result == S_OK ? 1U : 0U);
    EXPECT_EQ(callback.CountReferences(), 0);
    ++m_soak.listeners;
}

void CSoakCaller::FindServer() const {
    const CVariantValue document =
        MakeText(L"<agent><serverConfigRegistry>" + m_configPath + L"</serverConfigRegistry></agent>");
    wchar_t* url = nullptr;
    wchar_t* uniqueId = nullptr;
    wchar_t* certificate = nullptr;
    EXPECT_EQ(CRMIConfigLoader::GetServerInfo(document.Get(), &url, &uniqueId, &certificate), S_OK);
    EXPECT_EQ(TakeText(url), L"rmi://of " + m_configPath);
    EXPECT_EQ(TakeText(uniqueId), L"unique 7");
    EXPECT_EQ(TakeText(certificate), L"certificate of " + m_configPath);

    VARIANT content{};
    EXPECT_EQ(CRMIConfigLoader::GetConfigContent(document.Get(), &content), S_OK);
    EXPECT_EQ(std::wstring(content.bstrVal), m_configPath);
    VariantClear(&content);
}

SoakedServer& CSoakCaller::PickServer() {
    return m_soak.isStormy && m_random() % kStormySwitch == 0 ? m_soak.second : m_soak.first;
}

std::vector<RoadItem> CSoakCaller::MakeItems() {
    return MakeRoadItems(m_soak.host.ShareRecord(), m_soak.nextNumber++);
}

RoadItem CSoakCaller::MakeItem(unsigned char type) {
    std::vector<RoadItem> items = MakeItems();
    return std::move(
        *std::find_if(items.begin(), items.end(), [&](const RoadItem& item) { return item.type == type; }));
}

long CSoakCaller::Send(const RoadItem& item) {
    const std::shared_lock<CSharedLock> call(m_soak.calls);
    return SendNow(PickServer(), Soak::kToken, item);
}

long CSoakCaller::SendNow(SoakedServer& server, const std::wstring& token, const RoadItem& item) {
    const long result =
        m_soak.manager.DumpData<IUnknown>(server.url.c_str(), token.c_str(), L"", item.id, item.type, item.data.Get());
    server.deliveries.Add(item.line, result);
    if (result == S_OK) {
        NoteAction(server, item);
        server.logons += item.type == eUserSessionLogon ? 1 : 0;
        ++server.heard;
    } else {
        EXPECT_TRUE(m_soak.isStormy) << "only then is a server away; " << std::hex << result;
        EXPECT_NE(item.line, "") << "what no server hears is refused by none";
        ++server.refused;
    }
    return result;
}

void CSoakCaller::NoteAction(const SoakedServer& server, const RoadItem& item) {
    if (item.type == eExtendedData || item.type == eSample || item.type == kDesktopPoll) {
        const std::lock_guard<std::mutex> lock(m_soak.actionsLock);
        ++m_soak.actions[{GetCurrentThreadId(), "BSTR " + server.Answer(item.method)}];
    }
}
