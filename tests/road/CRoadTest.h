#pragma once

#include "CMessageServer.h"
#include "CRealManagedTest.h"
#include "RoadItems.h"

/// Fixture with the whole road: a host with all that RoadItems speaks of, the manager, the real Java runtime and the
/// real message client; a test adds the servers.
class CRoadTest : public CRealManagedTest {
protected:
    CRoadTest() : CRealManagedTest(TestPaths::kMessageClientFolder) {}

    void SetUp() override {
        CRealManagedTest::SetUp();
        SetSystem(MakeRoadSystem());
        Host().Services().Set(ISessionCollection::kId, MakeRoadSessions(Host().ShareRecord()).Get());
    }

    using CRealManagedTest::Dump;
    long Dump(const CMessageServer& server, unsigned char type, IUnknown* data = nullptr, unsigned __int64 id = 1) {
        return Dump(server.Url(), server.Certificate(), type, data, id);
    }
    long Dump(const CMessageServer& server, const RoadItem& item) {
        return Dump(server, item.type, item.data.Get(), item.id);
    }

    [[nodiscard]] std::vector<RoadItem> MakeItems(unsigned __int64 number) {
        return MakeRoadItems(Host().ShareRecord(), number);
    }

    /// Type and text of each action that the host was given.
    [[nodiscard]] std::vector<std::string> Actions() {
        std::vector<std::string> actions;
        for (const HostAction& action : Host().Actions().GetEntries()) {
            actions.push_back(action.text);
        }
        return actions;
    }
};

/// How a test that holds for both ways is called for each.
[[nodiscard]] inline std::string NameWay(const testing::TestParamInfo<Way>& way) {
    return way.param == Way::ePlain ? "Plain" : "Tls";
}
