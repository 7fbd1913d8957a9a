#include "CDataDispatch.h"
#include "CVariant.h"
#include "HostInterface.h"
#include "IActionExecutor.h"

namespace {

// Both run together with the error text: hosts know them that way.
constexpr wchar_t kNoExecutor[] = L"Failed to get action executor";
constexpr wchar_t kNotExecuted[] = L"Failed to execute action";

const wchar_t* OrNull(const wchar_t* text) noexcept {
    return text ? text : L"null";
}

}  // namespace

HRESULT CDataDispatch::TellCallbacks(HRESULT asked, DataType type, const wchar_t* failure,
                                     const std::wstring& answer) const {
    if (asked != S_OK) {
        return OrComponents(asked);
    }
    const ServerConfig server = MakeServerConfig(m_item.url, m_item.authToken, m_item.certificate);
    const HRESULT told = m_callbacks.CallCallback(server, type, answer.c_str());
    if (FAILED(told)) {
        m_log.Error(failure, OrNull(m_item.url), OrNull(m_item.authToken), OrNull(m_item.certificate));
    }
    return OrComponents(told);
}

/// The answer is an action that the server asks for; its result is the call's.
HRESULT CDataDispatch::ExecuteAction(HRESULT asked, const std::wstring& answer) const {
    if (asked != S_OK) {
        return OrComponents(asked);
    }
    Microsoft::WRL::ComPtr<IActionExecutor> executor;
    const HRESULT got = RequireHostInterface(executor);
    if (FAILED(got)) {
        m_log.ErrorRunTogether(got, kNoExecutor);
        return got;
    }
    CVariant action;
    action.SetText(answer);
    const HRESULT executed = executor->Execute(action);
    if (FAILED(executed)) {
        m_log.ErrorRunTogether(executed, kNotExecuted);
    }
    return executed;
}
