// The legacy list: URL, second value and certificate between bars.

#include "CConfigLoaderTest.h"

namespace {

class LegacyServerInfoTest : public CConfigLoaderTest {};

constexpr HRESULT kInvalidData = static_cast<HRESULT>(0x8007000D);

TEST_F(LegacyServerInfoTest, AUrlAloneLeavesTheCertificateAndTakesTheUniqueIdFromTheHost) {
    SetLegacyList(L"rmi://a");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://a", kUniqueId}));

    EXPECT_EQ(Logged(), Texts{UsingServer(L"rmi://a")});
    EXPECT_EQ(Host().Record().CountCalls(kUniqueIdAsked), 1);
}

TEST_F(LegacyServerInfoTest, TwoFieldsAreTheUrlAndTheCertificate) {
    SetLegacyList(L"rmi://a|cert");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://a", kUniqueId, L"cert"}));

    EXPECT_EQ(Logged(), Texts{UsingServer(L"rmi://a")});
    EXPECT_EQ(Host().Record().CountCalls(kUniqueIdAsked), 1);
}

TEST_F(LegacyServerInfoTest, ThreeFieldsLeaveTheHostUnasked) {
    SetLegacyList(L"rmi://a|second|cert");
    Host().Services().SetResult(ISystemInfo::kId, E_FAIL);

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://a", L"second", L"cert"}));

    EXPECT_EQ(Logged(), Texts{UsingServer(L"rmi://a")});
    EXPECT_EQ(Host().Record().CountCalls("IHostServiceProvider::GetHostObject"), 1) << "the log alone";
}

TEST_F(LegacyServerInfoTest, FieldsAreSplitAtEveryBar) {
    struct Case {
        const wchar_t* list;
        ServerInfo expected;
    };
    const Case cases[] = {
        {L"", {S_OK, L"", kUniqueId}},
        {L"|", {S_OK, L"", kUniqueId, L""}},
        {L"u|", {S_OK, L"u", kUniqueId, L""}},
        {L"|c", {S_OK, L"", kUniqueId, L"c"}},
        {L"||", {S_OK, L"", L"", L""}},
        {L"u||c", {S_OK, L"u", L"", L"c"}},
        {L"u|s|", {S_OK, L"u", L"s", L""}},
        {L"u|s|x|c", {S_OK, L"u", L"s", L"c"}},
        {L"u|s|x|y|z|c", {S_OK, L"u", L"s", L"c"}},
        {L" u | s | c ", {S_OK, L" u ", L" s ", L" c "}},
        {L"\u00fc\u4e2d|%s %n|\r\n\t", {S_OK, L"\u00fc\u4e2d", L"%s %n", L"\r\n\t"}},
    };
    for (const Case& c : cases) {
        SetLegacyList(c.list);

        EXPECT_EQ(Load(), c.expected) << testing::PrintToString(std::wstring(c.list));
    }
}

TEST_F(LegacyServerInfoTest, TheUrlEntersTheLogAsItIs) {
    SetLegacyList(L"rmi://%s%n/\u4e2d|s|c");

    EXPECT_EQ(Load().result, S_OK);

    EXPECT_EQ(Logged(), Texts{UsingServer(L"rmi://%s%n/\u4e2d")});
}

TEST_F(LegacyServerInfoTest, TheEntriesNameTheComponent) {
    SetLegacyList(L"u|s|c");

    EXPECT_EQ(Load().result, S_OK);

    ASSERT_EQ(Host().Log().GetEntries().size(), 1U);
    EXPECT_EQ(Host().Log().GetEntries()[0].component, L"telvar-rmi");
}

TEST_F(LegacyServerInfoTest, AHundredThousandFieldsAreNoTrouble) {
    std::wstring list(L"u|s");
    for (int i = 0; i < 100'000; ++i) {
        list += L"|x";
    }
    SetLegacyList(list + L"|last");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"u", L"s", L"last"}));
}

TEST_F(LegacyServerInfoTest, AListIsNotExpanded) {
    CAgentRegistry::SetBytes(CAgentRegistry::NodeManagerKey(), L"Kelbrin Server URL", REG_EXPAND_SZ,
                             BytesOf(L"%SystemRoot%|s|c"));

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"%SystemRoot%", L"s", L"c"}));
}

TEST_F(LegacyServerInfoTest, TheNodeManagersListGoesBeforeThePolicys) {
    SetLegacyList(L"first|s1|c1");
    SetPolicy(L"MessageServerURL", L"second|s2|c2");
    SetDocumentServer(L"third", L"c3");

    EXPECT_EQ(Load(DocumentNaming(DocumentKey())), (ServerInfo{S_OK, L"first", L"s1", L"c1"}));
}

TEST_F(LegacyServerInfoTest, ThePolicysListGoesBeforeTheDocument) {
    SetPolicy(L"MessageServerURL", L"second|s2|c2");
    SetDocumentServer(L"third", L"c3");

    EXPECT_EQ(Load(DocumentNaming(DocumentKey())), (ServerInfo{S_OK, L"second", L"s2", L"c2"}));

    EXPECT_EQ(Logged(), Texts{UsingServer(L"second")});
}

TEST_F(LegacyServerInfoTest, ThePolicysUrlAloneTakesTheUniqueIdAndNotThePolicysCertificate) {
    SetPolicy(L"MessageServerURL", L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"cert");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://policy", kUniqueId}));
}

TEST_F(LegacyServerInfoTest, AListThatCannotBeReadIsPassedOver) {
    SetPolicy(L"MessageServerURL", L"second|s2|c2");

    struct Case {
        const char* what;
        DWORD type;
        std::vector<BYTE> bytes;
    };
    const Case cases[] = {
        {"a number", REG_DWORD, {1, 0, 0, 0}},
        {"texts", REG_MULTI_SZ, BytesOf(L"a", 2)},
        {"bytes", REG_BINARY, BytesOf(L"a")},
        {"an open text", REG_SZ, BytesOf(L"first", 0)},
        {"an odd number of bytes", REG_SZ, {'a', 0, 0}},
    };
    for (const Case& c : cases) {
        CAgentRegistry::SetBytes(CAgentRegistry::NodeManagerKey(), L"Kelbrin Server URL", c.type, c.bytes);

        EXPECT_EQ(Load(), (ServerInfo{S_OK, L"second", L"s2", L"c2"})) << c.what;
    }
}

TEST_F(LegacyServerInfoTest, TheSecondReadsFailureIsTheOneThatIsLogged) {
    CAgentRegistry::SetBytes(CAgentRegistry::NodeManagerKey(), L"Kelbrin Server URL", REG_DWORD, {1, 0, 0, 0});
    EXPECT_EQ(Load().result, kNotFound);
    EXPECT_EQ(Logged()[0], NoList(kNotFound));

    Host().Log().Clear();
    CAgentRegistry::SetBytes(Registry().PolicyKey(), L"MessageServerURL", REG_DWORD, {1, 0, 0, 0});
    EXPECT_EQ(Load().result, E_FAIL);
    EXPECT_EQ(Logged()[0], NoList(kInvalidData));
}

TEST_F(LegacyServerInfoTest, AHostWithoutSystemInformationIsToldAndTheOtherPlacesAreAsked) {
    SetLegacyList(L"rmi://a|cert");
    Host().Services().SetResult(ISystemInfo::kId, kTextless);

    EXPECT_EQ(Load(), (ServerInfo{kNotFound, L"rmi://a", ServerInfo::kUntouched, L"cert"}));

    EXPECT_EQ(Logged(), (Texts{NoSystemForTheLegacyReader(kTextless), NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
    EXPECT_EQ(Logged()[0].substr(Logged()[0].size() - 27), L"**)  Error code 0xa0bc1234.");
}

TEST_F(LegacyServerInfoTest, SystemInformationGivenAsNullCountsAsMissing) {
    SetLegacyList(L"rmi://a|cert");
    Host().Services().Set(ISystemInfo::kId, nullptr);

    EXPECT_EQ(Load(), (ServerInfo{kNotFound, L"rmi://a", ServerInfo::kUntouched, L"cert"}));

    EXPECT_EQ(Logged(), (Texts{NoSystemForTheLegacyReader(E_POINTER), NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
}

TEST_F(LegacyServerInfoTest, AUniqueIdThatIsRefusedFailsTheReaderWithoutAnEntryOfItsOwn) {
    SetLegacyList(L"rmi://a|cert");
    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_ACCESSDENIED);

    EXPECT_EQ(Load(), (ServerInfo{kNotFound, L"rmi://a", ServerInfo::kUntouched, L"cert"}));

    EXPECT_EQ(Logged(), (Texts{NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
}

TEST_F(LegacyServerInfoTest, AUniqueIdGivenAsNullIsNone) {
    SetLegacyList(L"rmi://a");
    Host().Record().GiveNull("ISystemInfo::get_machineUniqueId");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://a"}));

    EXPECT_EQ(Logged(), Texts{UsingServer(L"rmi://a")});
}

TEST_F(LegacyServerInfoTest, TheLogAndTheSystemInformationAreFetchedForEachCall) {
    SetLegacyList(L"rmi://a");

    EXPECT_EQ(Load().secondValue, kUniqueId);
    SystemData other;
    other.machineUniqueId = L"unique-8";
    SetSystem(other);
    EXPECT_EQ(Load().secondValue, L"unique-8");

    EXPECT_EQ(Host().Record().CountCalls("IHostServiceProvider::GetHostObject"), 4);
}

}  // namespace
