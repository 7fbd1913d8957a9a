#include <climits>
#include <string>
#include <utility>

#include "CDesktopTest.h"
#include "NetworkInterfaceArray.h"
#include "StackObjects.h"
#include "SystemHandles.h"

namespace {

constexpr wchar_t kNoNetworkInterfaces[] =
    L"Failed to get_networkInterfaces in function class std::shared_ptr<class CJavaObject> __cdecl "
    L"CJNIConvertor::GetDesktop(class std::shared_ptr<class CJavaVM>,struct ISystemInfo *)";

using DesktopConversionTest = CDesktopTest;
using DesktopClassTest = CDataConversionTest;

TEST_F(DesktopClassTest, WithoutItThereIsNoDesktopAndTheHostIsNotAsked) {
    const auto system = MakeSystemInfo(Host().ShareRecord(), SystemData{});

    EXPECT_EQ(MakeConvertor().GetDesktop(SharedVM(), system.Get()), nullptr);

    EXPECT_EQ(HostCalls(), Names{});
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(DesktopClassTest, WithoutThatOfInterfacesTheDesktopHasNone) {
    LoadClasses({Binding::DesktopInformation::kClass});
    SystemData data;
    data.networkInterfaces = {{L"one", {}, {}, {}, {}, 0}};
    const auto system = MakeSystemInfo(Host().ShareRecord(), data);

    EXPECT_NE(MakeConvertor().GetDesktop(SharedVM(), system.Get()), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{R"(DesktopInformation.<init>("", ""))", "DesktopInformation.putTotalMemory(0)"}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopConversionTest, ANullSystemIsNoDesktopWithoutAWordOrACall) {
    EXPECT_EQ(MakeConvertor().GetDesktop(SharedVM(), nullptr), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Calls(), Names{});
}

TEST_F(DesktopConversionTest, TheHostIsAskedInOrderAndJavaGetsEverything) {
    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(HostCalls(), s_hostCalls);
    EXPECT_EQ(JavaCalls(), Interfaces({1, 2, 3}));
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopConversionTest, TotalMemoryIsHandedOnUnchanged) {
    for (const LONG memory : {0L, 1L, -1L, LONG_MAX, LONG_MIN}) {
        SystemData data = MakeData();
        data.totalMemory = memory;
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls()[1], "DesktopInformation.putTotalMemory(" + std::to_string(memory) + ")");
    }
}

TEST_F(DesktopConversionTest, WhatTheHostDoesNotSayIsEmptyOrZero) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("System: get_machineName", 1, failure);
        Host().Record().Fail("System: get_FQDN", 1, failure);
        Host().Record().Fail("System: get_totalMemory", 1, failure);
        ForgetJavaCalls();

        EXPECT_NE(Convert(MakeData()), nullptr);

        EXPECT_EQ(CountCalls(JavaCalls(), R"(DesktopInformation.<init>("", ""))"), 1);
        EXPECT_EQ(CountCalls(JavaCalls(), "DesktopInformation.putTotalMemory(0)"), 1);
        EXPECT_EQ(CountCalls(JavaCalls(), "DesktopInformation.addNetworkInterface"), 3);
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopConversionTest, NullNamesAreEmpty) {
    Host().Record().GiveNull("System: get_machineName");
    Host().Record().GiveNull("System: get_FQDN");

    EXPECT_NE(Convert(MakeData()), nullptr);

    EXPECT_EQ(JavaCalls()[0], R"(DesktopInformation.<init>("", ""))");
}

TEST_F(DesktopConversionTest, TheHostsResultsDoNotCountBesideItsAnswers) {
    CStackSystem system;
    system.array = MakeNetworkInterfaceArray(Host().ShareRecord(), {}, {});
    system.getTexts = E_FAIL;
    system.getTotalMemory = E_FAIL;

    EXPECT_NE(MakeConvertor().GetDesktop(SharedVM(), &system), nullptr);

    EXPECT_EQ(JavaCalls(), (Names{R"(DesktopInformation.<init>("the machine's name", "the machine's full name"))",
                                  "DesktopInformation.putTotalMemory(4096)"}));
}

TEST_F(DesktopConversionTest, ANameThatJavaDoesNotTakeEndsIt) {
    struct Case {
        long nth;
        const wchar_t* text;
    };
    for (const Case& c : {Case{1, L"PC"}, Case{2, L"pc.example"}}) {
        Host().Record().ClearCalls();
        Fake().Fail("NewString", c.nth);

        EXPECT_EQ(Convert(MakeData()), nullptr);

        EXPECT_EQ(Host().Errors().back(),
                  L"Failed to create a new Java string for " + std::wstring(c.text) + L".  " + kOutOfMemory);
        EXPECT_EQ(HostCalls(), Names(s_hostCalls.begin(), s_hostCalls.begin() + 3));
    }
    EXPECT_EQ(Host().Errors().size(), 2U);
    EXPECT_EQ(JavaCalls(), Names{});
    ExpectKeptLocals(2);
}

TEST_F(DesktopConversionTest, AConstructorThatThrowsIsLoggedAndMemoryIsNotAskedFor) {
    MakeThrow(Binding::DesktopInformation::kClass, "<init>", "no %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeData()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java desktop object.  no %s%n"});
    EXPECT_EQ(HostCalls(), Names(s_hostCalls.begin(), s_hostCalls.begin() + 3));
}

TEST_F(DesktopConversionTest, MemoryThatCannotBeSetEndsItBeforeTheInterfaces) {
    MakeThrow(Binding::DesktopInformation::kClass, "putTotalMemory", "refused %s%n");
    ExpectKeptLocals(1);

    EXPECT_EQ(Convert(MakeData()), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to set total memory on the Java desktop object.  refused %s%n"});
    EXPECT_EQ(JavaCalls(), s_desktop);
}

// ---- the array ------------------------------------------------------------------------------------------

TEST_F(DesktopConversionTest, AnArrayThatCannotBeHadIsLoggedAndThenThrows) {
    for (const HRESULT failure : kFailures) {
        Host().Record().Fail("System: get_networkInterfaces", 1, failure);
        Host().Record().ClearCalls();
        ForgetJavaCalls();

        EXPECT_EQ(ThrownBy(MakeData()), E_INVALIDARG);

        EXPECT_EQ(Host().Errors().back(), kNoNetworkInterfaces + RunTogether(failure));
        EXPECT_EQ(HostCalls(), s_hostCalls);
        EXPECT_EQ(JavaCalls(), s_desktop) << "the desktop was built";
        EXPECT_EQ(Fake().GetGlobalReferences(), 2) << "and is released";
    }
    EXPECT_EQ(Host().Errors().back(), std::wstring(kNoNetworkInterfaces) + L"Error code 0x8abcdef0.");
    EXPECT_EQ(Host().Errors().size(), std::size(kFailures));
}

TEST_F(DesktopConversionTest, AnArrayThatAFailingHostLeavesBehindIsNotTouched) {
    const CSafeArray array(MakeNetworkInterfaceArray(Host().ShareRecord(), MakeData().networkInterfaces, {}));
    CStackSystem system;
    system.array = array.Get();
    system.getNetworkInterfaces = E_FAIL;

    EXPECT_THROW(static_cast<void>(MakeConvertor().GetDesktop(SharedVM(), &system)), CHresultException);

    EXPECT_EQ(array.Get()->cLocks, 0U);
    EXPECT_EQ(CountCalls(JavaCalls(), "NetworkInterface"), 0);
    EXPECT_EQ(Host().Errors(), Texts{kNoNetworkInterfaces + RunTogether(E_FAIL)});
}

TEST_F(DesktopConversionTest, ANullArrayGivenWithSuccessThrowsWithoutAWord) {
    SystemData data = MakeData();
    data.networkArray.isNull = true;

    EXPECT_EQ(ThrownBy(data), E_INVALIDARG);

    EXPECT_EQ(JavaCalls(), s_desktop);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopConversionTest, ADesktopThatCannotBeBuiltDoesNotLookAtTheArray) {
    Fake().Fail("NewObjectV", 1);
    ExpectKeptLocals(1);
    SystemData data = MakeData();
    data.networkArray.isNull = true;

    EXPECT_EQ(Convert(data), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to create a new Java desktop object.  " + kOutOfMemory});
}

TEST_F(DesktopConversionTest, AnArrayWithoutRecordsAddsNone) {
    SystemData data = MakeData();
    for (const NetworkArrayShape& shape :
         {NetworkArrayShape{false, 56, 2, 0}, NetworkArrayShape{false, 48, 1, 0}, NetworkArrayShape{false, 64, 1, 0}}) {
        data.networkArray = shape;
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(), s_desktop) << shape.elementSize << " " << shape.rank;
    }
    data.networkArray = {};
    data.networkInterfaces.clear();
    ForgetJavaCalls();
    EXPECT_NE(Convert(data), nullptr);
    EXPECT_EQ(JavaCalls(), s_desktop);

    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(DesktopConversionTest, ElementsCountFromTheLowerBound) {
    for (const LONG lowerBound : {1L, -2L, LONG_MIN, LONG_MAX - 2}) {
        SystemData data = MakeData();
        data.networkArray.lowerBound = lowerBound;
        ForgetJavaCalls();

        EXPECT_NE(Convert(data), nullptr);

        EXPECT_EQ(JavaCalls(), Interfaces({1, 2, 3})) << lowerBound;
    }
}

}  // namespace
