#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "CImportHook.h"

/// The registry keys of a host's installation, in the real registry, for the length of one test: a product of its own
/// name for this process, which the process's command line names meanwhile. The keys that all products share belong to
/// one test at a time, across processes.
class CAgentRegistry {
public:
    CAgentRegistry();
    ~CAgentRegistry();

    CAgentRegistry(const CAgentRegistry&) = delete;
    CAgentRegistry& operator=(const CAgentRegistry&) = delete;

    [[nodiscard]] std::wstring AgentKey() const;
    [[nodiscard]] std::wstring PolicyKey() const;
    [[nodiscard]] static std::wstring BrokerKey();
    [[nodiscard]] static std::wstring NodeManagerKey();

    /// Values of the agent's and of the broker agent's key; the key is made when it is missing.
    void SetAgentText(const wchar_t* name, const std::wstring& text) const;
    static void SetBrokerText(const wchar_t* name, const std::wstring& text);
    static void SetBytes(const std::wstring& key, const wchar_t* name, DWORD type, const std::vector<BYTE>& bytes);

private:
    void RemoveKeys() const;

    HANDLE m_turn;
    std::unique_ptr<CImportHook> m_commandLine;
};

/// The bytes of a text, with as many closing zeros as asked for.
[[nodiscard]] std::vector<BYTE> BytesOf(const std::wstring& text, std::size_t zeros = 1);
