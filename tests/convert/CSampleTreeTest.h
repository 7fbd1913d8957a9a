#pragma once

#include <string>
#include <utility>

#include "CSampleConversionTest.h"

/// A whole sample: two sessions, of which the first has an application.
class CSampleTreeTest : public CSampleConversionTest {
protected:
    static constexpr char kAnnMade[] = R"(BaseUserSession.<init>(7, "S-7", "ann", "domain", true))";
    static constexpr char kBobMade[] = R"(BaseUserSession.<init>(8, "S-8", "bob", "domain", true))";
    static constexpr char kSessionPut[] = "BaseSample.putSession(BaseUserSession@instance)";

    [[nodiscard]] static SampleData MakeTree() {
        const SampleData app{kAppTime, {{L"hits", MakeInt(2)}}};
        const SampleData first{kSessionTime, {{L"load", MakeInt(3)}}, {{L"mail", app}}};
        return {kSampleTime, {{L"cpu", MakeInt(1)}}, {{L"7", first}, {L"8", {kSessionTime, {{L"load", MakeInt(4)}}}}}};
    }
    [[nodiscard]] CHostReference<ISessionCollection> MakeSessions() {
        return MakeSessionCollection(Host().ShareRecord(), {{7, L"S-7", L"ann", L"domain", 1, L"", {"Box 7"}},
                                                            {8, L"S-8", L"bob", L"domain", 1, L"", {"Box 8"}}});
    }
    [[nodiscard]] Object Convert(SampleData data) {
        ForgetJavaCalls();
        return MakeConvertor().GetSample(SharedVM(), MakeNode(std::move(data)).Get(), MakeSessions().Get());
    }

    [[nodiscard]] static Names SampleCalls() { return Join({{kSampleMade}, MetricCalls("BaseSample", "cpu", 1)}); }
    [[nodiscard]] static Names AnnCalls() {
        return Join({{kAnnMade},
                     MetricCalls("BaseUserSession", "load", 3),
                     {R"(BaseRemoteApp.<init>("mail"))"},
                     MetricCalls("BaseRemoteApp", "hits", 2),
                     {"BaseUserSession.putRemoteApp(BaseRemoteApp@instance)", kSessionPut}});
    }
    [[nodiscard]] static Names BobCalls() {
        return Join({{kBobMade}, MetricCalls("BaseUserSession", "load", 4), {kSessionPut}});
    }
    /// What the host is asked of a session before it is made.
    [[nodiscard]] static Names AskedOfSession(const std::string& id) {
        const std::string session = "Session " + id + ": ";
        return {"Sessions: GetSession(" + id + ")",
                session + "get_id",
                session + "get_sid",
                session + "get_user",
                session + "get_domain",
                session + "get_state"};
    }
    [[nodiscard]] static Names AskedForProperties(const std::string& id) {
        const std::string box = "Box " + id;
        return {"Session " + id + ": get_propertyBox", box + ": get_enumerator", box + " properties: Next"};
    }
};
