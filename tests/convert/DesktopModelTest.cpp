#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "CHresultException.h"
#include "CModelTest.h"

namespace {

const NetworkInterfaceData kCable{L"Cable", L"00-11-22", L"10.0.0.2", L"255.0.0.0", L"10.0.0.0", 1000};
const NetworkInterfaceData kRadio{L"R\u00e4dio", L"", L"fe80::1", L"\U0001f600", std::wstring(L"a\0b", 3), -1};
const std::string kCableText = R"(NetworkInterface(description="Cable", macAddress="00-11-22", ipAddress="10.0.0.2", )"
                               R"(subnetMask="255.0.0.0", subnet="10.0.0.0", linkSpeed=1000))";
const std::string kRadioText = R"(NetworkInterface(description="R\u00e4dio", macAddress="", ipAddress="fe80::1", )"
                               R"(subnetMask="\ud83d\ude00", subnet="a\u0000b", linkSpeed=-1))";
const std::string kBothTexts = kCableText + ", " + kRadioText;

/// Desktops as the data model holds them.
class DesktopModelTest : public CModelTest {
protected:
    [[nodiscard]] static SystemData MakeSystem(std::vector<NetworkInterfaceData> networkInterfaces) {
        SystemData system;
        system.machineName = L"desk";
        system.fqdn = L"desk.example.com";
        system.totalMemory = 16384;
        system.networkInterfaces = std::move(networkInterfaces);
        return system;
    }
    [[nodiscard]] static std::string Desktop(const std::string& networkInterfaces) {
        return R"(DesktopInformation(name="desk", fqdn="desk.example.com", totalMemory=16384, networkInterfaces=[)" +
               networkInterfaces + "])";
    }

    /// What GetDesktop throws, S_OK where it does not.
    [[nodiscard]] HRESULT ThrownFor(SystemData system) {
        try {
            EXPECT_EQ(ConvertDesktop(std::move(system)), nullptr);
            return S_OK;
        } catch (const CHresultException& thrown) {
            return thrown.GetResult();
        }
    }
};

TEST_F(DesktopModelTest, EveryFieldOfEveryAdapterArrivesInOrder) {
    const std::string told = TellDesktop(ConvertDesktop(MakeSystem({kCable, kRadio, kCable})));

    EXPECT_EQ(told, Desktop(kBothTexts + ", " + kCableText));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, WithoutAdaptersADesktopHasNone) {
    EXPECT_EQ(TellDesktop(ConvertDesktop(MakeSystem({}))), Desktop(""));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, AdaptersAreCountedFromTheArraysLowerBound) {
    for (const LONG lowerBound : {5L, -5L, 1L, std::numeric_limits<LONG>::max() - 1}) {
        SystemData system = MakeSystem({kCable, kRadio});
        system.networkArray.lowerBound = lowerBound;

        EXPECT_EQ(TellDesktop(ConvertDesktop(system)), Desktop(kBothTexts)) << lowerBound;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, AnEmptyArrayOfAnyLowerBoundHasNoAdapters) {
    for (const LONG lowerBound : {5L, -5L}) {
        SystemData system = MakeSystem({});
        system.networkArray.lowerBound = lowerBound;

        EXPECT_EQ(TellDesktop(ConvertDesktop(system)), Desktop("")) << lowerBound;
    }
}

TEST_F(DesktopModelTest, AnArrayOfSomethingElseHasNoAdapters) {
    NetworkArrayShape twoDimensions;
    twoDimensions.rank = 2;
    NetworkArrayShape smallElements;
    smallElements.elementSize = 48;
    NetworkArrayShape greatElements;
    greatElements.elementSize = 64;
    for (const NetworkArrayShape& shape : {twoDimensions, smallElements, greatElements}) {
        SystemData system = MakeSystem({kCable, kRadio});
        system.networkArray = shape;

        EXPECT_EQ(TellDesktop(ConvertDesktop(system)), Desktop("")) << shape.rank << ", " << shape.elementSize;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, AnAdapterWithoutTextsHasEmptyOnes) {
    NetworkInterfaceRecord record{};
    record.linkSpeed = std::numeric_limits<LONG>::min();

    const auto converted = MakeConvertor().GetNetworkInterface(SharedVM(), record);

    EXPECT_EQ(TellNetworkInterface(converted),
              R"(NetworkInterface(description="", macAddress="", ipAddress="", subnetMask="", subnet="", )"
              "linkSpeed=-2147483648)");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, NamesThatTheHostDoesNotGiveAreEmpty) {
    struct Case {
        const char* what;
        void (CCallRecord::*spoil)(const std::string& pattern, long nth, long times);
    };
    for (const Case& each : {Case{"null", &CCallRecord::GiveNull}, Case{"untouched", &CCallRecord::LeaveUntouched}}) {
        for (const char* const getter : {"get_machineName", "get_FQDN", "get_totalMemory"}) {
            ((*Record()).*each.spoil)(std::string("ISystemInfo::") + getter, 1, 1);
        }

        EXPECT_EQ(TellDesktop(ConvertDesktop(MakeSystem({kCable}))),
                  R"(DesktopInformation(name="", fqdn="", totalMemory=0, networkInterfaces=[)" + kCableText + "])")
            << each.what;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, NamesThatTheHostFailsToGiveAreEmptyToo) {
    Record()->Fail("ISystemInfo::get_machineName", 1, kFailure);
    Record()->Fail("ISystemInfo::get_FQDN", 1, kFailure);
    Record()->Fail("ISystemInfo::get_totalMemory", 1, kFailure);

    const std::string told = TellDesktop(ConvertDesktop(MakeSystem({kCable})));

    EXPECT_EQ(told, R"(DesktopInformation(name="", fqdn="", totalMemory=0, networkInterfaces=[)" + kCableText + "])");
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopModelTest, MemoryAndLinkSpeedAreAnyJavaInt) {
    for (const LONG value : {0L, -1L, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()}) {
        NetworkInterfaceData adapter;
        adapter.linkSpeed = value;
        SystemData system = MakeSystem({adapter});
        system.totalMemory = value;

        std::string expected =
            R"(DesktopInformation(name="desk", fqdn="desk.example.com", totalMemory=#, networkInterfaces=[)"
            R"(NetworkInterface(description="", macAddress="", ipAddress="", subnetMask="", subnet="", linkSpeed=#)]))";
        for (std::size_t at = expected.find('#'); at != std::string::npos; at = expected.find('#')) {
            expected.replace(at, 1, std::to_string(value));
        }
        EXPECT_EQ(TellDesktop(ConvertDesktop(system)), expected);
    }
}

TEST_F(DesktopModelTest, AnArrayThatIsNotThereHasNoBoundsAndThatIsThrown) {
    SystemData system = MakeSystem({});
    system.networkArray.isNull = true;

    EXPECT_EQ(ThrownFor(system), E_INVALIDARG);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(TakeException(), L"none");
}

TEST_F(DesktopModelTest, AnArrayThatTheHostFailsToGiveIsLoggedAndThrownAsOneThatIsNotThere) {
    Record()->Fail("ISystemInfo::get_networkInterfaces", 1, kFailure);

    EXPECT_EQ(ThrownFor(MakeSystem({kCable})), E_INVALIDARG);

    EXPECT_EQ(Host().Errors(),
              Texts{L"Failed to get_networkInterfaces in function class std::shared_ptr<class CJavaObject> __cdecl "
                    L"CJNIConvertor::GetDesktop(class std::shared_ptr<class CJavaVM>,struct ISystemInfo *)" +
                    kFailureText});
    EXPECT_EQ(TakeException(), L"none");
}

}  // namespace
