#pragma once

#include <windows.h>

#include <oaidl.h>
#include <oleauto.h>
#include <unknwn.h>
#include <wrl/client.h>

#include <new>
#include <string>
#include <utility>

#include "CReferenceCount.h"

/// The ID under which an object answers for an interface. The library's headers keep it in the interface; other
/// interfaces have a specialisation.
template <typename Interface>
inline constexpr const IID& kIdOf = Interface::kId;
template <>
inline constexpr const IID& kIdOf<IClassFactory> = IID_IClassFactory;
template <>
inline constexpr const IID& kIdOf<IRecordInfo> = IID_IRecordInfo;

/// IUnknown for an object with some interfaces. It begins with one reference, which is its maker's, and ends with the
/// last; any thread may hold it. IUnknown itself is the first interface's, always the same one, as COM demands.
template <typename First, typename... Others>
class CComObject : public First, public Others..., private CReferenceCount {
public:
    CComObject(const CComObject&) = delete;
    CComObject& operator=(const CComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (interfaceId == IID_IUnknown || interfaceId == kIdOf<First>) {
            *object = static_cast<First*>(this);
        }
        static_cast<void>(((interfaceId == kIdOf<Others> && (*object = static_cast<Others*>(this))) || ...));
        if (!*object) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return CountUp(); }
    ULONG STDMETHODCALLTYPE Release() override { return CountDown(); }

protected:
    CComObject() = default;
    ~CComObject() override = default;
};

/// A new object for the host's own use. Throws std::bad_alloc.
template <typename Object, typename... Arguments>
Microsoft::WRL::ComPtr<Object> MakeComObject(Arguments&&... arguments) {
    Microsoft::WRL::ComPtr<Object> object;
    object.Attach(new Object(std::forward<Arguments>(arguments)...));
    return object;
}

/// A new object for an out-parameter. Nothing is thrown across a COM interface.
template <typename Object, typename Interface, typename... Arguments>
HRESULT GiveNewObject(Interface** given, Arguments&&... arguments) noexcept {
    *given = new (std::nothrow) Object(std::forward<Arguments>(arguments)...);
    return *given ? S_OK : E_OUTOFMEMORY;
}

/// A text for an out-parameter; the caller frees it.
inline HRESULT GiveText(BSTR* given, const std::wstring& text) noexcept {
    *given = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *given ? S_OK : E_OUTOFMEMORY;
}
