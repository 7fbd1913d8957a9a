#include "CBstr.h"
#include "CDataDispatch.h"
#include "CVariant.h"
#include "HostInterface.h"
#include "HostObject.h"
#include "HostProperty.h"

using Microsoft::WRL::ComPtr;

namespace {

namespace Client = Binding::DesktopMessageClient;

constexpr wchar_t kMetaData[] = L"meta-data";
constexpr wchar_t kMetrics[] = L"metrics";

}  // namespace

/// The machine's measurements. Its sessions are the host's of this moment, fetched anew for each sample.
HRESULT CDataDispatch::SendSample() {
    ComPtr<ISessionCollection> sessions;
    if (FAILED(RequireHostInterface(sessions))) {
        return E_FAIL;
    }
    const auto node = QueryHostObject<ISampleNode>(m_item.data);
    const std::shared_ptr<CJavaObject> sample = m_convertor.GetSample(m_context.vm, node.Get(), sessions.Get());
    if (!sample) {
        return E_FAIL;
    }
    std::wstring answer;
    const HRESULT asked = Ask(answer, Client::kOnDataCollected, m_connection, sample);
    return ExecuteAction(asked, answer);
}

HRESULT CDataDispatch::SendExtendedData() {
    ComPtr<IPropertyBox> box;
    const HRESULT queried = QueryPropertyBox(m_item.data, box);
    if (FAILED(queried)) {
        return queried;
    }
    CVariant metaData;
    const HRESULT gotMetaData = ReadObject(*box.Get(), kMetaData, metaData);
    if (FAILED(gotMetaData)) {
        return gotMetaData;
    }
    CVariant metrics;
    const HRESULT gotMetrics = ReadObject(*box.Get(), kMetrics, metrics);
    if (FAILED(gotMetrics)) {
        return gotMetrics;
    }

    const std::shared_ptr<CJavaObject> map =
        m_convertor.GetHashMap(m_context.vm, QueryHostObject<IPropertyBox>(metaData.punkVal).Get());
    if (!map) {
        return E_FAIL;
    }
    const auto enumerator = QueryHostObject<INameValueEnumerator>(metrics.punkVal);
    if (!enumerator) {
        return E_FAIL;
    }
    const auto node = QueryHostObject<ISampleNode>(m_item.data);
    const std::shared_ptr<CJavaObject> sample =
        m_convertor.GetExtendedSample(m_context.vm, node.Get(), enumerator.Get());
    if (!sample) {
        return E_FAIL;
    }
    std::wstring answer;
    const HRESULT asked = Ask(answer, Client::kOnExtendedDataCollected, m_connection, map, sample);
    return ExecuteAction(asked, answer);
}

HRESULT CDataDispatch::SendDesktopPoll() {
    m_desktop.reset();  // kept: only whether the machine can be described counts
    const std::shared_ptr<CJavaString> empty = m_convertor.NewJavaString(m_context.vm, std::wstring(), false);
    if (!empty) {
        return E_FAIL;
    }
    std::wstring answer;
    const HRESULT asked = Ask(answer, Client::kOnDesktopPoll, m_connection, GetJavaId(), empty);
    return ExecuteAction(asked, answer);
}
