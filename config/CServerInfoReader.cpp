#include "CServerInfoReader.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <vector>

#include "AgentRegistry.h"
#include "HostInterface.h"
#include "ISystemInfo.h"
#include "RegistryKeyValues.h"
#include "RegistryPath.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kNodeManagerKey[] = L"Software\\Orvane, Inc.\\Orvane Dorsel\\Node Manager";
constexpr wchar_t kLegacyList[] = L"Kelbrin Server URL";
constexpr wchar_t kSeparator[] = L"|";
constexpr wchar_t kMessageServerUrl[] = L"MessageServerURL";
constexpr wchar_t kAdapterCertificate[] = L"AdapterCertificate";

// The signatures are part of the texts, misspelt as they are: hosts compare these.
constexpr wchar_t kLoadLegacy[] =
    L"long __cdecl CRMIConfigLoader::loadLegancyServerInfo(wchar_t **,wchar_t **,wchar_t **)";
constexpr wchar_t kLoadCommon[] =
    L"long __cdecl CRMIConfigLoader::loadCommonServerInfo(wchar_t *,wchar_t **,wchar_t **,wchar_t **)";

constexpr wchar_t kNoList[] = L"Failed to get the message server configuration in function %s";
constexpr wchar_t kNoSystemService[] = L"Failed to get system service in function %s";
constexpr wchar_t kUsingServer[] = L"Using message server '%s'.";
constexpr wchar_t kNoKey[] = L"Failed to read Policy key's attributes in function %s";
constexpr wchar_t kNoUrl[] = L"Failed to read Adapter URL in function %s";
constexpr wchar_t kNoCertificate[] = L"Failed to read Adapter Certificate in function %s";

/// A copy of the value as a text; false for one that has none.
bool AppendText(const VARIANT& value, std::wstring& text) {
    CVariant copy;
    if (FAILED(copy.CopyFrom(value)) || !copy.ChangeToText()) {
        return false;
    }
    text += ViewBstr(copy.bstrVal);
    return true;
}

/// One text of a value: the texts of an array joined with nothing between them. False where the key has no such value.
bool FindText(const RegistryValues& values, const wchar_t* name, std::wstring& text) {
    const auto found = values.find(name);
    if (found == values.end()) {
        return false;
    }
    const VARIANT& value = found->second;
    if (value.vt != (VT_ARRAY | VT_BSTR)) {
        return AppendText(value, text);
    }
    // The array is one that ReadRegistryKeyValues has made: of one dimension, and nobody else's.
    const auto* const elements = static_cast<const BSTR*>(value.parray->pvData);
    for (ULONG i = 0; i < value.parray->rgsabound[0].cElements; ++i) {
        text += ViewBstr(elements[i]);
    }
    return true;
}

}  // namespace

HRESULT CServerInfoReader::loadLegancyServerInfo() {
    std::wstring list;
    const HRESULT read = ReadLegacyList(list);
    if (FAILED(read)) {
        m_log.ErrorWithResult(read, kNoList, kLoadLegacy);
        return read;
    }
    std::vector<std::wstring> fields;
    boost::algorithm::split(fields, list, boost::algorithm::is_any_of(kSeparator));

    m_url.Write(fields.front());
    if (fields.size() >= 2) {
        m_certificate.Write(fields.back());
    }
    if (fields.size() >= 3) {
        m_secondValue.Write(fields[1]);
    } else {
        const HRESULT got = GetUniqueId(kLoadLegacy);
        if (FAILED(got)) {
            return got;
        }
    }
    m_log.Info(kUsingServer, fields.front().c_str());
    return S_OK;
}

HRESULT CServerInfoReader::ReadLegacyList(std::wstring& list) const {
    const HRESULT read = ReadAgentRegistryString(kNodeManagerKey, kLegacyList, list);
    return SUCCEEDED(read) ? read : ReadAgentRegistryString(PolicyKeyPath(), kMessageServerUrl, list);
}

HRESULT CServerInfoReader::loadCommonServerInfo(const std::wstring& path) {
    const RegistryPath key = SplitRegistryPath(path);
    RegistryValues values;
    const HRESULT read = ReadRegistryKeyValues(key.root, key.key, values);
    if (FAILED(read)) {
        m_log.ErrorWithResult(read, kNoKey, kLoadCommon);
        return read;
    }
    std::wstring url;
    if (!FindText(values, kMessageServerUrl, url)) {
        m_log.Error(kNoUrl, kLoadCommon);
        return E_FAIL;
    }
    std::wstring certificate;
    if (!FindText(values, kAdapterCertificate, certificate)) {
        m_log.Error(kNoCertificate, kLoadCommon);
        return E_FAIL;
    }
    m_url.Write(url);
    m_certificate.Write(certificate);
    return GetUniqueId(kLoadCommon);
}

/// The machine's unique id as the second value. Where the host does not want that, it is not asked.
HRESULT CServerInfoReader::GetUniqueId(const wchar_t* reader) {
    if (!m_secondValue.IsWanted()) {
        return S_OK;
    }
    ComPtr<ISystemInfo> systemInfo;
    const HRESULT got = RequireHostInterface(systemInfo);
    if (FAILED(got)) {
        m_log.ErrorWithResult(got, kNoSystemService, reader);
        return got;
    }
    CBstr uniqueId;
    const HRESULT told = systemInfo->get_machineUniqueId(uniqueId.Receive());
    if (FAILED(told)) {
        return told;
    }
    m_secondValue.Give(std::move(uniqueId));
    return S_OK;
}
