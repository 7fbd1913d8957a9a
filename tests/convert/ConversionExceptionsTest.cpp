#include <algorithm>
#include <cstddef>
#include <regex>
#include <string>
#include <vector>

#include "CStandInTest.h"
#include "HostTime.h"

namespace {

constexpr DATE kTime = 25570.0;  // 1970-01-02

/// How messages name a sample by its time.
std::wstring ToSample(DATE time) {
    return L"to sample '" + std::wstring(FormatSampleTime(time).GetView()) + L"'.  ";
}

using JavaCalls = std::vector<std::string>;

/// The calls since they were forgotten, objects named by their class alone.
JavaCalls TellCallsByClass() {
    static const std::regex object(R"(com\.orvane\.[A-Za-z.]*\.([A-Za-z]+)@[0-9a-f]+)");
    JavaCalls calls = TellJavaCalls();
    for (std::string& call : calls) {
        call = std::regex_replace(call, object, "$1");
    }
    return calls;
}

/// A call that throws, and what comes of it.
struct ThrowingCase {
    const char* call;      ///< its beginning
    std::wstring message;  ///< in front of what Java says
    std::size_t leftOut;   ///< as many calls as these, which follow it, are not made then
    bool isLost = false;   ///< the whole conversion's result
};

/// Conversions in which some constructor or method of the data model throws: each says so, and the rest goes on.
class ConversionExceptionsTest : public CStandInTest {
protected:
    /// `convert` makes `allCalls` where nothing throws.
    template <typename Convert>
    void ExpectTheRestGoesOn(const Convert& convert, const JavaCalls& allCalls,
                             const std::vector<ThrowingCase>& cases) {
        ForgetCalls();
        EXPECT_NE(convert(), nullptr);
        EXPECT_FALSE(Env()->ExceptionCheck());
        EXPECT_EQ(TellCallsByClass(), allCalls);
        EXPECT_EQ(Host().Errors(), Texts{});

        for (const ThrowingCase& each : cases) {
            const std::wstring call(each.call, each.call + std::char_traits<char>::length(each.call));
            ForgetCalls();
            Host().ForgetLog();
            ThrowIn(call);

            EXPECT_EQ(convert() == nullptr, each.isLost) << each.call;

            EXPECT_FALSE(Env()->ExceptionCheck()) << each.call;
            const std::size_t thrown = ExpectCallsOf(each, allCalls);
            ExpectErrors(Texts(thrown, each.message + ThrownText(call)));
        }
    }

    /// The errors begin like these.
    void ExpectErrors(const Texts& beginnings) {
        Texts errors = Host().Errors();
        for (std::size_t i = 0; i < std::min(errors.size(), beginnings.size()); ++i) {
            errors[i].resize(std::min(errors[i].size(), beginnings[i].size()));
        }
        EXPECT_EQ(errors, beginnings);
    }

    [[nodiscard]] static std::wstring ThrownText(const std::wstring& call) {
        return L"java.lang.IllegalStateException: ordered: " + call +
               L"\r\n\tcom.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.Calls.note(Calls.java:";
    }

private:
    /// @return how many of the calls threw
    static std::size_t ExpectCallsOf(const ThrowingCase& each, const JavaCalls& allCalls) {
        std::size_t thrown = 0;
        JavaCalls expected;
        for (std::size_t i = 0; i < allCalls.size(); ++i) {
            expected.push_back(allCalls[i]);
            if (allCalls[i].rfind(each.call, 0) == 0) {
                ++thrown;
                i += each.leftOut;
            }
        }
        EXPECT_EQ(TellCallsByClass(), expected) << each.call;
        return thrown;
    }
};

TEST_F(ConversionExceptionsTest, OfASampleAllButWhatThrewIsMade) {
    SampleData app;
    app.time = kTime + 2;
    app.metrics = {{L"app metric", MakeInt(2)}};
    SampleData sessionNode;
    sessionNode.time = kTime + 1;
    sessionNode.metrics = {{L"session metric", MakeDouble(0.5)}};
    sessionNode.instances = {{L"app", app}};
    SampleData sample;
    sample.time = kTime;
    sample.metrics = {{L"number", MakeInt(1)}, {L"text", MakeText(L"t")}};
    sample.instances = {{L"7", sessionNode}};
    SessionData session;
    session.id = 7;
    session.user = L"user";
    session.label = L"HOME\\user";
    session.properties.properties = {{L"p", MakeText(L"v")}, {L"q", MakeText(L"w")}};

    const JavaCalls all = {
        "BaseSample(86400000)",
        "BaseMetric(number)",
        "BaseMetric.putLongValue(1)",
        "BaseSample.putMetric(BaseMetric)",
        "BaseMetric(text)",
        "BaseMetric.putStringValue(t)",
        "BaseSample.putMetric(BaseMetric)",
        "BaseUserSession(7, , user, , true)",
        "BaseUserSession.putProperty(p, v)",
        "BaseUserSession.putProperty(q, w)",
        "BaseMetric(session metric)",
        "BaseMetric.putDoubleValue(0.5)",
        "BaseUserSession.putMetric(BaseMetric)",
        "BaseRemoteApp(app)",
        "BaseMetric(app metric)",
        "BaseMetric.putLongValue(2)",
        "BaseRemoteApp.putMetric(BaseMetric)",
        "BaseUserSession.putRemoteApp(BaseRemoteApp)",
        "BaseSample.putSession(BaseUserSession)",
    };
    const std::wstring noMetric = L"Failed to create a new Java metric object.  ";
    ExpectTheRestGoesOn(
        [&] { return ConvertSample(sample, {session}); }, all,
        {
            {"BaseSample(", L"Failed to create a new Java sample object.  ", all.size(), true},
            {"BaseMetric(number", noMetric, 2},
            {"BaseMetric(text", noMetric, 2},
            {"BaseMetric.putLongValue(1", L"Failed to set the value for metric 'number'.  ", 1},
            {"BaseMetric.putStringValue(", L"Failed to set the value for metric 'text'.  ", 1},
            {"BaseUserSession(", L"Failed to create a new Java user session object.  ", 11},
            {"BaseUserSession.putProperty(p", L"Failed to set user property p for user HOME\\user.  ", 0},
            {"BaseUserSession.putProperty(q", L"Failed to set user property q for user HOME\\user.  ", 0},
            {"BaseMetric(session metric", noMetric, 2},
            {"BaseMetric.putDoubleValue(", L"Failed to set the value for metric 'session metric'.  ", 1},
            {"BaseUserSession.putMetric(", L"Failed to add metric 'session metric' " + ToSample(sessionNode.time), 0},
            {"BaseRemoteApp(", L"Failed to create a new Java remote app object.  ", 4},
            {"BaseMetric(app metric", noMetric, 3},
            {"BaseMetric.putLongValue(2", L"Failed to set the value for metric 'app metric'.  ", 2},
            {"BaseRemoteApp.putMetric(", L"Failed to add metric 'app metric' " + ToSample(app.time), 0},
            {"BaseUserSession.putRemoteApp(", L"Failed to add app 'app' " + ToSample(sessionNode.time), 0},
            {"BaseSample.putSession(", L"Failed to add session '7' " + ToSample(kTime), 0},
        });
}

TEST_F(ConversionExceptionsTest, EveryMetricThatASampleRefusesIsLogged) {
    SampleData sample;
    sample.time = kTime;
    sample.metrics = {{L"a", MakeInt(1)}, {L"a", MakeInt(2)}};

    ExpectTheRestGoesOn(
        [&] { return ConvertSample(sample); },
        {"BaseSample(86400000)", "BaseMetric(a)", "BaseMetric.putLongValue(1)", "BaseSample.putMetric(BaseMetric)",
         "BaseMetric(a)", "BaseMetric.putLongValue(2)", "BaseSample.putMetric(BaseMetric)"},
        {{"BaseSample.putMetric(", L"Failed to add metric 'a' " + ToSample(kTime), 0},
         {"BaseMetric(", L"Failed to create a new Java metric object.  ", 2},
         {"BaseMetric.put", L"Failed to set the value for metric 'a'.  ", 1}});
}

TEST_F(ConversionExceptionsTest, AUserWhoseLabelIsNotToBeHadIsNamedNull) {
    SessionData session;
    session.properties.properties = {{L"p", MakeText(L"v")}};
    ThrowIn(L"BaseUserSession.putProperty(");
    Record()->Fail("IUserSessionInfo::get_userLabel", 1, E_FAIL);

    EXPECT_NE(ConvertSession(session), nullptr);

    ExpectErrors({L"Failed to set user property p for user NULL.  " + ThrownText(L"BaseUserSession.putProperty(")});
}

TEST_F(ConversionExceptionsTest, OfADesktopAllButWhatThrewIsMade) {
    SystemData system;
    system.machineName = L"name";
    system.fqdn = L"fqdn";
    system.totalMemory = 5;
    system.networkInterfaces = {{L"A", L"mac A", L"ip A", L"mask A", L"net A", 1},
                                {L"B", L"mac B", L"ip B", L"mask B", L"net B", 2}};

    const JavaCalls all = {
        "DesktopInformation(name, fqdn)",
        "DesktopInformation.putTotalMemory(5)",
        "NetworkInterface(A)",
        "NetworkInterface.putMacAddress(mac A)",
        "NetworkInterface.putIpAddress(ip A)",
        "NetworkInterface.putSubnetMask(mask A)",
        "NetworkInterface.putSubnet(net A)",
        "NetworkInterface.putLinkSpeed(1)",
        "DesktopInformation.addNetworkInterface(NetworkInterface)",
        "NetworkInterface(B)",
        "NetworkInterface.putMacAddress(mac B)",
        "NetworkInterface.putIpAddress(ip B)",
        "NetworkInterface.putSubnetMask(mask B)",
        "NetworkInterface.putSubnet(net B)",
        "NetworkInterface.putLinkSpeed(2)",
        "DesktopInformation.addNetworkInterface(NetworkInterface)",
    };
    const std::wstring of = L" on the Java network interface object.  ";
    ExpectTheRestGoesOn([&] { return ConvertDesktop(system); }, all,
                        {
                            {"DesktopInformation(", L"Failed to create a new Java desktop object.  ", all.size(), true},
                            {"DesktopInformation.putTotalMemory(",
                             L"Failed to set total memory on the Java desktop object.  ", all.size(), true},
                            {"NetworkInterface(A", L"Failed to create a new Java network interface object.  ", 6},
                            {"NetworkInterface(", L"Failed to create a new Java network interface object.  ", 6},
                            {"NetworkInterface.putMacAddress(mac A", L"Failed to set the MAC address" + of, 5},
                            {"NetworkInterface.putIpAddress(ip A", L"Failed to set the IP address" + of, 4},
                            {"NetworkInterface.putSubnetMask(mask A", L"Failed to set the subnet mask" + of, 3},
                            {"NetworkInterface.putSubnet(net A", L"Failed to set the subnet" + of, 2},
                            {"NetworkInterface.putLinkSpeed(1", L"Failed to set the link speed" + of, 1},
                            {"NetworkInterface.putLinkSpeed(2", L"Failed to set the link speed" + of, 1},
                        });
}

TEST_F(ConversionExceptionsTest, EachAdapterThatADesktopRefusesIsLoggedByItsDescription) {
    SystemData system;
    system.networkInterfaces = {{L"A"}, {L"B"}};
    ThrowIn(L"DesktopInformation.addNetworkInterface(");

    EXPECT_NE(ConvertDesktop(system), nullptr);

    const std::wstring rest =
        L" to the Java desktop object.  " + ThrownText(L"DesktopInformation.addNetworkInterface(");
    ExpectErrors({L"Failed to add network interface 'A'" + rest, L"Failed to add network interface 'B'" + rest});
}

TEST_F(ConversionExceptionsTest, OfExtendedMetricsAllButWhatThrewAreMade) {
    const std::vector<NameValueData> metrics = {
        MakeExtendedMetric(L"disk", {{L"C:", MakeInt(1)}, {L"D:", MakeText(L"t")}}),
        MakeExtendedMetric(L"cpu", {{L"0", MakeDouble(0.5)}}),
    };
    const JavaCalls all = {
        "BaseSample(86400000)",
        "BaseMetric(disk)",
        "BaseMetric(C:)",
        "BaseMetric.putLongValue(1)",
        "BaseMetric.addInstance(BaseMetric)",
        "BaseMetric(D:)",
        "BaseMetric.putStringValue(t)",
        "BaseMetric.addInstance(BaseMetric)",
        "BaseSample.putMetric(BaseMetric)",
        "BaseMetric(cpu)",
        "BaseMetric(0)",
        "BaseMetric.putDoubleValue(0.5)",
        "BaseMetric.addInstance(BaseMetric)",
        "BaseSample.putMetric(BaseMetric)",
    };
    const std::wstring noMetric = L"Failed to create a new Java metric object.  ";
    ExpectTheRestGoesOn([&] { return ConvertExtendedSample(kTime, metrics); }, all,
                        {
                            {"BaseSample(", L"Failed to create a new Java sample object.  ", all.size(), true},
                            {"BaseMetric(disk", noMetric, 7},
                            {"BaseMetric(C:", noMetric, 2},
                            {"BaseMetric.putLongValue(", L"Failed to set the value for metric 'C:'.  ", 1},
                            {"BaseMetric.putStringValue(", L"Failed to set the value for metric 'D:'.  ", 1},
                            {"BaseMetric.putDoubleValue(", L"Failed to set the value for metric '0'.  ", 1},
                        });
}

TEST_F(ConversionExceptionsTest, EachInstanceThatAMetricRefusesIsLoggedWithBothNames) {
    ForgetCalls();
    ThrowIn(L"BaseMetric.addInstance(");

    EXPECT_NE(ConvertExtendedSample(kTime, {MakeExtendedMetric(L"disk", {{L"C:", MakeInt(1)}, {L"D:", MakeInt(2)}})}),
              nullptr);

    const std::wstring rest = L" to metric 'disk'.  " + ThrownText(L"BaseMetric.addInstance(");
    ExpectErrors({L"Failed to add instance 'C:'" + rest, L"Failed to add instance 'D:'" + rest});
    EXPECT_EQ(TellCallsByClass().back(), "BaseSample.putMetric(BaseMetric)");
}

TEST_F(ConversionExceptionsTest, EachExtendedMetricThatASampleRefusesIsLogged) {
    ThrowIn(L"BaseSample.putMetric(");

    EXPECT_NE(ConvertExtendedSample(kTime, {MakeExtendedMetric(L"A", {}), MakeExtendedMetric(L"B", {})}), nullptr);

    const std::wstring rest = ToSample(kTime) + ThrownText(L"BaseSample.putMetric(");
    ExpectErrors({L"Failed to add metric 'A' " + rest, L"Failed to add metric 'B' " + rest});
}

}  // namespace
