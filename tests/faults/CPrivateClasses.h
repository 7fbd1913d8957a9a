#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "SystemHandles.h"

/// While it lives, what this process reads and writes below HKEY_CLASSES_ROOT lies in a key of its own, which is empty
/// in the beginning and each time it is cleared.
class CPrivateClasses {
public:
    CPrivateClasses() {
        Check(RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, m_key.Receive(), nullptr));
        Check(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_key.Get()));
    }
    ~CPrivateClasses() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        m_key.Reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    }

    CPrivateClasses(const CPrivateClasses&) = delete;
    CPrivateClasses& operator=(const CPrivateClasses&) = delete;

    void Clear() const { RegDeleteTreeW(m_key.Get(), nullptr); }

private:
    static void Check(LSTATUS status) {
        if (status != ERROR_SUCCESS) {
            throw std::runtime_error("the registry refuses a test's key");
        }
    }

    const std::wstring m_path{L"Software\\telvar-rmi tests: classes of " + std::to_wstring(GetCurrentProcessId())};
    CRegistryKey m_key;
};
