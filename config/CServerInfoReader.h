#pragma once

#include <windows.h>

#include <string>

#include "CBridgeLog.h"
#include "CServerInfoOutput.h"

/// The readers behind CRMIConfigLoader::GetServerInfo, for the length of one call: each looks for the server in places
/// of its own. Their names are those that the log gives them.
class CServerInfoReader {
public:
    CServerInfoReader(CBridgeLog log, wchar_t** url, wchar_t** secondValue, wchar_t** certificate)
        : m_log(std::move(log)), m_url(url), m_secondValue(secondValue), m_certificate(certificate) {}

    CServerInfoReader(const CServerInfoReader&) = delete;
    CServerInfoReader& operator=(const CServerInfoReader&) = delete;

    /// From the legacy list: URL, second value and certificate between bars, of which the first alone has to be there.
    [[nodiscard]] HRESULT loadLegancyServerInfo();
    /// From the values of the key at `path`.
    [[nodiscard]] HRESULT loadCommonServerInfo(const std::wstring& path);

private:
    [[nodiscard]] HRESULT ReadLegacyList(std::wstring& list) const;
    [[nodiscard]] HRESULT GetUniqueId(const wchar_t* reader);

    const CBridgeLog m_log;
    CServerInfoOutput m_url;
    CServerInfoOutput m_secondValue;
    CServerInfoOutput m_certificate;
};
