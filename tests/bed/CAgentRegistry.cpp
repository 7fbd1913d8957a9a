#include "CAgentRegistry.h"

#include <stdexcept>

namespace {

constexpr wchar_t kMakerKey[] = L"Software\\Orvane, Inc.";
constexpr wchar_t kMakerPolicyKey[] = L"Software\\Policies\\Orvane, Inc.";
constexpr wchar_t kAgentSubkey[] = L"\\Desktop Agent";

std::wstring ProductOfThisProcess() {
    return L"Test product " + std::to_wstring(GetCurrentProcessId());
}

/// This process's product below one of the maker's keys.
std::wstring ProductKey(const wchar_t* makerKey) {
    return std::wstring(makerKey) + L"\\" + ProductOfThisProcess();
}

wchar_t* WINAPI CommandLineWithProduct() {
    static std::wstring commandLine = L"host.exe --product=\"" + ProductOfThisProcess() + L"\"";
    return commandLine.data();
}

}  // namespace

CAgentRegistry::CAgentRegistry()
    : m_turn(CreateMutexW(nullptr, FALSE, L"telvar-rmi tests: the agent's registry")),
      m_commandLine(std::make_unique<CImportHook>(GetModuleHandleW(nullptr), "GetCommandLineW",
                                                  AddressOf(&CommandLineWithProduct))) {
    WaitForSingleObject(m_turn, INFINITE);
    RemoveKeys();
}

CAgentRegistry::~CAgentRegistry() {
    RemoveKeys();
    ReleaseMutex(m_turn);
    CloseHandle(m_turn);
}

std::wstring CAgentRegistry::AgentKey() const {
    return ProductKey(kMakerKey) + kAgentSubkey;
}

std::wstring CAgentRegistry::PolicyKey() const {
    return ProductKey(kMakerPolicyKey) + kAgentSubkey;
}

std::wstring CAgentRegistry::BrokerKey() {
    return std::wstring(kMakerKey) + L"\\Orvane Dorsel";
}

std::wstring CAgentRegistry::NodeManagerKey() {
    return BrokerKey() + L"\\Node Manager";
}

void CAgentRegistry::SetAgentText(const wchar_t* name, const std::wstring& text) const {
    SetBytes(AgentKey(), name, REG_SZ, BytesOf(text));
}

void CAgentRegistry::SetBrokerText(const wchar_t* name, const std::wstring& text) {
    SetBytes(BrokerKey(), name, REG_SZ, BytesOf(text));
}

void CAgentRegistry::SetBytes(const std::wstring& key, const wchar_t* name, DWORD type,
                              const std::vector<BYTE>& bytes) {
    // Windows looks behind a text without its closing zero and takes one that it finds there along; no zero is there.
    std::vector<BYTE> guarded(bytes);
    guarded.insert(guarded.end(), {0xAB, 0xAB});
    if (RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, type, guarded.data(),
                        static_cast<DWORD>(bytes.size())) != ERROR_SUCCESS) {
        throw std::runtime_error("the registry refuses a test's value");
    }
}

void CAgentRegistry::RemoveKeys() const {
    for (const wchar_t* const makerKey : {kMakerKey, kMakerPolicyKey}) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, ProductKey(makerKey).c_str());
    }
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, BrokerKey().c_str());
}

std::vector<BYTE> BytesOf(const std::wstring& text, std::size_t zeros) {
    const std::wstring closed = text + std::wstring(zeros, L'\0');
    const auto* const bytes = reinterpret_cast<const BYTE*>(closed.data());
    return {bytes, bytes + closed.size() * sizeof(wchar_t)};
}
