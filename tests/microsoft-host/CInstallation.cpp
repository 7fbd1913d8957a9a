#include "CInstallation.h"

#include <windows.h>

#include <shellapi.h>

namespace {

constexpr wchar_t kMakerKey[] = L"Software\\Orvane, Inc.";
constexpr wchar_t kAgentKey[] = L"Desktop Agent";
constexpr wchar_t kOwnMachineKey[] = L"Own machine";

struct AgentValue {
    const wchar_t* name;
    const wchar_t* option;
};
constexpr AgentValue kAgentValues[] = {
    {L"JrePath", L"--jre="},
    {L"ClassPath", L"--classes="},
    {L"LogDirectory", L"--folder="},
    {L"ConfigDirectory", L"--folder="},
};

/// The process's command line, taken apart.
class CCommandLine {
public:
    CCommandLine() : m_arguments(CommandLineToArgvW(GetCommandLineW(), &m_count)) {}
    ~CCommandLine() { LocalFree(m_arguments); }

    CCommandLine(const CCommandLine&) = delete;
    CCommandLine& operator=(const CCommandLine&) = delete;

    /// What follows `option`; null when it is not given.
    [[nodiscard]] const wchar_t* Find(const wchar_t* option) const {
        const int length = lstrlenW(option);
        for (int i = 1; m_arguments && i < m_count; ++i) {
            if (CompareStringOrdinal(m_arguments[i], length, option, length, FALSE) == CSTR_EQUAL) {
                return m_arguments[i] + length;
            }
        }
        return nullptr;
    }

private:
    int m_count = 0;
    wchar_t** m_arguments;
};

/// An open key; none when it could not be opened or made.
class CKey {
public:
    CKey(HKEY parent, const wchar_t* path) {
        if (RegCreateKeyExW(parent, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_key, nullptr) != ERROR_SUCCESS) {
            m_key = nullptr;
        }
    }
    ~CKey() {
        if (m_key) {
            RegCloseKey(m_key);
        }
    }

    CKey(const CKey&) = delete;
    CKey& operator=(const CKey&) = delete;

    [[nodiscard]] HKEY Get() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

bool WriteText(HKEY key, const wchar_t* name, const wchar_t* text) {
    const auto size = static_cast<DWORD>((static_cast<DWORD>(lstrlenW(text)) + 1) * sizeof(wchar_t));
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size) == ERROR_SUCCESS;
}

}  // namespace

bool CInstallation::Install() {
    const CCommandLine commandLine;
    const wchar_t* const product = commandLine.Find(L"--product=");
    if (!product || lstrlenW(product) == 0 || lstrlenW(product) >= static_cast<int>(ARRAYSIZE(m_product))) {
        return false;
    }
    lstrcpynW(m_product, product, ARRAYSIZE(m_product));

    const CKey maker(HKEY_LOCAL_MACHINE, kMakerKey);
    const CKey ofProduct(maker.Get(), m_product);
    const CKey agent(ofProduct.Get(), kAgentKey);
    for (const AgentValue& value : kAgentValues) {
        const wchar_t* const text = commandLine.Find(value.option);
        if (!text || !WriteText(agent.Get(), value.name, text)) {
            return false;
        }
    }
    return true;
}

bool CInstallation::Remove() const {
    const CKey maker(HKEY_LOCAL_MACHINE, kMakerKey);
    // An empty name would mean the maker's key itself.
    return m_product[0] != L'\0' && RegDeleteTreeW(maker.Get(), m_product) == ERROR_SUCCESS;
}

bool CInstallation::EnterOwnMachine() const {
    const CKey maker(HKEY_LOCAL_MACHINE, kMakerKey);
    const CKey ofProduct(maker.Get(), m_product);
    const CKey machine(ofProduct.Get(), kOwnMachineKey);
    return machine.Get() && RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine.Get()) == ERROR_SUCCESS;
}

bool CInstallation::LeaveOwnMachine() {
    return RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr) == ERROR_SUCCESS;
}

bool CInstallation::WriteMachineText(const wchar_t* key, const wchar_t* name, const wchar_t* text) {
    const CKey opened(HKEY_LOCAL_MACHINE, key);
    return WriteText(opened.Get(), name, text);
}
