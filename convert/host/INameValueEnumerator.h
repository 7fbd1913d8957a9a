#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

/// Walks pairs of name and value (metrics, properties, instances of an extended metric), once, from first to last. The
/// value of an extended metric is an interface that answers to this one, for the values of its instances.
struct INameValueEnumerator : IUnknown {
    static constexpr IID kId = {0xA570A90F, 0x11C1, 0x4935, {0x87, 0x88, 0xEA, 0xFB, 0x4D, 0x31, 0x15, 0xAA}};

    // Slot 3: the host's own. The library never calls it.
    virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;

    /// Slot 4. S_OK with the next pair; any other result ends the walk.
    /// @param name  receives the name; the caller frees it
    /// @param value receives the value in an initialised VARIANT; the caller clears it
    virtual HRESULT STDMETHODCALLTYPE Next(BSTR* name, VARIANT* value) = 0;

protected:
    ~INameValueEnumerator() = default;
};
