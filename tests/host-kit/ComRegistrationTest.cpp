#include <objbase.h>

#include "CHost.h"
#include "CInProcessClassObject.h"
#include "CRegisteredServer.h"
#include "HostKitFixture.h"
#include "RunOnNewThread.h"
#include "ServiceClass.h"

namespace {

// As the library creates the service object: in whatever server there is.
constexpr DWORD kAnyServer = 0x17;

class CApartment {
public:
    explicit CApartment(DWORD model) { EXPECT_EQ(CoInitializeEx(nullptr, model), S_OK); }
    ~CApartment() { CoUninitialize(); }

    CApartment(const CApartment&) = delete;
    CApartment& operator=(const CApartment&) = delete;
};

/// Creates the service object, and asks it for the system, as the calling thread.
HRESULT FetchSystem() {
    CHostReference<IHostServiceProvider> provider;
    const HRESULT result = CoCreateInstance(kServiceClassId, nullptr, kAnyServer, IHostServiceProvider::kId,
                                            reinterpret_cast<void**>(provider.Receive()));
    if (FAILED(result)) {
        return result;
    }
    CHostReference<IUnknown> object;
    return provider->GetHostObject(ISystemInfo::kId, object.Receive());
}

HRESULT FetchSystemIn(DWORD model) {
    HRESULT result = E_UNEXPECTED;
    RunOnNewThread([&] {
        const CApartment apartment(model);
        result = FetchSystem();
    });
    return result;
}

HRESULT FetchSystemWithoutApartment() {
    HRESULT result = E_UNEXPECTED;
    RunOnNewThread([&] { result = FetchSystem(); });
    return result;
}

class CInProcessClassObjectTest : public CLeakCheckedTest {
protected:
    const CServerRegistrationLock m_nobodyRegisters;
    CHost m_host;
};

TEST_F(CInProcessClassObjectTest, IsFoundByItsOwnApartmentAlone) {
    const CApartment apartment(COINIT_APARTMENTTHREADED);
    const CInProcessClassObject registered(m_host.MakeClassObject().Get());

    EXPECT_EQ(FetchSystem(), S_OK);
    EXPECT_EQ(FetchSystemIn(COINIT_APARTMENTTHREADED), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(FetchSystemIn(COINIT_MULTITHREADED), REGDB_E_CLASSNOTREG);
}

TEST_F(CInProcessClassObjectTest, IsFoundByAllThreadsOfTheMultithreadedApartment) {
    const CApartment apartment(COINIT_MULTITHREADED);
    const CInProcessClassObject registered(m_host.MakeClassObject().Get());

    EXPECT_EQ(FetchSystem(), S_OK);
    EXPECT_EQ(FetchSystemIn(COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(FetchSystemWithoutApartment(), S_OK);
    EXPECT_EQ(FetchSystemIn(COINIT_APARTMENTTHREADED), REGDB_E_CLASSNOTREG);
}

TEST_F(CInProcessClassObjectTest, LeavesNothingBehind) {
    const CApartment apartment(COINIT_MULTITHREADED);
    {
        const CInProcessClassObject registered(m_host.MakeClassObject().Get());
        EXPECT_EQ(FetchSystem(), S_OK);
    }

    EXPECT_EQ(FetchSystem(), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(m_host.Close(), "");
}

TEST_F(CInProcessClassObjectTest, ARefusedQueryReachesTheCreator) {
    const CApartment apartment(COINIT_MULTITHREADED);
    const CInProcessClassObject registered(m_host.MakeClassObject().Get());
    m_host.Record().RefuseQuery("Services", IHostServiceProvider::kId, 1);

    EXPECT_EQ(FetchSystem(), E_NOINTERFACE);
    EXPECT_EQ(FetchSystem(), S_OK);
}

class CRegisteredServerTest : public CLeakCheckedTest {
protected:
    CHost m_host;
};

TEST_F(CRegisteredServerTest, IsFoundByEveryApartment) {
    const CRegisteredServer server(m_host.MakeClassObject().Get());

    EXPECT_EQ(FetchSystemIn(COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_EQ(FetchSystemIn(COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(FetchSystemWithoutApartment(), CO_E_NOTINITIALIZED);
    const CApartment apartment(COINIT_MULTITHREADED);
    EXPECT_EQ(FetchSystemWithoutApartment(), S_OK);
}

TEST_F(CRegisteredServerTest, GivesTheObjectsThemselvesToEveryApartment) {
    const CRegisteredServer server(m_host.MakeClassObject().Get());
    std::vector<DWORD> callers;
    m_host.Record().SetBeforeCall([&](const std::string&) { callers.push_back(GetCurrentThreadId()); });

    DWORD threadId = 0;
    RunOnNewThread([&] {
        const CApartment apartment(COINIT_APARTMENTTHREADED);
        threadId = GetCurrentThreadId();
        EXPECT_EQ(FetchSystem(), S_OK);
    });

    EXPECT_EQ(callers, (std::vector<DWORD>{threadId, threadId}));  // CreateInstance and GetHostObject
    m_host.Record().SetBeforeCall(nullptr);
}

TEST_F(CRegisteredServerTest, LeavesNothingBehind) {
    { const CRegisteredServer server(m_host.MakeClassObject().Get()); }
    const CServerRegistrationLock nobodyRegisters;

    EXPECT_EQ(FetchSystemIn(COINIT_MULTITHREADED), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(m_host.Close(), "");
}

TEST_F(CRegisteredServerTest, CanBeRegisteredAgainWithAnotherHost) {
    { const CRegisteredServer server(m_host.MakeClassObject().Get()); }
    CHost other;
    {
        const CRegisteredServer server(other.MakeClassObject().Get());
        EXPECT_EQ(FetchSystemIn(COINIT_APARTMENTTHREADED), S_OK);
    }

    EXPECT_EQ(m_host.Record().CountCalls("*"), 0);
    EXPECT_EQ(other.Record().CountCalls("*"), 2);
    EXPECT_EQ(other.Close(), "");
}

}  // namespace
