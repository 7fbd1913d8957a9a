#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

#include <string>

/// IUnknown for an object of the measured host with some interfaces. Whoever made it owns it: references are counted,
/// but the last one ends nothing, so that the host's share of what is measured is small and the same in every variant.
/// On one thread at a time.
template <typename First, typename... Others>
class CLeanObject : public First, public Others... {
public:
    CLeanObject() = default;
    virtual ~CLeanObject() = default;

    CLeanObject(const CLeanObject&) = delete;
    CLeanObject& operator=(const CLeanObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        *object = nullptr;
        if (interfaceId == IID_IUnknown || interfaceId == First::kId) {
            *object = static_cast<First*>(this);
        }
        static_cast<void>(((interfaceId == Others::kId && (*object = static_cast<Others*>(this))) || ...));
        if (!*object) {
            return E_NOINTERFACE;
        }
        ++m_references;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++m_references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--m_references); }

    /// 0 when everybody has given back what he was given.
    [[nodiscard]] long CountReferences() const noexcept { return m_references; }

private:
    long m_references = 0;
};

/// A text for an out-parameter; the caller frees it.
inline HRESULT GiveText(BSTR* given, const std::wstring& text) noexcept {
    *given = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *given ? S_OK : E_OUTOFMEMORY;
}

/// An object, which may be null, for an out-parameter; one reference goes to the caller.
template <typename Interface>
HRESULT GiveObject(Interface** given, Interface* object) noexcept {
    *given = object;
    if (!object) {
        return E_FAIL;
    }
    object->AddRef();
    return S_OK;
}
