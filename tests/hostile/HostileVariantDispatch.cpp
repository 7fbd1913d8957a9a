#include "HostileVariantDispatch.h"

#include <gtest/gtest.h>

CHostileDispatch::~CHostileDispatch() {
    EXPECT_EQ(m_references, 0) << "references to a value's object are left";
}

HRESULT CHostileDispatch::QueryInterface(REFIID interfaceId, void** object) noexcept {
    const bool isKnown = IsEqualGUID(interfaceId, IID_IUnknown) || IsEqualGUID(interfaceId, IID_IDispatch);
    *object = isKnown ? this : nullptr;
    if (isKnown) {
        AddRef();
    }
    return isKnown ? S_OK : E_NOINTERFACE;
}

HRESULT CHostileDispatch::GetTypeInfoCount(UINT* count) noexcept {
    *count = 0;
    return S_OK;
}

HRESULT CHostileDispatch::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) noexcept {
    *info = nullptr;
    return E_NOTIMPL;
}

HRESULT CHostileDispatch::GetIDsOfNames(REFIID /*interfaceId*/, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/,
                                        DISPID* /*ids*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CHostileDispatch::Invoke(DISPID /*id*/, REFIID /*interfaceId*/, LCID /*locale*/, WORD /*flags*/,
                                 DISPPARAMS* /*parameters*/, VARIANT* given, EXCEPINFO* /*exception*/,
                                 UINT* /*badArgument*/) noexcept {
    if (given && SUCCEEDED(result)) {
        given->vt = VT_I4;
        given->lVal = value;
    }
    return result;
}
