#include "CHostActions.h"

#include <utility>

#include "HostText.h"

std::vector<HostAction> CHostActions::GetEntries() const {
    const std::lock_guard<std::mutex> lock(m_lock);
    return m_entries;
}

void CHostActions::Clear() {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_entries.clear();
}

void CHostActions::SetResult(HRESULT result) {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_result = result;
}

void CHostActions::SetOnExecute(std::function<HRESULT(const VARIANT&)> hook) {
    const std::lock_guard<std::mutex> lock(m_lock);
    m_onExecute = std::move(hook);
}

HRESULT CHostActions::Execute(const VARIANT& action) {
    HostAction entry{action.vt, DescribeValue(action), GetCurrentThreadId()};
    std::function<HRESULT(const VARIANT&)> onExecute;
    HRESULT result = S_OK;
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_entries.push_back(std::move(entry));
        onExecute = m_onExecute;
        result = m_result;
    }
    return onExecute ? onExecute(action) : result;
}
