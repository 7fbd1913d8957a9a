#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CBstr.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"

namespace {

using NetworkInterfaceClassTest = CDataConversionTest;

TEST_F(NetworkInterfaceClassTest, WithoutItThereIsNoInterface) {
    EXPECT_EQ(MakeConvertor().GetNetworkInterface(SharedVM(), NetworkInterfaceRecord{}), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

struct Setter {
    const char* name;
    const wchar_t* error;
};

// In the order of the calls.
constexpr Setter kSetters[] = {
    {"putMacAddress", L"Failed to set the MAC address on the Java network interface object.  "},
    {"putIpAddress", L"Failed to set the IP address on the Java network interface object.  "},
    {"putSubnetMask", L"Failed to set the subnet mask on the Java network interface object.  "},
    {"putSubnet", L"Failed to set the subnet on the Java network interface object.  "},
    {"putLinkSpeed", L"Failed to set the link speed on the Java network interface object.  "},
};

class NetworkInterfaceConversionTest : public CDataConversionTest {
protected:
    static inline const Names s_whole = {
        R"(NetworkInterface.<init>("the description"))",      R"(NetworkInterface.putMacAddress("the MAC address"))",
        R"(NetworkInterface.putIpAddress("the IP address"))", R"(NetworkInterface.putSubnetMask("the subnet mask"))",
        R"(NetworkInterface.putSubnet("the subnet"))",        "NetworkInterface.putLinkSpeed(-5)"};
    /// In the order in which Java gets them.
    static inline const Texts s_texts = {L"the description", L"the MAC address", L"the IP address", L"the subnet mask",
                                         L"the subnet"};

    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::NetworkInterface::kClass});
        for (const std::wstring& text : s_texts) {
            m_texts.push_back(CBstr::Make(text));
        }
        m_record.reserved = this;  // which nobody reads
        m_record.description = m_texts[0].Get();
        m_record.macAddress = m_texts[1].Get();
        m_record.ipAddress = m_texts[2].Get();
        m_record.subnetMask = m_texts[3].Get();
        m_record.subnet = m_texts[4].Get();
        m_record.linkSpeed = -5;
    }
    void TearDown() override {
        m_texts.clear();
        CDataConversionTest::TearDown();
    }

    [[nodiscard]] NetworkInterfaceRecord& Record() { return m_record; }
    [[nodiscard]] Object Convert() { return MakeConvertor().GetNetworkInterface(SharedVM(), m_record); }

private:
    std::vector<CBstr> m_texts;
    NetworkInterfaceRecord m_record{};
};

TEST_F(NetworkInterfaceConversionTest, TheRecordsFieldsReachTheirSettersInOrder) {
    EXPECT_NE(Convert(), nullptr);

    EXPECT_EQ(JavaCalls(), s_whole);
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(NetworkInterfaceConversionTest, EveryStringIsMadeBeforeTheObject) {
    EXPECT_NE(Convert(), nullptr);

    const Names calls = Calls();
    ASSERT_GT(calls.size(), 6U);
    EXPECT_EQ(Names(calls.begin(), calls.begin() + 6),
              (Names{"NewString", "NewString", "NewString", "NewString", "NewString", "NewObjectV"}));
}

TEST_F(NetworkInterfaceConversionTest, TheLinkSpeedIsHandedOnUnchanged) {
    for (const LONG speed : {0L, 1L, -1L, LONG_MAX, LONG_MIN, 1'000'000'000L}) {
        Record().linkSpeed = speed;

        EXPECT_NE(Convert(), nullptr);

        EXPECT_EQ(JavaCalls().back(), "NetworkInterface.putLinkSpeed(" + std::to_string(speed) + ")");
    }
}

TEST_F(NetworkInterfaceConversionTest, TextsAreHandedOnAsTheyStand) {
    const CBstr ipAddress = CBstr::Make(L" 10.0.0.1, fe80::1%3 \u00e9%s");
    Record().ipAddress = ipAddress.Get();

    EXPECT_NE(Convert(), nullptr);

    EXPECT_EQ(JavaCalls()[2], "NetworkInterface.putIpAddress(" + Quote(L" 10.0.0.1, fe80::1%3 \u00e9%s") + ")");
}

TEST_F(NetworkInterfaceConversionTest, NullTextsAreEmpty) {
    EXPECT_NE(MakeConvertor().GetNetworkInterface(SharedVM(), NetworkInterfaceRecord{}), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{R"(NetworkInterface.<init>(""))", R"(NetworkInterface.putMacAddress(""))",
                                  R"(NetworkInterface.putIpAddress(""))", R"(NetworkInterface.putSubnetMask(""))",
                                  R"(NetworkInterface.putSubnet(""))", "NetworkInterface.putLinkSpeed(0)"}));
}

TEST_F(NetworkInterfaceConversionTest, ATextThatJavaDoesNotTakeEndsItBeforeTheObjectIsMade) {
    for (std::size_t i = 0; i < s_texts.size(); ++i) {
        Fake().Fail("NewString", static_cast<long>(i) + 1);

        EXPECT_EQ(Convert(), nullptr);

        EXPECT_EQ(Host().Errors().back(),
                  L"Failed to create a new Java string for " + s_texts[i] + L".  " + kOutOfMemory);
    }
    EXPECT_EQ(Host().Errors().size(), s_texts.size());
    EXPECT_EQ(Fake().GetCallCount("NewString"), 1 + 2 + 3 + 4 + 5);
    EXPECT_EQ(JavaCalls(), Names{});
    ExpectKeptLocals(5);
}

TEST_F(NetworkInterfaceConversionTest, AConstructorThatThrowsIsLogged) {
    MakeThrow(Binding::NetworkInterface::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java network interface object.  no %s%n"});
    EXPECT_EQ(JavaCalls(), Names{s_whole[0]});
}

TEST_F(NetworkInterfaceConversionTest, TheFirstSetterThatThrowsIsLoggedAndEndsIt) {
    for (std::size_t i = std::size(kSetters); i-- > 0;) {  // the earlier ones come on top of the later
        MakeThrow(Binding::NetworkInterface::kClass, kSetters[i].name, "refused %s%n");
        ForgetJavaCalls();

        EXPECT_EQ(Convert(), nullptr);

        EXPECT_EQ(Host().Errors().back(), kSetters[i].error + std::wstring(L"refused %s%n"));
        EXPECT_EQ(JavaCalls(), Names(s_whole.begin(), s_whole.begin() + static_cast<std::ptrdiff_t>(i) + 2));
        EXPECT_FALSE(Fake().IsExceptionPending());
    }
    EXPECT_EQ(Host().Errors().size(), std::size(kSetters));
    ExpectKeptLocals(5);
}

TEST_F(NetworkInterfaceConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    FailEachJniCall([&] { return Convert(); },
                    [](const FaultRound& round) {
                        EXPECT_EQ(round.object, nullptr) << round.failed;
                        EXPECT_EQ(round.errors.size(), 1U) << round.failed;
                    });
}

TEST_F(NetworkInterfaceConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    MakeThrow(Binding::NetworkInterface::kClass, "putSubnetMask", "refused");
    ExpectKeptLocals(1);

    EXPECT_EQ(MakeConvertorWithoutLogger().GetNetworkInterface(SharedVM(), Record()), nullptr);

    EXPECT_EQ(JavaCalls(), Names(s_whole.begin(), s_whole.begin() + 4));
}

TEST_F(NetworkInterfaceConversionTest, EachAllocationMayFail) {
    const CJNIConvertor convertor = MakeConvertor();

    EXPECT_EQ(FailEachAllocation([&] { return convertor.GetNetworkInterface(SharedVM(), Record()); }), 6);

    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
