#pragma once

#include <windows.h>

#include <unknwn.h>

/// The host's service object, from which the library gets every other object of the host's. The host registers its
/// class; the library creates an object of it for each fetch and releases it at once. Callable on any thread.
struct IHostServiceProvider : IUnknown {
    static constexpr IID kId = {0xE6A5AF92, 0x7B4C, 0x4B33, {0xBF, 0x40, 0xF6, 0x8E, 0x4D, 0xA7, 0x4A, 0xA5}};

    // Slots 3 to 6: the host's own. The library never calls them.
    virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved4() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved5() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved6() = 0;

    /// Slot 7. The host's object for `interfaceId`.
    /// @param object receives any interface of that object; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE GetHostObject(REFIID interfaceId, IUnknown** object) = 0;

protected:
    ~IHostServiceProvider() = default;
};
