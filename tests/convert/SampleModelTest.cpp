#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "CModelTest.h"
#include "HostTime.h"

namespace {

/// Whole samples as the data model holds them. What hostile trees leave of theirs is in SampleTreeModelTest.cpp.
class SampleModelTest : public CModelTest {
protected:
    static constexpr DATE kTime = 25570.0;  // 1970-01-02
    static constexpr double kSecond = 1.0 / 86400;

    [[nodiscard]] std::string ConvertTime(DATE time) {
        SampleData sample;
        sample.time = time;
        return TellSample(ConvertSample(sample));
    }
    [[nodiscard]] static std::string EmptySample(const std::string& time) {
        return "Sample(time=" + time + "L, metrics=[], sessions=[])";
    }

    /// A sample with one instance under `key`, and the sessions 0, 7 and -1.
    [[nodiscard]] std::string ConvertKey(const std::wstring& key) {
        SampleData sample;
        sample.instances = {{key, {}}};
        std::vector<SessionData> sessions(3);
        sessions[0].id = 0;
        sessions[1].id = 7;
        sessions[2].id = -1;
        return TellSample(ConvertSample(sample, sessions));
    }
    [[nodiscard]] static std::string SampleWithSession(const std::string& id) {
        return R"(Sample(time=1842465245770000L, metrics=[], sessions=[UserSession(id=)" + id +
               R"(, sid="", user="", domain="", connected=true, properties={}, metrics=[], remoteApps=[])]))";
    }
};

std::vector<MetricData> MakeMetricsOfEveryType() {
    return {
        {L"i2", MakeShort(-32768)},
        {L"i4", MakeInt(-2)},
        {L"r4", MakeFloat(0.1F)},
        {L"r8", MakeDouble(-0.25)},
        {L"bstr", MakeText(L"gr\u00fc\u00df")},
        {L"ui2", MakeScalar(VT_UI2, 65535)},
        {L"ui4", MakeUnsigned(4294967295)},
        {L"i8", MakeInt64(std::numeric_limits<LONGLONG>::min())},
        {L"ui8", MakeScalar(VT_UI8, 0xFFFFFFFFFFFFFFFF)},
    };
}

constexpr char kMetricsOfEveryType[] =
    R"(["i2"=-32768L, "i4"=-2L, "r4"=0.10000000149011612, "r8"=-0.25, "bstr"="gr\u00fc\u00df", "ui2"=65535L, )"
    R"("ui4"=4294967295L, "i8"=-9223372036854775808L, "ui8"=-1L])";

InstanceData MakeApp(const wchar_t* id, std::vector<MetricData> metrics) {
    SampleData app;
    app.metrics = std::move(metrics);
    return {id, app};
}

TEST_F(SampleModelTest, ATreeArrivesWholeAndInItsOrder) {
    SampleData connected;
    connected.metrics = MakeMetricsOfEveryType();
    connected.instances = {MakeApp(L"editor", MakeMetricsOfEveryType()), MakeApp(L"mail", {{L"cpu", MakeInt(3)}})};
    SampleData disconnected;
    disconnected.metrics = {{L"idle", MakeText(L"yes")}};
    disconnected.instances = {MakeApp(L"game", {{L"cpu", MakeDouble(1.5)}})};
    SampleData sample;
    sample.time = kTime;
    sample.metrics = MakeMetricsOfEveryType();
    sample.instances = {{L"42", connected}, {L"7", disconnected}};
    SessionData first;
    first.id = 42;
    first.sid = L"S-1-5-21";
    first.user = L"anna";
    first.domain = L"HOME";
    first.properties.properties = {{L"client", MakeText(L"desk")}, {L"colours", MakeInt(32)}};
    SessionData second;
    second.id = 7;
    second.sid = L"S-1-5-22";
    second.user = L"\u65e5\u672c";
    second.domain = L"AWAY";
    second.state = 4;

    const std::string told = TellSample(ConvertSample(sample, {second, first}));

    const std::string metrics = kMetricsOfEveryType;
    EXPECT_EQ(
        told,
        "Sample(time=86400000L, metrics=" + metrics +
            R"(, sessions=[UserSession(id=42, sid="S-1-5-21", user="anna", domain="HOME", connected=true, )" +
            R"(properties={"client"="desk", "colours"="32"}, metrics=)" + metrics +
            R"(, remoteApps=[RemoteApp(id="editor", properties={}, metrics=)" + metrics +
            R"(), RemoteApp(id="mail", properties={}, metrics=["cpu"=3L])]), )" +
            R"(UserSession(id=7, sid="S-1-5-22", user="\u65e5\u672c", domain="AWAY", connected=false, properties={}, )" +
            R"(metrics=["idle"="yes"], remoteApps=[RemoteApp(id="game", properties={}, metrics=["cpu"=1.5])])]))");
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Host().Details(), (Texts{L"Adding remote app to sample: 'editor'", L"Adding remote app to sample: 'mail'",
                                       L"Adding session to sample: '42'", L"Adding remote app to sample: 'game'",
                                       L"Adding session to sample: '7'"}));
}

TEST_F(SampleModelTest, WhatATreeHasTwiceArrivesTwice) {
    SampleData session;
    session.instances = {MakeApp(L"a", {{L"m", MakeInt(1)}}), MakeApp(L"a", {{L"m", MakeInt(2)}})};
    SampleData sample;
    sample.time = kTime;
    sample.metrics = {{L"m", MakeInt(1)}, {L"m", MakeInt(1)}};
    sample.instances = {{L"0", session}, {L"0", {}}};

    const std::string told = TellSample(ConvertSample(sample, {SessionData()}));

    const std::string user = R"(UserSession(id=0, sid="", user="", domain="", connected=true, properties={}, )";
    EXPECT_EQ(told, R"(Sample(time=86400000L, metrics=["m"=1L, "m"=1L], sessions=[)" + user +
                        R"(metrics=[], remoteApps=[RemoteApp(id="a", properties={}, metrics=["m"=1L]), )" +
                        R"(RemoteApp(id="a", properties={}, metrics=["m"=2L])]), )" + user +
                        "metrics=[], remoteApps=[])])");
}

TEST_F(SampleModelTest, ATimeIsMillisecondsOfWholeSeconds) {
    EXPECT_EQ(ConvertTime(25569.0), EmptySample("0"));
    EXPECT_EQ(ConvertTime(25569.0 + 1.4 * kSecond), EmptySample("1000"));
    EXPECT_EQ(ConvertTime(45351.0 + 45296.3 * kSecond), EmptySample("1709210096000")) << "2024-02-29 12:34:56";
    EXPECT_EQ(ConvertTime(50425.0), EmptySample("2147558400000"));
    EXPECT_EQ(ConvertTime(2958465.0), EmptySample("253402214400000")) << "9999-12-31";
    EXPECT_EQ(ConvertTime(2958465.0 + 86399 * kSecond), EmptySample("253402300799000"));
}

TEST_F(SampleModelTest, ATimeBefore1970HasWrapped) {
    EXPECT_EQ(ConvertTime(25569.0 - kSecond), EmptySample("1844674407369000"));
    EXPECT_EQ(ConvertTime(25568.0), EmptySample("1844674320970000"));
    EXPECT_EQ(ConvertTime(0.0), EmptySample("1842465245770000")) << "1899-12-30";
}

TEST_F(SampleModelTest, ATimeThatIsNoDateOrBeforeTheFirstFileTimeCountsAs1601) {
    EXPECT_EQ(ConvertTime(-109206.0), EmptySample("1833029933770000")) << "1600-12-31";
    EXPECT_EQ(ConvertTime(-657434.0), EmptySample("1833029933770000")) << "0100-01-01";
    EXPECT_EQ(ConvertTime(2958466.0), EmptySample("1833029933770000")) << "the day after the last";
    EXPECT_EQ(ConvertTime(1e300), EmptySample("1833029933770000"));
}

TEST_F(SampleModelTest, ATimeThatIsNoNumberIsWhatTheSystemMakesOfIt) {
    for (const DATE time : {static_cast<DATE>(std::nan("")), std::numeric_limits<DATE>::infinity(),
                            -std::numeric_limits<DATE>::infinity()}) {
        EXPECT_EQ(ConvertTime(time), EmptySample(std::to_string(DateToUnixSeconds(time) * 1000))) << time;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleModelTest, AKeyNamesTheSessionOfTheNumberThatItBeginsWith) {
    EXPECT_EQ(ConvertKey(L"7"), SampleWithSession("7"));
    EXPECT_EQ(ConvertKey(L"-1"), SampleWithSession("-1"));
    EXPECT_EQ(ConvertKey(L"7 and more"), SampleWithSession("7"));
    EXPECT_EQ(ConvertKey(L"console"), SampleWithSession("0"));
    EXPECT_EQ(ConvertKey(L""), SampleWithSession("0"));
    EXPECT_EQ(ConvertKey(L"0x7"), SampleWithSession("0")) << "decimal numbers alone";
}

TEST_F(SampleModelTest, AnInstanceWithoutASessionIsLeftOutSilently) {
    EXPECT_EQ(ConvertKey(L"8"), EmptySample("1842465245770000"));

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Host().Details(), Texts{});
}

TEST_F(SampleModelTest, WithoutACollectionOfSessionsASampleHasNone) {
    SampleData sample;
    sample.time = kTime;
    sample.metrics = {{L"m", MakeInt(1)}};
    sample.instances = {{L"7", {}}};
    const auto node = MakeSampleNode(Record(), sample);

    const auto converted = MakeConvertor().GetSample(SharedVM(), node.Get(), nullptr);

    EXPECT_EQ(TellSample(converted), R"(Sample(time=86400000L, metrics=["m"=1L], sessions=[]))");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleModelTest, AnAppOfNoMetricOrOfInvalidOnesAloneIsLeftOut) {
    SampleData session;
    session.instances = {MakeApp(L"none", {}), MakeApp(L"invalid", {{L"flag", MakeBool(true)}}),
                         MakeApp(L"some", {{L"flag", MakeBool(true)}, {L"m", MakeInt(1)}})};
    SampleData sample;
    sample.time = kTime;
    sample.instances = {{L"0", session}};

    const std::string told = TellSample(ConvertSample(sample, {SessionData()}));

    EXPECT_EQ(told, R"(Sample(time=86400000L, metrics=[], sessions=[UserSession(id=0, sid="", user="", domain="", )"
                    R"(connected=true, properties={}, metrics=[], )"
                    R"(remoteApps=[RemoteApp(id="some", properties={}, metrics=["m"=1L])])]))");
    EXPECT_EQ(Host().Errors(), (Texts{L"Invalid type for metric 'flag'.", L"Invalid type for metric 'flag'."}));
    EXPECT_EQ(Host().Details(), (Texts{L"Adding remote app to sample: 'some'", L"Adding session to sample: '0'"}));
}

}  // namespace
