#pragma once

#include <windows.h>

#include <atomic>
#include <memory>
#include <new>
#include <utility>

#include "CCallRecord.h"
#include "IDataDumpCallback.h"

/// A host's callback that fails when the host's record says so. Its life is its owner's.
class CFailingCallback final : public IDataDumpCallback {
public:
    CFailingCallback() = default;

    CFailingCallback(const CFailingCallback&) = delete;
    CFailingCallback& operator=(const CFailingCallback&) = delete;

    void SetRecord(std::shared_ptr<CCallRecord> record) { m_record = std::move(record); }

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--m_references); }
    STDMETHODIMP OnDataDump(ULONG, const wchar_t*) override {
        try {
            return m_record->Enter("IDataDumpCallback::OnDataDump", "Callback: OnDataDump").result;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

    [[nodiscard]] long CountReferences() const { return m_references; }

private:
    std::atomic<long> m_references{0};
    std::shared_ptr<CCallRecord> m_record;
};
