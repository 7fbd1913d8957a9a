#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

struct INameValueEnumerator;

/// Values under names.
struct IPropertyBox : IUnknown {
    static constexpr IID kId = {0x6AF5CC36, 0xC4D7, 0x4890, {0xAA, 0xE3, 0xA3, 0x9C, 0x31, 0x65, 0x4D, 0x5D}};

    /// Slot 3. All values with their names.
    /// @param properties receives a new enumerator; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) = 0;
    /// Slot 4. The value under one name; a failure says that there is none.
    /// @param name  stays the caller's
    /// @param value receives the value in an initialised VARIANT; the caller clears it
    virtual HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) = 0;

protected:
    ~IPropertyBox() = default;
};
