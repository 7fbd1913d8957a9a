#include "CHost.h"
#include "HostKitFixture.h"

namespace {

using testing::ElementsAre;

class CHostTest : public CLeakCheckedTest {
protected:
    void TearDown() override {
        EXPECT_EQ(m_host.Close(), "");
        CLeakCheckedTest::TearDown();
    }

    template <typename Interface>
    [[nodiscard]] CHostReference<Interface> Get(HRESULT expected = S_OK) {
        CHostReference<IUnknown> object;
        EXPECT_EQ(m_host.MakeProvider()->GetHostObject(Interface::kId, object.Receive()), expected);
        CHostReference<Interface> queried;
        if (object) {
            EXPECT_EQ(object->QueryInterface(Interface::kId, reinterpret_cast<void**>(queried.Receive())), S_OK);
        }
        return queried;
    }

    CHost m_host{{{L"box"}, {{3, L"S-3"}}}};
};

TEST_F(CHostTest, GivesItsObjectsThroughAProvider) {
    const CBstr text = CBstr::Make(L"text");
    EXPECT_EQ(Get<IHostLogger>()->LogInfo(text.Get(), text.Get()), S_OK);
    EXPECT_EQ(Get<ISystemInfo>()->Refresh(), S_OK);
    CHostReference<IUserSessionInfo> session;
    EXPECT_EQ(Get<ISessionCollection>()->GetSession(3, session.Receive()), S_OK);
    EXPECT_EQ(Get<IActionExecutor>()->Execute(MakeInt(1).Get()), S_OK);

    EXPECT_EQ(m_host.Log().GetEntries().size(), 1U);
    EXPECT_EQ(m_host.Actions().GetEntries().size(), 1U);
    EXPECT_THAT(m_host.Record().GetCallTexts(),
                ElementsAre("Services: GetHostObject(IHostLogger)", "Logger: LogInfo(text, text)",
                            "Services: GetHostObject(ISystemInfo)", "System: Refresh",
                            "Services: GetHostObject(ISessionCollection)", "Sessions: GetSession(3)",
                            "Services: GetHostObject(IActionExecutor)", "Actions: Execute(I4 1)"));
}

TEST_F(CHostTest, WhatIsNotThereIsNoInterface) {
    EXPECT_FALSE(Get<ISampleNode>(E_NOINTERFACE));

    m_host.Services().Remove(IHostLogger::kId);
    EXPECT_FALSE(Get<IHostLogger>(E_NOINTERFACE));
}

TEST_F(CHostTest, AServiceCanBeNullOrFail) {
    m_host.Services().Set(IHostLogger::kId, nullptr);
    m_host.Services().SetResult(ISystemInfo::kId, E_ACCESSDENIED);

    EXPECT_FALSE(Get<IHostLogger>(S_OK));
    EXPECT_FALSE(Get<ISystemInfo>(E_ACCESSDENIED));
}

TEST_F(CHostTest, AProviderCanAnswerDirectly) {
    void* out = nullptr;
    EXPECT_EQ(m_host.MakeProvider()->QueryInterface(ISystemInfo::kId, &out), E_NOINTERFACE);
    m_host.Services().Set(ISystemInfo::kId, MakeSystemInfo(m_host.ShareRecord(), {}).Get());
    m_host.Services().AnswerDirectly(ISystemInfo::kId);

    CHostReference<ISystemInfo> system;
    EXPECT_EQ(m_host.MakeProvider()->QueryInterface(ISystemInfo::kId, reinterpret_cast<void**>(system.Receive())),
              S_OK);

    EXPECT_EQ(system->Refresh(), S_OK);
}

TEST_F(CHostTest, TheClassObjectMakesAProviderEachTime) {
    const auto classObject = m_host.MakeClassObject();

    CHostReference<IHostServiceProvider> first;
    CHostReference<IHostServiceProvider> second;
    void** const firstOut = reinterpret_cast<void**>(first.Receive());
    EXPECT_EQ(classObject->CreateInstance(nullptr, IHostServiceProvider::kId, firstOut), S_OK);
    void** const secondOut = reinterpret_cast<void**>(second.Receive());
    EXPECT_EQ(classObject->CreateInstance(nullptr, IHostServiceProvider::kId, secondOut), S_OK);

    EXPECT_NE(first.Get(), second.Get());
    EXPECT_THAT(m_host.Record().GetCallTexts(), ElementsAre("Service class: CreateInstance(IHostServiceProvider)",
                                                            "Service class: CreateInstance(IHostServiceProvider)"));
}

TEST_F(CHostTest, TheClassObjectDoesNotAggregate) {
    const auto classObject = m_host.MakeClassObject();

    void* out = &m_host;
    EXPECT_EQ(classObject->CreateInstance(classObject.Get(), IID_IUnknown, &out), CLASS_E_NOAGGREGATION);

    EXPECT_EQ(out, nullptr);
}

TEST_F(CHostTest, EachCallOfAScenarioCanBeMadeToFail) {
    const auto readSid = [&] {
        CHostReference<IUnknown> object;
        CHostReference<ISessionCollection> sessions;
        CHostReference<IUserSessionInfo> session;
        CBstr sid;
        return m_host.MakeProvider()->GetHostObject(ISessionCollection::kId, object.Receive()) == S_OK &&
               object->QueryInterface(ISessionCollection::kId, reinterpret_cast<void**>(sessions.Receive())) == S_OK &&
               sessions->GetSession(3, session.Receive()) == S_OK && session->get_sid(sid.Receive()) == S_OK;
    };

    long failures = 0;
    m_host.Record().Fail("*", 1, E_FAIL);
    while (!readSid()) {
        ++failures;
        m_host.Record().ClearFaults();
        m_host.Record().Fail("*", failures + 1, E_FAIL);
    }

    EXPECT_EQ(failures, 4);
    EXPECT_EQ(m_host.Record().CountFiredFaults(), 4);
}

TEST_F(CHostTest, ClosingNamesWhatOthersKeep) {
    const auto logger = Get<IHostLogger>();

    EXPECT_EQ(m_host.Close(), "1 of Logger; 1 references to IHostLogger; ");
}

}  // namespace
