#include <string>
#include <utility>
#include <vector>

#include "CDesktopTest.h"
#include "NetworkInterfaceArray.h"
#include "StackObjects.h"
#include "SystemHandles.h"

namespace {

using DesktopInterfacesTest = CDesktopTest;

TEST_F(DesktopInterfacesTest, AnInterfaceWhoseSetterThrowsIsLeftOutAndTheOthersAreAdded) {
    // The second interface's setters are the void calls after total memory, five setters, and the first one's addition.
    const char* const kErrors[] = {"the MAC address", "the IP address", "the subnet mask", "the subnet",
                                   "the link speed"};
    for (long setter = 0; setter < 5; ++setter) {
        Fake().Fail("CallVoidMethodV", 8 + setter);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData()), nullptr);

        const std::string field = kErrors[setter];
        EXPECT_EQ(Host().Errors().back(), L"Failed to set " + std::wstring(field.begin(), field.end()) +
                                              L" on the Java network interface object.  " + kOutOfMemory);
        Names expected = Interfaces({1, 2, 3});
        const auto second = expected.begin() + 2 + 7;
        expected.erase(second + 1 + setter, second + 7);
        EXPECT_EQ(JavaCalls(), expected) << field;
    }
    EXPECT_EQ(Host().Errors().size(), 5U);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
}

TEST_F(DesktopInterfacesTest, AnInterfaceThatJavaHasNoTextForIsLeftOut) {
    Fake().Fail("NewString", 2 + 5 + 3);

    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java string for i2.  " + kOutOfMemory});
    EXPECT_EQ(JavaCalls(), Interfaces({1, 3}));
}

TEST_F(DesktopInterfacesTest, AnInterfaceThatCannotBeAddedIsLoggedWithItsDescription) {
    MakeThrow(Binding::DesktopInformation::kClass, "addNetworkInterface", "refused %s%n");
    SystemData data = MakeData();
    data.networkInterfaces[1].description = L"100%s";
    data.networkInterfaces[2].description = L"";

    EXPECT_NE(Convert(data), nullptr);

    EXPECT_EQ(Host().Errors(),
              (Texts{L"Failed to add network interface 'one' to the Java desktop object.  refused %s%n",
                     L"Failed to add network interface '100%s' to the Java desktop object.  refused %s%n",
                     L"Failed to add network interface '' to the Java desktop object.  refused %s%n"}));
    EXPECT_EQ(CountCalls(JavaCalls(), "DesktopInformation.addNetworkInterface"), 3);
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(DesktopInterfacesTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto system = MakeSystemInfo(Host().ShareRecord(), MakeData());

    FailEachJniCall([&] { return MakeConvertor().GetDesktop(SharedVM(), system.Get()); },
                    [](const FaultRound& round) {
                        const long added = CountCalls(round.calls, "DesktopInformation.addNetworkInterface");
                        if (round.isOnce) {
                            const bool isFrame = round.failed == "PushLocalFrame";
                            EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
                            EXPECT_EQ(added, !round.object ? 0 : isFrame ? 3 : 2) << round.failed;
                        }
                        EXPECT_TRUE(round.object || added == 0);
                    });
}

TEST_F(DesktopInterfacesTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto system = MakeSystemInfo(Host().ShareRecord(), MakeData());
    for (const char* const method : {"addNetworkInterface", "putTotalMemory", "<init>"}) {
        MakeThrow(Binding::DesktopInformation::kClass, method, "refused");
        ForgetJavaCalls();
        const Object logged = MakeConvertor().GetDesktop(SharedVM(), system.Get());
        const Names calls = JavaCalls();
        Host().Record().ClearCalls();
        ForgetJavaCalls();

        const Object unlogged = MakeConvertorWithoutLogger().GetDesktop(SharedVM(), system.Get());

        EXPECT_EQ(unlogged == nullptr, logged == nullptr) << method;
        EXPECT_EQ(JavaCalls(), calls) << method;
        EXPECT_EQ(Host().Record().CountCalls("Logger*"), 0) << method;
    }
    ExpectKeptLocals(4);
}

TEST_F(DesktopInterfacesTest, AThousandRefusedInterfacesDoNotFillTheFrame) {
    MakeThrow(Binding::DesktopInformation::kClass, "addNetworkInterface", "refused");
    SystemData data = MakeData();
    data.networkInterfaces.resize(1000);

    EXPECT_NE(Convert(std::move(data)), nullptr);

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Host().Errors().size(), 1000U);
}

/// The same for a desktop of one adapter with a long description.
class DesktopMemoryTest : public DesktopInterfacesTest {
protected:
    [[nodiscard]] long FailEachAllocation(const CJNIConvertor& convertor) {
        std::vector<NetworkInterfaceData> interfaces = MakeData().networkInterfaces;
        interfaces.pop_back();
        interfaces[0].description = L"a description that is longer than a short text";
        const CSafeArray array(MakeNetworkInterfaceArray(Host().ShareRecord(), interfaces, {}));
        CStackSystem system;

        return DesktopInterfacesTest::FailEachAllocation([&] {
            EXPECT_EQ(SafeArrayCopy(array.Get(), &system.array), S_OK);  // the convertor destroys the copy
            return convertor.GetDesktop(SharedVM(), &system);
        });
    }
};

TEST_F(DesktopMemoryTest, EachAllocationMayFail) {
    EXPECT_EQ(FailEachAllocation(MakeConvertor()), 7);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopMemoryTest, EachAllocationMayFailWhereJavaRefusesTheAdapter) {
    MakeThrow(Binding::DesktopInformation::kClass, "addNetworkInterface", "a reason that is longer than a short text");

    EXPECT_EQ(FailEachAllocation(MakeConvertorWithoutLogger()), 12);
}

}  // namespace
