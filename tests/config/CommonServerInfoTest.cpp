// The key that a configuration document names, and the policy's key behind it.

#include "CConfigLoaderTest.h"
#include "CImportHook.h"

namespace {

class CommonServerInfoTest : public CConfigLoaderTest {
protected:
    [[nodiscard]] ServerInfo LoadByDocument() const { return Load(DocumentNaming(DocumentKey())); }

    void SetDocumentValue(const wchar_t* name, DWORD type, const std::vector<BYTE>& bytes) const {
        CAgentRegistry::SetBytes(DocumentKey(), name, type, bytes);
    }
};

/// The bytes of a REG_MULTI_SZ.
std::vector<BYTE> BytesOfTexts(const std::vector<std::wstring>& texts) {
    std::wstring joined;
    for (const std::wstring& text : texts) {
        joined += text + L'\0';
    }
    return BytesOf(joined);
}

TEST_F(CommonServerInfoTest, WithoutAnyPlaceThreeErrorsAreLoggedInTheirOrder) {
    EXPECT_EQ(Load(), ServerInfo{kNotFound});

    EXPECT_EQ(Logged(), (Texts{NoList(kNotFound), NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
}

TEST_F(CommonServerInfoTest, TheDocumentsKeyGivesUrlAndCertificateAndTheHostTheUniqueId) {
    SetDocumentServer(L"rmi://b", L"cert");

    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://b", kUniqueId, L"cert"}));

    EXPECT_EQ(Logged(), Texts{NoList(kNotFound)}) << "success is not told";
    EXPECT_EQ(Host().Record().CountCalls(kUniqueIdAsked), 1);
}

TEST_F(CommonServerInfoTest, TheDocumentsKeyGoesBeforeThePolicys) {
    SetDocumentServer(L"rmi://b", L"cert");
    SetPolicyUrlForTheCommonReader(L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"policy's");

    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://b", kUniqueId, L"cert"}));
}

TEST_F(CommonServerInfoTest, ADocumentWithoutTheElementGoesOnSilently) {
    const std::wstring documents[] = {L"<agent/>", L"no document", L"", L"<agent><serverConfig/></agent>"};
    for (const std::wstring& document : documents) {
        Host().Log().Clear();

        EXPECT_EQ(Load(document), ServerInfo{kNotFound});

        EXPECT_EQ(Logged(), (Texts{NoList(kNotFound), NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
    }
}

TEST_F(CommonServerInfoTest, AKeyThatIsNotThereIsToldBeforeThePolicysIsRead) {
    SetPolicyUrlForTheCommonReader(L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"policy's");

    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://policy", kUniqueId, L"policy's"}));

    EXPECT_EQ(Logged(), (Texts{NoList(static_cast<HRESULT>(0x8007000D)), NoKey(kNotFound), NotLoaded(kNotFound)}));
}

TEST_F(CommonServerInfoTest, BothKeysFailuresAreLoggedAndThePolicysIsTheResult) {
    SetDocumentValue(L"Other", REG_SZ, BytesOf(L"x"));

    EXPECT_EQ(LoadByDocument(), ServerInfo{kNotFound});

    EXPECT_EQ(Logged(),
              (Texts{NoList(kNotFound), NoUrl(), NotLoaded(E_FAIL), NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
}

TEST_F(CommonServerInfoTest, AKeyWithoutAUrlFails) {
    SetPolicy(L"AdapterCertificate", L"cert");

    EXPECT_EQ(Load(), ServerInfo{E_FAIL});

    EXPECT_EQ(Logged(), (Texts{NoList(kNotFound), NoUrl(), LegacyNotLoaded(E_FAIL)}));
}

TEST_F(CommonServerInfoTest, AKeyWithoutACertificateFailsAndWritesNothing) {
    SetPolicyUrlForTheCommonReader(L"rmi://policy");

    EXPECT_EQ(Load(), ServerInfo{E_FAIL});

    EXPECT_EQ(Logged(), (Texts{NoList(static_cast<HRESULT>(0x8007000D)), NoCertificate(), LegacyNotLoaded(E_FAIL)}));
    EXPECT_EQ(Host().Record().CountCalls(kUniqueIdAsked), 0);
}

TEST_F(CommonServerInfoTest, TheValuesTypesAreTextsByTheirKind) {
    struct Case {
        const char* what;
        DWORD type;
        std::vector<BYTE> bytes;
        std::wstring text;
    };
    const Case cases[] = {
        {"a text", REG_SZ, BytesOf(L"abc"), L"abc"},
        {"an expandable one", REG_EXPAND_SZ, BytesOf(L"%SystemRoot%"), L"%SystemRoot%"},
        {"no bytes", REG_SZ, {}, L""},
        {"an open text", REG_SZ, BytesOf(L"abc", 0), L"abc"},
        {"a number", REG_DWORD, {0x39, 0x30, 0, 0}, L"12345"},
        {"a great number", REG_DWORD, {0xFF, 0xFF, 0xFF, 0xFF}, L"-1"},
        {"three lines", REG_MULTI_SZ, BytesOfTexts({L"one", L"two", L"three"}), L"onetwothree"},
        {"lines with a gap", REG_MULTI_SZ, BytesOfTexts({L"one", L"", L"three"}), L"onethree"},
        {"lines of blanks", REG_MULTI_SZ, BytesOfTexts({L" one ", L" two "}), L" one  two "},
        {"no lines", REG_MULTI_SZ, BytesOfTexts({}), L""},
        {"no lines and no bytes", REG_MULTI_SZ, {}, L""},
    };
    for (const Case& c : cases) {
        SetDocumentServer(L"rmi://b", L"cert");
        SetDocumentValue(L"AdapterCertificate", c.type, c.bytes);
        EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://b", kUniqueId, c.text})) << c.what;

        SetDocumentServer(L"rmi://b", L"cert");
        SetDocumentValue(L"MessageServerURL", c.type, c.bytes);
        EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, c.text, kUniqueId, L"cert"})) << c.what;
    }
}

TEST_F(CommonServerInfoTest, AListsBarsMeanNothingHere) {
    SetDocumentServer(L"u|s|c", L"cert|x");

    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"u|s|c", kUniqueId, L"cert|x"}));
}

TEST_F(CommonServerInfoTest, ValuesOfOtherTypesAreMissing) {
    for (const DWORD type : std::vector<DWORD>{REG_BINARY, REG_QWORD, REG_NONE, REG_LINK, REG_DWORD_BIG_ENDIAN}) {
        SetDocumentServer(L"rmi://b", L"cert");
        SetDocumentValue(L"MessageServerURL", type, BytesOf(L"abc"));
        Host().Log().Clear();
        EXPECT_EQ(LoadByDocument(), ServerInfo{kNotFound}) << type;
        EXPECT_EQ(Logged()[1], NoUrl()) << type;

        SetDocumentServer(L"rmi://b", L"cert");
        SetDocumentValue(L"AdapterCertificate", type, BytesOf(L"abc"));
        Host().Log().Clear();
        EXPECT_EQ(LoadByDocument(), ServerInfo{kNotFound}) << type;
        EXPECT_EQ(Logged()[1], NoCertificate()) << type;
    }
}

TEST_F(CommonServerInfoTest, TheValuesNamesAreFoundInAnyCase) {
    SetDocumentValue(L"MESSAGESERVERurl", REG_SZ, BytesOf(L"rmi://b"));
    SetDocumentValue(L"adaptercertificate", REG_SZ, BytesOf(L"cert"));

    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://b", kUniqueId, L"cert"}));
}

TEST_F(CommonServerInfoTest, TheDocumentsPathMayHaveARootName) {
    const std::wstring root(L"HKEY_LOCAL_MACHINE");
    SetDocumentServer(L"rmi://b", L"cert");
    const ServerInfo found{S_OK, L"rmi://b", kUniqueId, L"cert"};

    EXPECT_EQ(Load(DocumentNaming(root + L"\\" + DocumentKey())), found);
    EXPECT_EQ(Load(DocumentNaming(root + DocumentKey())), found) << "without a backslash between";
    EXPECT_EQ(Load(DocumentNaming(DocumentKey())), found);

    EXPECT_EQ(Load(DocumentNaming(L"hkey_local_machine\\" + DocumentKey())).result, kNotFound) << "another case";
    EXPECT_EQ(Load(DocumentNaming(root + L"\\" + root + L"\\" + DocumentKey())).result, kNotFound) << "twice";
    EXPECT_EQ(Load(DocumentNaming(L"Software\\HKEY_CURRENT_USER\\Software")).result, kNotFound) << "in the middle";
}

/// A key below HKEY_CURRENT_USER, for one test.
class CUserKey {
public:
    explicit CUserKey(std::wstring path) : m_path(std::move(path)) { Remove(); }
    ~CUserKey() { Remove(); }

    CUserKey(const CUserKey&) = delete;
    CUserKey& operator=(const CUserKey&) = delete;

    [[nodiscard]] LSTATUS SetText(const wchar_t* name, const std::wstring& text) const {
        const std::vector<BYTE> bytes = BytesOf(text);
        return RegSetKeyValueW(HKEY_CURRENT_USER, m_path.c_str(), name, REG_SZ, bytes.data(),
                               static_cast<DWORD>(bytes.size()));
    }

private:
    void Remove() const { RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str()); }

    const std::wstring m_path;
};

TEST_F(CommonServerInfoTest, TheUsersKeyIsNotTheMachinesOfTheSamePath) {
    const CUserKey userKey(DocumentKey());
    ASSERT_EQ(userKey.SetText(L"MessageServerURL", L"rmi://user"), ERROR_SUCCESS);
    ASSERT_EQ(userKey.SetText(L"AdapterCertificate", L"user's"), ERROR_SUCCESS);
    SetDocumentServer(L"rmi://machine", L"machine's");

    EXPECT_EQ(Load(DocumentNaming(L"HKEY_CURRENT_USER\\" + DocumentKey())),
              (ServerInfo{S_OK, L"rmi://user", kUniqueId, L"user's"}));
    EXPECT_EQ(LoadByDocument(), (ServerInfo{S_OK, L"rmi://machine", kUniqueId, L"machine's"}));
}

TEST_F(CommonServerInfoTest, AHostWithoutSystemInformationFailsTheKeyAfterItsTextsAreWritten) {
    SetDocumentServer(L"rmi://b", L"cert");
    Host().Services().SetResult(ISystemInfo::kId, kTextless);

    EXPECT_EQ(LoadByDocument(), (ServerInfo{kNotFound, L"rmi://b", ServerInfo::kUntouched, L"cert"}));

    EXPECT_EQ(Logged(), (Texts{NoList(kNotFound), NoSystemForTheCommonReader(kTextless), NotLoaded(kTextless),
                               NoKey(kNotFound), LegacyNotLoaded(kNotFound)}));
}

TEST_F(CommonServerInfoTest, SystemInformationGivenAsNullIsAFailedFetch) {
    SetPolicyUrlForTheCommonReader(L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"cert");
    Host().Services().Set(ISystemInfo::kId, nullptr);

    EXPECT_EQ(Load(), (ServerInfo{E_POINTER, L"rmi://policy", ServerInfo::kUntouched, L"cert"}));

    EXPECT_EQ(Logged(), (Texts{NoList(static_cast<HRESULT>(0x8007000D)), NoSystemForTheCommonReader(E_POINTER),
                               LegacyNotLoaded(E_POINTER)}));
}

TEST_F(CommonServerInfoTest, ThePolicysKeyIsReachedWhenSystemInformationFailsThePolicysList) {
    SetPolicy(L"MessageServerURL", L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"cert");
    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_ACCESSDENIED);

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"rmi://policy", kUniqueId, L"cert"}));

    EXPECT_EQ(Logged(), Texts{}) << "a refused id has no entry of its own";
}

TEST_F(CommonServerInfoTest, AUniqueIdThatIsRefusedIsTheResult) {
    SetPolicyUrlForTheCommonReader(L"rmi://policy");
    SetPolicy(L"AdapterCertificate", L"cert");
    for (const HRESULT refusal : {E_ACCESSDENIED, kTextless}) {
        Host().Log().Clear();
        Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, refusal);

        EXPECT_EQ(Load(), (ServerInfo{refusal, L"rmi://policy", ServerInfo::kUntouched, L"cert"}));

        EXPECT_EQ(Logged(), (Texts{NoList(static_cast<HRESULT>(0x8007000D)), LegacyNotLoaded(refusal)}));
    }
}

std::vector<std::wstring> g_opened;
decltype(&RegOpenKeyExW) g_open;
LSTATUS WINAPI NoteOpen(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
    // What is opened under HKEY_CLASSES_ROOT has to do with COM, not with servers.
    if (parent != HKEY_CLASSES_ROOT) {
        g_opened.push_back((parent == HKEY_LOCAL_MACHINE ? L"HKLM\\" : L"?\\") + std::wstring(path) + L" " +
                           std::to_wstring(access));
    }
    return g_open(parent, path, options, access, key);
}

TEST_F(CommonServerInfoTest, ThePlacesAreOpenedForReadingInTheirOrder) {
    g_open = reinterpret_cast<decltype(g_open)>(*FindImportSlot(GetModuleHandleW(nullptr), "RegOpenKeyExW"));
    const CImportHook hook(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&NoteOpen));

    EXPECT_EQ(LoadByDocument().result, kNotFound);

    const std::wstring machine(L"HKLM\\");
    const std::wstring forReading = L" " + std::to_wstring(KEY_READ);
    EXPECT_EQ(g_opened, (Texts{machine + CAgentRegistry::NodeManagerKey() + forReading,
                               machine + Registry().PolicyKey() + forReading, machine + DocumentKey() + forReading,
                               machine + Registry().PolicyKey() + forReading}));
}

}  // namespace
