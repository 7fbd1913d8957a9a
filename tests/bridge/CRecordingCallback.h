#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "IDataDumpCallback.h"

/// A host's callback that remembers what it was told. Its life is its owner's; the references that others hold are
/// counted, the owner's own is not one. Any thread; the hook is set before the first report.
class CRecordingCallback final : public IDataDumpCallback {
public:
    using Reports = std::vector<std::pair<ULONG, std::wstring>>;

    CRecordingCallback() = default;

    CRecordingCallback(const CRecordingCallback&) = delete;
    CRecordingCallback& operator=(const CRecordingCallback&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
        if (!IsEqualGUID(interfaceId, IID_IUnknown)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() override {
        const long left = --m_references;
        if (left == 0 && m_lastRelease) {
            m_lastRelease();
        }
        return static_cast<ULONG>(left);
    }
    STDMETHODIMP OnDataDump(ULONG type, const wchar_t* text) override {
        {
            const std::lock_guard<std::mutex> lock(m_lock);
            m_told.emplace_back(type, text);
            m_addresses.push_back(text);
        }
        if (m_hook) {
            m_hook();
        }
        return m_result;
    }

    /// Run inside each report.
    void SetHook(std::function<void()> hook) { m_hook = std::move(hook); }
    /// Run when nobody holds a reference any more.
    void SetLastRelease(std::function<void()> hook) { m_lastRelease = std::move(hook); }
    /// What it answers.
    void SetResult(HRESULT result) { m_result = result; }

    [[nodiscard]] Reports Told() const {
        const std::lock_guard<std::mutex> lock(m_lock);
        return m_told;
    }
    /// Where the texts lay that it was told.
    [[nodiscard]] std::vector<const wchar_t*> Addresses() const {
        const std::lock_guard<std::mutex> lock(m_lock);
        return m_addresses;
    }
    /// Forgets what it was told.
    void Clear() {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_told.clear();
        m_addresses.clear();
    }
    [[nodiscard]] long CountReferences() const { return m_references; }

private:
    std::atomic<long> m_references{0};
    mutable std::mutex m_lock;  // guards what was told
    Reports m_told;
    std::vector<const wchar_t*> m_addresses;
    std::function<void()> m_hook;
    std::function<void()> m_lastRelease;
    HRESULT m_result = S_OK;
};
