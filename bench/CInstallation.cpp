#include "CInstallation.h"

#include <windows.h>

#include <cwchar>
#include <stdexcept>

#include "AgentRegistry.h"
#include "BenchPaths.h"

namespace {

void SetText(const std::wstring& key, const wchar_t* name, const wchar_t* text) {
    const auto bytes = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    if (RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text, bytes) != ERROR_SUCCESS) {
        throw std::runtime_error("the registry refuses the installation's values; run as an administrator");
    }
}

}  // namespace

CInstallation::CInstallation() : m_key(AgentKeyPath()) {
    SetText(m_key, L"JrePath", BenchPaths::kRuntime);
    SetText(m_key, L"ClassPath", BenchPaths::kArchives);
    SetText(m_key, L"ConfigDirectory", L"C:\\");
}

CInstallation::~CInstallation() {
    // The agent's key and, above it, the product's, which is this run's own as well.
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, m_key.substr(0, m_key.rfind(L'\\')).c_str());
}
