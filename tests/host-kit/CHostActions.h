#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

struct HostAction {
    VARTYPE type;
    std::string text;  ///< as DescribeValue gives it
    DWORD threadId;
};

/// What a host's executor was asked to do, in order, and what it answers. Any thread.
class CHostActions {
public:
    [[nodiscard]] std::vector<HostAction> GetEntries() const;
    void Clear();

    /// The result of each action from now on; S_OK from the start.
    void SetResult(HRESULT result);
    /// Decides the result in place of SetResult's, after the action has been noted, without a lock held.
    void SetOnExecute(std::function<HRESULT(const VARIANT&)> hook);

    // For the executor.
    [[nodiscard]] HRESULT Execute(const VARIANT& action);

private:
    mutable std::mutex m_lock;
    std::vector<HostAction> m_entries;
    HRESULT m_result = S_OK;
    std::function<HRESULT(const VARIANT&)> m_onExecute;
};
