#pragma once

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "CAgentRegistry.h"
#include "CHostedTest.h"
#include "CRMIConfigLoader.h"

/// What a call of GetServerInfo came to. An output that the call has not touched is kUntouched.
struct ServerInfo {
    static constexpr wchar_t kUntouched[] = L"(untouched)";

    HRESULT result;
    std::wstring url = kUntouched;
    std::wstring secondValue = kUntouched;
    std::wstring certificate = kUntouched;

    friend bool operator==(const ServerInfo& left, const ServerInfo& right) {
        return left.result == right.result && left.url == right.url && left.secondValue == right.secondValue &&
               left.certificate == right.certificate;
    }
    friend std::ostream& operator<<(std::ostream& out, const ServerInfo& info) {
        return out << std::hex << info.result << std::dec << " URL " << testing::PrintToString(info.url.substr(0, 80))
                   << " second " << testing::PrintToString(info.secondValue.substr(0, 80)) << " certificate "
                   << testing::PrintToString(info.certificate.substr(0, 80));
    }
};

/// One of the three texts as a host receives it: set to null before, freed afterwards.
class CReceivedText {
public:
    CReceivedText() = default;
    ~CReceivedText() { SysFreeString(m_text); }

    CReceivedText(const CReceivedText&) = delete;
    CReceivedText& operator=(const CReceivedText&) = delete;

    [[nodiscard]] wchar_t** Receive() noexcept { return &m_text; }
    [[nodiscard]] std::wstring Get() const {
        return m_text ? std::wstring(m_text, SysStringLen(m_text)) : ServerInfo::kUntouched;
    }

private:
    wchar_t* m_text = nullptr;
};

/// Fixture for calls of the loader: a whole host whose machine has a unique id, and registry keys of this test's own.
class CConfigLoaderTest : public CHostedTest {
protected:
    static constexpr wchar_t kUniqueId[] = L"unique-7";
    static constexpr char kUniqueIdAsked[] = "System: get_machineUniqueId";
    static constexpr HRESULT kNotFound = static_cast<HRESULT>(0x80070002);
    /// A result that the system has no text for.
    static constexpr HRESULT kTextless = static_cast<HRESULT>(0xA0BC1234);

    using Texts = std::vector<std::wstring>;

    void SetUp() override {
        CHostedTest::SetUp();
        SystemData system;
        system.machineUniqueId = kUniqueId;
        SetSystem(system);
    }

    /// The legacy list in its first place.
    static void SetLegacyList(const std::wstring& list) {
        CAgentRegistry::SetBytes(CAgentRegistry::NodeManagerKey(), L"Kelbrin Server URL", REG_SZ, BytesOf(list));
    }
    void SetPolicy(const wchar_t* name, const std::wstring& text) const {
        CAgentRegistry::SetBytes(m_registry.PolicyKey(), name, REG_SZ, BytesOf(text));
    }
    /// A URL that only a reader of whole keys takes: its text does not close itself.
    void SetPolicyUrlForTheCommonReader(const std::wstring& url) const {
        CAgentRegistry::SetBytes(m_registry.PolicyKey(), L"MessageServerURL", REG_SZ, BytesOf(url, 0));
    }
    /// The values of a server below the key that DocumentKey names.
    void SetDocumentServer(const std::wstring& url, const std::wstring& certificate) const {
        CAgentRegistry::SetBytes(DocumentKey(), L"MessageServerURL", REG_SZ, BytesOf(url));
        CAgentRegistry::SetBytes(DocumentKey(), L"AdapterCertificate", REG_SZ, BytesOf(certificate));
    }
    [[nodiscard]] std::wstring DocumentKey() const { return m_registry.AgentKey() + L"\\Server"; }
    [[nodiscard]] const CAgentRegistry& Registry() const { return m_registry; }

    [[nodiscard]] static std::wstring DocumentNaming(const std::wstring& path) {
        return L"<agent><serverConfigRegistry>" + path + L"</serverConfigRegistry></agent>";
    }

    /// GetServerInfo with a document, or without one.
    [[nodiscard]] static ServerInfo Load(const std::wstring& document) { return Load(MakeText(document)); }
    [[nodiscard]] static ServerInfo Load(const CVariantValue& configuration = MakeEmpty()) {
        CReceivedText url;
        CReceivedText secondValue;
        CReceivedText certificate;
        const HRESULT result = CRMIConfigLoader::GetServerInfo(configuration.Get(), url.Receive(),
                                                               secondValue.Receive(), certificate.Receive());
        return {result, url.Get(), secondValue.Get(), certificate.Get()};
    }

    // The loader's entries, as Logged has them.
    [[nodiscard]] static std::wstring NoList(HRESULT result) {
        return L"error: Failed to get the message server configuration in function long __cdecl "
               L"CRMIConfigLoader::loadLegancyServerInfo(wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }
    [[nodiscard]] static std::wstring NoSystemForTheLegacyReader(HRESULT result) {
        return L"error: Failed to get system service in function long __cdecl "
               L"CRMIConfigLoader::loadLegancyServerInfo(wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }
    [[nodiscard]] static std::wstring UsingServer(const std::wstring& url) {
        return L"info: Using message server '" + url + L"'.";
    }
    [[nodiscard]] static std::wstring NoKey(HRESULT result) {
        return L"error: Failed to read Policy key's attributes in function long __cdecl "
               L"CRMIConfigLoader::loadCommonServerInfo(wchar_t *,wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }
    [[nodiscard]] static std::wstring NoUrl() {
        return L"error: Failed to read Adapter URL in function long __cdecl "
               L"CRMIConfigLoader::loadCommonServerInfo(wchar_t *,wchar_t **,wchar_t **,wchar_t **)";
    }
    [[nodiscard]] static std::wstring NoCertificate() {
        return L"error: Failed to read Adapter Certificate in function long __cdecl "
               L"CRMIConfigLoader::loadCommonServerInfo(wchar_t *,wchar_t **,wchar_t **,wchar_t **)";
    }
    [[nodiscard]] static std::wstring NoSystemForTheCommonReader(HRESULT result) {
        return L"error: Failed to get system service in function long __cdecl "
               L"CRMIConfigLoader::loadCommonServerInfo(wchar_t *,wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }
    [[nodiscard]] static std::wstring NotLoaded(HRESULT result) {
        return L"error: Failed to load server config in function long __cdecl "
               L"CRMIConfigLoader::GetServerInfo(struct tagVARIANT,wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }
    [[nodiscard]] static std::wstring LegacyNotLoaded(HRESULT result) {
        return L"error: Failed to load legancy server config in function long __cdecl "
               L"CRMIConfigLoader::GetServerInfo(struct tagVARIANT,wchar_t **,wchar_t **,wchar_t **)" +
               ErrorText(result);
    }

private:
    const CAgentRegistry m_registry;
};
