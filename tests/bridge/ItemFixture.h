#pragma once

#include <string>
#include <utility>
#include <vector>

#include "DumpDataFixture.h"
#include "ItemData.h"
#include "ItemKinds.h"

/// The kinds that describe the machine.
inline constexpr unsigned char kDesktopKinds[] = {eUserSessionLogon, eUserSessionRefresh, kDesktopPoll};

/// The sending of items whose data is converted. One object of the host's serves all kinds as data; Java answers
/// nothing unless a test says so.
class CItemFixture : public CDumpDataFixture {
protected:
    void SetUp() override {
        CDumpDataFixture::SetUp();
        SetSystem(MakeItemSystem());
        Host().Services().Set(ISessionCollection::kId, MakeSessions({MakeItemSession()}).Get());
        for (const ItemKind& kind : kItemKinds) {
            if (kind.isAnswered) {
                Fake().MakeMethodReturnNull(kClient, kind.method);
            }
        }
        m_data = Make(MakeData());
    }

    void TearDown() override {
        Host().Record().ClearFaults();
        m_data.Reset();
        CDumpDataFixture::TearDown();
    }

    DataObjectData MakeData() { return MakeItemData(Host().ShareRecord()); }
    /// The same, but no session.
    DataObjectData MakeDataWithoutSession() {
        DataObjectData data = MakeData();
        data.session.reset();
        return data;
    }

    CHostReference<IUnknown> Make(DataObjectData data) { return MakeDataObject(Host().ShareRecord(), std::move(data)); }
    CHostReference<ISessionCollection> MakeSessions(std::vector<SessionData> sessions) {
        return MakeSessionCollection(Host().ShareRecord(), std::move(sessions));
    }

    /// Sends the data that serves all kinds.
    long Send(unsigned char type) { return Dump(type, m_data.Get()); }
    long Send(const ItemKind& kind) { return Send(kind.type); }

    /// The identities are not to be had for the next item.
    void RefuseIdentities(HRESULT result) { Host().Record().Fail("ISystemInfo::get_componentsIdentities", 1, result); }

    /// The method of this kind throws from now on.
    static void MakeThrow(const ItemKind& kind, const char* description) {
        Fake().MakeMethodThrow(kClient, kind.method, Exception(description));
    }

    /// CallsSinceStart without packages: `DesktopMessageClient.onUserLogoff(DesktopConnection@instance, 1, ...)`.
    Calls ItemCalls() {
        Calls calls = CallsSinceStart();
        for (std::string& call : calls) {
            for (const std::string package : {"com/orvane/kelbrin/adapters/tolmcommon/datamodel/", "java/util/"}) {
                for (std::size_t at = call.find(package); at != std::string::npos; at = call.find(package, at)) {
                    call.erase(at, package.size());
                }
            }
        }
        return calls;
    }
    /// Those of them that begin like this.
    Calls ItemCalls(const std::string& beginning) {
        Calls found;
        for (std::string& call : ItemCalls()) {
            if (call.rfind(beginning, 0) == 0) {
                found.push_back(std::move(call));
            }
        }
        return found;
    }
    /// The message client's methods alone.
    Calls SentCalls() { return ItemCalls("DesktopMessageClient."); }

    /// The last entry behind the start; empty where there is none.
    std::wstring LastLogged() {
        const Texts logged = LoggedSinceStart();
        return logged.empty() ? std::wstring() : logged.back();
    }

    /// Forgets calls and entries, the host's included.
    void Forget() {
        ForgetStart();
        Host().Record().ClearCalls();
    }

    static inline const std::string s_makeConnection =
        "DesktopConnection.<init>(\"machine 7\", \"token\", \"vm 7\", 393728, \"DESKTOP\")";

    CHostReference<IUnknown> m_data;
};
