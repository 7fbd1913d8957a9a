#include "BindingTable.h"
#include "CFakeBridgeTest.h"
#include "CRegisteredServer.h"

namespace {

constexpr char kGetHostObject[] = "IHostServiceProvider::GetHostObject";

/// The manager's start and end between a host and the fake runtime; the same on the real one is in
/// ManagerStartTest.cpp.
class CRMICommManagerImplTest : public CFakeBridgeTest {
protected:
    long CountFetches() { return Host().Record().CountCalls(kGetHostObject); }
};

TEST_F(CRMICommManagerImplTest, TheHostsObjectsAreFetchedAndTheJavaSideStarted) {
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), S_OK);

    EXPECT_EQ(CountFetches(), 2);
    EXPECT_EQ(Fake().GetMachinesAlive(), 1);
    EXPECT_EQ(Logged().back(), L"info: Initialized communication manager.");
    manager.Dispose();
}

TEST_F(CRMICommManagerImplTest, AHostWithoutALoggerObjectFailsTheStartWithoutAWord) {
    Host().Services().SetResult(IHostLogger::kId, E_ACCESSDENIED);
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), E_ACCESSDENIED);

    EXPECT_EQ(CountFetches(), 1) << "the system information is not asked for";
    EXPECT_EQ(Logged(), Texts{});
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 0);
}

TEST_F(CRMICommManagerImplTest, AHostThatGivesNoLoggerIsServedWithoutALog) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), S_OK);

    EXPECT_EQ(Fake().GetMachinesAlive(), 1);
    EXPECT_EQ(Host().Record().CountCalls("Logger"), 0);
    manager.Dispose();
}

TEST_F(CRMICommManagerImplTest, WithoutALoggerAFailureGivesTheSameResult) {
    Host().Services().Set(IHostLogger::kId, nullptr);
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);
    EXPECT_EQ(CRMICommManagerImpl(Slots()).Initialize(), E_ACCESSDENIED);

    Host().Services().SetResult(ISystemInfo::kId, S_OK);
    Host().Services().Set(ISystemInfo::kId, MakeSystemInfo(Host().ShareRecord(), {}).Get());
    Fake().RemoveClass(Binding::BaseMetric::kClass);
    EXPECT_EQ(CRMICommManagerImpl(Slots()).Initialize(), E_FAIL);
}

TEST_F(CRMICommManagerImplTest, AHostWithoutSystemInformationFailsTheStart) {
    Host().Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), E_ACCESSDENIED);

    EXPECT_EQ(Logged(),
              Texts{L"error: Failed to get system info in long __cdecl CRMICommManagerImpl::Initialize(void)" +
                    ErrorText(E_ACCESSDENIED)});
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 0);
}

TEST_F(CRMICommManagerImplTest, AHostThatGivesNoSystemInformationFailsTheStart) {
    Host().Services().Set(ISystemInfo::kId, nullptr);
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), E_POINTER);
    EXPECT_EQ(Logged(),
              Texts{L"error: Failed to get system info in long __cdecl CRMICommManagerImpl::Initialize(void)" +
                    ErrorText(E_POINTER)});
}

TEST_F(CRMICommManagerImplTest, WithoutTheServiceObjectTheStartFailsWithComsError) {
    const CServerRegistrationLock nobodyRegisters;
    Unregister();
    CRMICommManagerImpl manager(Slots());

    EXPECT_EQ(manager.Initialize(), REGDB_E_CLASSNOTREG);
}

TEST_F(CRMICommManagerImplTest, ASecondStartAfterASuccessReturnsZeroAndDoesNothing) {
    CRMICommManagerImpl manager(Slots());
    ASSERT_EQ(manager.Initialize(), S_OK);
    const long calls = Fake().GetCallLogSize();
    const std::size_t logged = Logged().size();

    EXPECT_EQ(manager.Initialize(), S_OK);

    EXPECT_EQ(CountFetches(), 2) << "the objects are held";
    EXPECT_EQ(Fake().GetCallLogSize(), calls);
    EXPECT_EQ(Logged().size(), logged);
    manager.Dispose();
}

TEST_F(CRMICommManagerImplTest, ASecondStartAfterAFailedMachineReturnsZeroAndDoesNothing) {
    Fake().SetCreateResult(JNI_ENOMEM);
    CRMICommManagerImpl manager(Slots());
    ASSERT_EQ(manager.Initialize(), E_FAIL);
    Fake().SetCreateResult(JNI_OK);

    EXPECT_EQ(manager.Initialize(), S_OK);
    EXPECT_EQ(Fake().GetCallCount("JNI_CreateJavaVM"), 1);
}

TEST_F(CRMICommManagerImplTest, AStartAfterAHostObjectFailedFetchesWhatIsMissingAlone) {
    Host().Record().Fail(kGetHostObject, 2, E_ACCESSDENIED);
    CRMICommManagerImpl manager(Slots());
    ASSERT_EQ(manager.Initialize(), E_ACCESSDENIED);

    EXPECT_EQ(manager.Initialize(), S_OK);
    EXPECT_EQ(CountFetches(), 3);
    manager.Dispose();
}

TEST_F(CRMICommManagerImplTest, WhatAFailedStartLeftBehindIsReleasedWithTheManager) {
    Fake().RemoveClass(Binding::HashMap::kClass);
    long calls = 0;
    {
        CRMICommManagerImpl manager(Slots());
        ASSERT_EQ(manager.Initialize(), E_FAIL);
        calls = Fake().GetCallLogSize();
    }

    EXPECT_EQ(Fake().GetCallLogSize(), calls) << "without calling Java; the host's objects the fixture looks after";
}

TEST_F(CRMICommManagerImplTest, TheManagersEndCallsNoJava) {
    auto manager = std::make_unique<CRMICommManagerImpl>(Slots());
    ASSERT_EQ(manager->Initialize(), S_OK);
    const long calls = Fake().GetCallLogSize();

    manager.reset();

    EXPECT_EQ(Fake().GetCallLogSize(), calls);
}

TEST_F(CRMICommManagerImplTest, DisposingTwiceDisposesTheClientOnce) {
    CRMICommManagerImpl manager(Slots());
    ASSERT_EQ(manager.Initialize(), S_OK);

    manager.Dispose();
    manager.Dispose();

    EXPECT_EQ(Fake().GetCallCount("CallVoidMethodV"), 1);
    EXPECT_EQ(Fake().GetGlobalReferences(), 0);
}

TEST_F(CRMICommManagerImplTest, EachCallOfTheHostsMayFail) {
    long fired = 1;
    for (long nth = 1; fired != 0; ++nth) {
        Fake().Reset();
        const long before = Host().Record().CountFiredFaults();
        Host().Record().Fail("*", nth, E_ACCESSDENIED);
        CRMICommManagerImpl manager(Slots());

        const long started = manager.Initialize();

        fired = Host().Record().CountFiredFaults() - before;
        Host().Record().ClearFaults();
        EXPECT_TRUE(started == S_OK || started == E_ACCESSDENIED) << nth;
        EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
        manager.Dispose();
        EXPECT_EQ(Fake().GetGlobalReferences(), 0) << nth;
    }
}

}  // namespace
