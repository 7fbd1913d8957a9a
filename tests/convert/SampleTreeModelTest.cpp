#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "CModelTest.h"

namespace {

std::string Sample(const std::string& metrics, const std::string& sessions) {
    return "Sample(time=86400000L, metrics=[" + metrics + "], sessions=[" + sessions + "])";
}
std::string Session(int id, const std::string& metrics, const std::string& apps) {
    return "UserSession(id=" + std::to_string(id) + R"(, sid="", user="", domain="", connected=true, )" +
           "properties={}, metrics=[" + metrics + "], remoteApps=[" + apps + "])";
}
std::string App(const std::string& id, const std::string& metrics) {
    return "RemoteApp(id=\"" + id + "\", properties={}, metrics=[" + metrics + "])";
}

const std::string kMetrics = R"("a"=1L, "b"=2L, "c"=3L)";
const std::string kX = App("x", kMetrics);
const std::string kY = App("y", kMetrics);
const std::string kFirst = Session(1, kMetrics, kX + ", " + kY);
const std::string kSecond = Session(2, kMetrics, kX + ", " + kY);
const std::string kBoth = kFirst + ", " + kSecond;

/// What is left of a sample of which some part is spoilt.
class SampleTreeModelTest : public CModelTest {
protected:
    struct Case {
        const char* what;
        std::function<void(SampleData& sample, CCallRecord& record)> spoil;
        std::string left;
        Texts errors;
    };

    void ExpectLeft(const std::vector<Case>& cases) {
        for (const Case& each : cases) {
            SampleData sample = MakeTree();
            each.spoil(sample, *Record());

            EXPECT_EQ(TellSample(ConvertSample(sample, MakeSessions())), each.left) << each.what;

            EXPECT_EQ(Host().Errors(), each.errors) << each.what;
            Record()->ClearFaults();
            Host().ForgetLog();
        }
    }

private:
    [[nodiscard]] static std::vector<SessionData> MakeSessions() {
        std::vector<SessionData> sessions(2);
        sessions[0].id = 1;
        sessions[1].id = 2;
        return sessions;
    }

    /// Three metrics everywhere, two sessions, two applications in each.
    [[nodiscard]] static SampleData MakeTree() {
        SampleData node;
        node.time = 25570.0;
        node.metrics = {{L"a", MakeInt(1)}, {L"b", MakeInt(2)}, {L"c", MakeInt(3)}};
        SampleData session = node;
        session.instances = {{L"x", node}, {L"y", node}};
        SampleData sample = node;
        sample.instances = {{L"1", session}, {L"2", session}};
        return sample;
    }
};

TEST_F(SampleTreeModelTest, OfSpoiltMetricsTheOthersAreLeft) {
    const Texts noMetrics = {L"Failed to get metrics from sample  " + kFailureText};
    ExpectLeft({
        {"nothing", [](SampleData&, CCallRecord&) {}, Sample(kMetrics, kBoth), {}},
        {"a failure midway",
         [](SampleData& sample, CCallRecord&) { sample.metricsWalk.failAt = 1; },
         Sample(R"("a"=1L)", kBoth),
         {}},
        {"another success midway",
         [](SampleData& sample, CCallRecord&) {
             sample.metricsWalk.failAt = 2;
             sample.metricsWalk.failure = S_FALSE;
         },
         Sample(R"("a"=1L, "b"=2L)", kBoth),
         {}},
        {"a failure in place of the end",
         [](SampleData& sample, CCallRecord&) { sample.metricsWalk.endResult = E_UNEXPECTED; },
         Sample(kMetrics, kBoth),
         {}},
        {"a null name",
         [](SampleData& sample, CCallRecord&) { sample.metricsWalk.nullNameAt = 1; },
         Sample(R"("a"=1L, "c"=3L)", kBoth),
         {}},
        {"a null value",
         [](SampleData& sample, CCallRecord&) { sample.metricsWalk.nullItemAt = 1; },
         Sample(R"("a"=1L, "c"=3L)", kBoth),
         {L"Invalid type for metric 'b'."}},
        {"an untouched pair, then all of them",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sample metrics: Next", 2); },
         Sample(kMetrics, kBoth),
         {}},
        {"a nulled pair, then all of them",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sample metrics: Next", 1, 2); },
         Sample(kMetrics, kBoth),
         {}},
        {"no metrics to be had",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample: get_metrics(1)", 1, kFailure); },
         Sample("", kBoth), noMetrics},
        {"a null enumerator",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sample: get_metrics(1)"); },
         Sample("", kBoth),
         {}},
        {"an untouched enumerator",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sample: get_metrics(1)"); },
         Sample("", kBoth),
         {}},
        {"no metrics of a session to be had",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample/1: get_metrics(1)", 1, kFailure); },
         Sample(kMetrics, Session(1, "", kX + ", " + kY) + ", " + kSecond), noMetrics},
        {"no metrics of an application to be had",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample/2/x: get_metrics(1)", 1, kFailure); },
         Sample(kMetrics, kFirst + ", " + Session(2, kMetrics, kY)), noMetrics},
        {"a null enumerator of an application",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sample/2/x: get_metrics(1)"); },
         Sample(kMetrics, kFirst + ", " + Session(2, kMetrics, kY)),
         {}},
    });
}

TEST_F(SampleTreeModelTest, OfSpoiltSessionsTheOthersAreLeft) {
    ExpectLeft({
        {"a failure midway",
         [](SampleData& sample, CCallRecord&) { sample.instancesWalk.failAt = 1; },
         Sample(kMetrics, kFirst),
         {}},
        {"a failure in place of the end",
         [](SampleData& sample, CCallRecord&) { sample.instancesWalk.endResult = E_UNEXPECTED; },
         Sample(kMetrics, kBoth),
         {}},
        {"a null key",
         [](SampleData& sample, CCallRecord&) { sample.instancesWalk.nullNameAt = 0; },
         Sample(kMetrics, kSecond),
         {}},
        {"a null instance",
         [](SampleData& sample, CCallRecord&) { sample.instancesWalk.nullItemAt = 0; },
         Sample(kMetrics, kSecond),
         {}},
        {"an untouched pair, then all of them",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sample instances: Next", 2); },
         Sample(kMetrics, kBoth),
         {}},
        {"a null enumerator",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sample: get_instances"); },
         Sample(kMetrics, ""),
         {}},
        {"an untouched enumerator",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sample: get_instances"); },
         Sample(kMetrics, ""),
         {}},
        {"a session that is not found",
         [](SampleData&, CCallRecord& record) { record.Fail("Sessions: GetSession(1)", 1, kFailure); },
         Sample(kMetrics, kSecond),
         {}},
        {"a null session",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sessions: GetSession(2)"); },
         Sample(kMetrics, kFirst),
         {}},
        {"an untouched session",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sessions: GetSession(2)"); },
         Sample(kMetrics, kFirst),
         {}},
        {"a session without a user",
         [](SampleData&, CCallRecord& record) { record.Fail("Session 1: get_user", 1, kFailure); },
         Sample(kMetrics, kSecond),
         {}},
    });
}

TEST_F(SampleTreeModelTest, OfSpoiltAppsTheOthersAreLeft) {
    ExpectLeft({
        {"a failure midway",
         [](SampleData& sample, CCallRecord&) { sample.instances[0].sample.instancesWalk.failAt = 1; },
         Sample(kMetrics, Session(1, kMetrics, kX) + ", " + kSecond),
         {}},
        {"a null key",
         [](SampleData& sample, CCallRecord&) { sample.instances[0].sample.instancesWalk.nullNameAt = 0; },
         Sample(kMetrics, Session(1, kMetrics, kY) + ", " + kSecond),
         {}},
        {"a null instance",
         [](SampleData& sample, CCallRecord&) { sample.instances[1].sample.instancesWalk.nullItemAt = 1; },
         Sample(kMetrics, kFirst + ", " + Session(2, kMetrics, kX)),
         {}},
        {"an untouched pair, then all of them",
         [](SampleData&, CCallRecord& record) { record.LeaveUntouched("Sample/1 instances: Next"); },
         Sample(kMetrics, kBoth),
         {}},
        {"a null enumerator",
         [](SampleData&, CCallRecord& record) { record.GiveNull("Sample/1: get_instances"); },
         Sample(kMetrics, Session(1, kMetrics, "") + ", " + kSecond),
         {}},
        {"no instances to be had",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample/1: get_instances", 1, kFailure); },
         Sample(kMetrics, Session(1, kMetrics, "") + ", " + kSecond),
         {L"Failed to get instances from sample  " + kFailureText}},
        {"metrics that fail midway",
         [](SampleData& sample, CCallRecord&) {
             sample.instances[0].sample.instances[1].sample.metricsWalk.failAt = 1;
         },
         Sample(kMetrics, Session(1, kMetrics, kX + ", " + App("y", R"("a"=1L)")) + ", " + kSecond),
         {}},
        {"metrics that fail at once",
         [](SampleData& sample, CCallRecord&) {
             sample.instances[0].sample.instances[1].sample.metricsWalk.failAt = 0;
         },
         Sample(kMetrics, Session(1, kMetrics, kX) + ", " + kSecond),
         {}},
    });
}

TEST_F(SampleTreeModelTest, WithoutItsTimeOrItsInstancesASampleIsLost) {
    ExpectLeft({
        {"no time",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample: get_time", 1, kFailure); },
         "null",
         {L"Failed to get time from sample  " + kFailureText}},
        {"no instances",
         [](SampleData&, CCallRecord& record) { record.Fail("Sample: get_instances", 1, kFailure); },
         "null",
         {L"Failed to get instances from sample  " + kFailureText}},
    });
}

}  // namespace
