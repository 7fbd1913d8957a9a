#include "HostObjects.h"

#include "HostKitFixture.h"

namespace {

using testing::ElementsAre;

class HostObjectsTest : public CHostKitTest {};

TEST_F(HostObjectsTest, TheLoggerKeepsWhatItIsTold) {
    const auto log = std::make_shared<CHostLog>();
    const auto logger = MakeLogger(m_record, log);
    const CBstr component = CBstr::Make(L"telvar-rmi");
    const CBstr text = CBstr::Make(L"text");

    EXPECT_EQ(logger->LogError(component.Get(), text.Get()), S_OK);
    EXPECT_EQ(logger->LogWarning(component.Get(), text.Get()), S_OK);
    EXPECT_EQ(logger->LogInfo(component.Get(), nullptr), S_OK);
    EXPECT_EQ(logger->LogVerbose(component.Get(), 8, text.Get()), S_OK);

    const std::vector<HostLogEntry> entries = log->GetEntries();
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[0].level, HostLogLevel::eError);
    EXPECT_EQ(entries[0].component, L"telvar-rmi");
    EXPECT_EQ(entries[0].text, L"text");
    EXPECT_EQ(entries[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(entries[1].level, HostLogLevel::eWarning);
    EXPECT_EQ(entries[2].level, HostLogLevel::eInfo);
    EXPECT_EQ(entries[2].text, L"");
    EXPECT_EQ(entries[3].level, HostLogLevel::eVerbose);
    EXPECT_EQ(entries[3].detail, 8);
    EXPECT_THAT(m_record->GetCallTexts(),
                ElementsAre("Logger: LogError(telvar-rmi, text)", "Logger: LogWarning(telvar-rmi, text)",
                            "Logger: LogInfo(telvar-rmi, null)", "Logger: LogVerbose(telvar-rmi, 8, text)"));
    log->Clear();
    EXPECT_TRUE(log->GetEntries().empty());
}

TEST_F(HostObjectsTest, TheSystemGivesItsData) {
    SystemData data{L"box", L"box.test", VARIANT_TRUE, 4096, L"vm", L"machine", L"unique"};
    data.componentsIdentities = {"PropertyBox identities", {{L"agent", MakeText(L"id-1")}}};
    const auto system = MakeSystemInfo(m_record, data);

    EXPECT_EQ(system->Refresh(), S_OK);
    EXPECT_EQ(Read(system.Get(), &ISystemInfo::get_machineName), "box");
    EXPECT_EQ(Read(system.Get(), &ISystemInfo::get_FQDN), "box.test");
    EXPECT_EQ(Read(system.Get(), &ISystemInfo::get_virtualMachineId), "vm");
    EXPECT_EQ(Read(system.Get(), &ISystemInfo::get_machineId), "machine");
    EXPECT_EQ(Read(system.Get(), &ISystemInfo::get_machineUniqueId), "unique");
    VARIANT_BOOL isDesktop = VARIANT_FALSE;
    EXPECT_EQ(system->get_isDesktop(&isDesktop), S_OK);
    EXPECT_EQ(isDesktop, VARIANT_TRUE);
    LONG memory = 0;
    EXPECT_EQ(system->get_totalMemory(&memory), S_OK);
    EXPECT_EQ(memory, 4096);
    CHostReference<IPropertyBox> identities;
    ASSERT_EQ(system->get_componentsIdentities(identities.Receive()), S_OK);
    CVariant id;
    EXPECT_EQ(identities->GetProperty(CBstr::Make(L"agent").Get(), id.Receive()), S_OK);
    EXPECT_EQ(DescribeValue(id), "BSTR id-1");
    EXPECT_EQ(m_record->CountCalls("PropertyBox identities: GetProperty(agent)"), 1);
}

TEST_F(HostObjectsTest, TheCollectionGivesSessionsById) {
    const auto sessions = MakeSessionCollection(m_record, {{1, L"S-1"}, {7, L"S-7"}});

    CHostReference<IUserSessionInfo> session;
    ASSERT_EQ(sessions->GetSession(7, session.Receive()), S_OK);
    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_sid), "S-7");
    CHostReference<IUserSessionInfo> none;
    EXPECT_EQ(sessions->GetSession(2, none.Receive()), E_INVALIDARG);

    EXPECT_FALSE(none);
    EXPECT_THAT(m_record->GetCallTexts(),
                ElementsAre("Sessions: GetSession(7)", "Session 7: get_sid", "Sessions: GetSession(2)"));
}

TEST_F(HostObjectsTest, ASessionGivesItsData) {
    const auto session = MakeUserSession(m_record, {5, L"S-5", L"anna", L"TEST", 4, L"TEST\\anna", {"meta"}});

    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_sid), "S-5");
    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_user), "anna");
    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_domain), "TEST");
    EXPECT_EQ(Read(session.Get(), &IUserSessionInfo::get_userLabel), "TEST\\anna");
    LONG id = 0;
    EXPECT_EQ(session->get_id(&id), S_OK);
    EXPECT_EQ(id, 5);
    SHORT state = 0;
    EXPECT_EQ(session->get_state(&state), S_OK);
    EXPECT_EQ(state, 4);
    CHostReference<IPropertyBox> box;
    EXPECT_EQ(session->get_propertyBox(box.Receive()), S_OK);
    EXPECT_EQ(m_record->DescribeLeftovers(),
              "1 of Session 5; 1 of meta; 1 references to IPropertyBox; 1 references to IUserSessionInfo; ");
}

TEST_F(HostObjectsTest, APropertyBoxGivesValuesByName) {
    PropertyBoxData data{"meta", {{L"route", MakeText(L"west")}, {L"count", MakeInt(2)}}};
    data.missingResult = E_FAIL;
    const auto box = MakePropertyBox(m_record, data);

    CVariant value;
    EXPECT_EQ(box->GetProperty(CBstr::Make(L"route").Get(), value.Receive()), S_OK);
    EXPECT_EQ(DescribeValue(value), "BSTR west");
    EXPECT_EQ(box->GetProperty(CBstr::Make(L"Route").Get(), value.Receive()), E_FAIL);
    EXPECT_EQ(DescribeValue(value), "EMPTY");
    EXPECT_EQ(box->GetProperty(nullptr, value.Receive()), E_FAIL);
    CHostReference<INameValueEnumerator> all;
    ASSERT_EQ(box->get_enumerator(all.Receive()), S_OK);
    EXPECT_EQ(TakeNext(all.Get()), "route = BSTR west");
    EXPECT_EQ(TakeNext(all.Get()), "count = I4 2");
    EXPECT_EQ(TakeNext(all.Get()), DescribeResult(S_FALSE));
}

TEST_F(HostObjectsTest, TheExecutorKeepsActionsAndAnswersAsTold) {
    const auto actions = std::make_shared<CHostActions>();
    const auto executor = MakeActionExecutor(m_record, actions);
    const CVariantValue text = MakeText(L"<restart/>");

    EXPECT_EQ(executor->Execute(text.Get()), S_OK);
    actions->SetResult(E_ACCESSDENIED);
    EXPECT_EQ(executor->Execute(MakeInterface(executor.Get()).Get()), E_ACCESSDENIED);
    actions->SetOnExecute([](const VARIANT& action) { return action.vt == VT_I4 ? S_FALSE : S_OK; });
    EXPECT_EQ(executor->Execute(MakeInt(1).Get()), S_FALSE);

    const std::vector<HostAction> entries = actions->GetEntries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].type, VT_BSTR);
    EXPECT_EQ(entries[0].text, "BSTR <restart/>");
    EXPECT_EQ(entries[0].threadId, GetCurrentThreadId());
    EXPECT_EQ(entries[1].text, "UNKNOWN object");
    EXPECT_EQ(entries[2].text, "I4 1");
    EXPECT_EQ(m_record->CountCalls("Actions: Execute(BSTR <restart/>)"), 1);
}

TEST_F(HostObjectsTest, ReservedSlotsAreViolations) {
    const auto logger = MakeLogger(m_record, std::make_shared<CHostLog>());
    const auto node = MakeSampleNode(m_record, {});

    EXPECT_EQ(logger->Reserved8(), E_NOTIMPL);
    EXPECT_EQ(node->Reserved3(), E_NOTIMPL);

    ExpectViolations({"Logger: IHostLogger::Reserved8 is reserved", "Sample: ISampleNode::Reserved3 is reserved"});
}

/// Calls a slot of an object's table that takes nothing.
HRESULT CallSlot(IUnknown* object, std::size_t slot) {
    using Operation = HRESULT(STDMETHODCALLTYPE*)(IUnknown*);
    return (*reinterpret_cast<Operation**>(object))[slot](object);
}

TEST_F(HostObjectsTest, EveryReservedSlotIsWhereItIsExpected) {
    const auto logger = MakeLogger(m_record, std::make_shared<CHostLog>());
    const auto provider = MakeServiceProvider(m_record, std::make_shared<CHostServices>());
    const auto node = MakeSampleNode(m_record, {});
    const auto session = MakeUserSession(m_record, {});
    const auto system = MakeSystemInfo(m_record, {});
    const auto values = MakeNameValueEnumerator(m_record, "Values", {});
    const auto instances = MakeInstanceEnumerator(m_record, "Sample", {});
    struct Range {
        IUnknown* object;
        const char* prefix;
        std::size_t first;
        std::size_t last;
    };
    const Range ranges[] = {
        {logger.Get(), "Logger: IHostLogger", 3, 8},
        {provider.Get(), "Services: IHostServiceProvider", 3, 6},
        {node.Get(), "Sample: ISampleNode", 3, 6},
        {session.Get(), "Session 0: IUserSessionInfo", 9, 13},
        {system.Get(), "System: ISystemInfo", 6, 6},
        {values.Get(), "Values: INameValueEnumerator", 3, 3},
        {instances.Get(), "Sample instances: IInstanceEnumerator", 3, 3},
    };

    std::vector<std::string> expected;
    for (const Range& range : ranges) {
        for (std::size_t slot = range.first; slot <= range.last; ++slot) {
            EXPECT_EQ(CallSlot(range.object, slot), E_NOTIMPL);
            expected.push_back(std::string(range.prefix) + "::Reserved" + std::to_string(slot) + " is reserved");
        }
    }

    ExpectViolations(expected);
}

}  // namespace
