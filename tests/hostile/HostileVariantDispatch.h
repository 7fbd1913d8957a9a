#pragma once

#include <windows.h>

#include <oleauto.h>

/// A default property, asked by whoever makes a text of a VT_DISPATCH. Its references are counted: all are given back
/// before it dies.
class CHostileDispatch final : public IDispatch {
public:
    CHostileDispatch() = default;
    virtual ~CHostileDispatch();

    CHostileDispatch(const CHostileDispatch&) = delete;
    CHostileDispatch& operator=(const CHostileDispatch&) = delete;

    HRESULT result = S_OK;
    LONG value = 0;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return static_cast<ULONG>(--m_references); }
    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept override;
    STDMETHODIMP GetIDsOfNames(REFIID interfaceId, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) noexcept override;
    STDMETHODIMP Invoke(DISPID id, REFIID interfaceId, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* given,
                        EXCEPINFO* exception, UINT* badArgument) noexcept override;

private:
    long m_references = 0;
};
