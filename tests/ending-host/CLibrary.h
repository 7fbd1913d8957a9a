#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "CRMICommManager.h"
#include "SystemHandles.h"
#include "TestPaths.h"

/// The library as a host has it that loads it by its file's name and knows nothing but the names it exports. Any thread
/// may call while it is loaded.
class CLibrary {
public:
    CLibrary() : m_module(LoadLibraryW(TestPaths::kProduct)) {
        if (!m_module) {
            throw std::runtime_error("the library does not load");
        }
        m_getInstance = Find<GetInstance>("_ZN15CRMICommManager11GetInstanceEv");
        m_dumpData = Find<DumpData>("_ZN15CRMICommManager8DumpDataI8IUnknownEElPKwS3_S3_yhPT_");
        m_register = Find<Registration>("_ZN15CRMICommManager24RegisterDataDumpCallbackEPKwS1_S1_P17IDataDumpCallback");
        m_unregister =
            Find<Registration>("_ZN15CRMICommManager26UnregisterDataDumpCallbackEPKwS1_S1_P17IDataDumpCallback");
    }

    /// Sends an item under the URL, a fixed token and a fixed certificate.
    long Dump(const std::wstring& url, unsigned char type) const {
        return m_dumpData(&m_getInstance(), url.c_str(), L"token", L"certificate", 1, type, nullptr);
    }
    long Register(const std::wstring& url, IDataDumpCallback* callback) const {
        return m_register(&m_getInstance(), url.c_str(), L"token", L"certificate", callback);
    }
    long Unregister(const std::wstring& url, IDataDumpCallback* callback) const {
        return m_unregister(&m_getInstance(), url.c_str(), L"token", L"certificate", callback);
    }

    /// Frees it, and tells whether it is gone from the process.
    bool Free() {
        m_module.Reset();
        return GetModuleHandleW(L"telvar-rmi.dll") == nullptr;
    }

    /// Leaves it loaded for good.
    void Keep() { static_cast<void>(m_module.Detach()); }

private:
    using GetInstance = CRMICommManager& (*)();
    using DumpData = long (*)(CRMICommManager*, const wchar_t*, const wchar_t*, const wchar_t*, unsigned __int64,
                              unsigned char, IUnknown*);
    using Registration = long (*)(CRMICommManager*, const wchar_t*, const wchar_t*, const wchar_t*, IDataDumpCallback*);

    template <typename Function>
    [[nodiscard]] Function Find(const char* name) const {
        void* const function = reinterpret_cast<void*>(GetProcAddress(m_module.Get(), name));
        if (!function) {
            throw std::runtime_error(std::string("the library does not export ") + name);
        }
        return reinterpret_cast<Function>(function);
    }

    CModule m_module;
    GetInstance m_getInstance = nullptr;
    DumpData m_dumpData = nullptr;
    Registration m_register = nullptr;
    Registration m_unregister = nullptr;
};
