#include "CEndingHost.h"

#include <objbase.h>

#include <cstdio>
#include <stdexcept>

#include "TestPaths.h"

namespace {

void SetText(const std::wstring& product, const wchar_t* name, const std::wstring& text) {
    const std::wstring key = L"Software\\Orvane, Inc.\\" + product + L"\\Desktop Agent";
    if (RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) != ERROR_SUCCESS) {
        throw std::runtime_error("the registry refuses the installation");
    }
}

}  // namespace

CEndingHost::CEndingHost(const std::wstring& product) {
    SetText(product, L"JrePath", TestPaths::kRealRuntime);
    SetText(product, L"ClassPath", TestPaths::kRecordingClientFolder);
    SetText(product, L"LogDirectory", L"C:\\Logs");
    SetText(product, L"ConfigDirectory", L"C:\\Config");
    if (CoInitializeEx(nullptr, COINIT_MULTITHREADED) != S_OK) {
        throw std::runtime_error("COM cannot be initialised");
    }
    m_registration = std::make_unique<CInProcessClassObject>(m_host.MakeClassObject().Get());
}

void CEndingHost::Expect(bool isSo, const char* expectation) {
    if (!isSo) {
        std::printf("NOT SO: %s\n", expectation);
        m_failed = true;
    }
}

bool CEndingHost::HasLogged(const std::wstring& ending) {
    for (const HostLogEntry& entry : m_host.Log().GetEntries()) {
        if (entry.text.size() >= ending.size() &&
            entry.text.compare(entry.text.size() - ending.size(), ending.size(), ending) == 0) {
            return true;
        }
    }
    return false;
}

void CEndingHost::ExpectReleased() {
    m_registration.reset();
    const std::string held = m_host.Close();
    Expect(held.empty(), ("the host's objects are released: " + held).c_str());
    Expect(m_host.Record().GetViolations().empty(), "the host's rules are kept");
}
