#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

/// The host's log. The library calls it on whichever thread has something to say, perhaps while it holds its own lock:
/// a logger that calls back into the library on the same thread is served or refused, never deadlocked. Such a call
/// logs in its turn: a logger must not answer every entry with one. In each operation both texts stay the caller's;
/// results are ignored.
struct IHostLogger : IUnknown {
    static constexpr IID kId = {0xD320790B, 0xD7C2, 0x4757, {0xA1, 0xCA, 0x8C, 0x0F, 0x82, 0x97, 0x58, 0x45}};

    // Slots 3 to 8: the host's own. The library never calls them.
    virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved4() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved5() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved6() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved7() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;

    /// Slot 9. A failure.
    virtual HRESULT STDMETHODCALLTYPE LogError(BSTR component, BSTR message) = 0;
    /// Slot 10. Trouble that was overcome.
    virtual HRESULT STDMETHODCALLTYPE LogWarning(BSTR component, BSTR message) = 0;
    /// Slot 11. A milestone.
    virtual HRESULT STDMETHODCALLTYPE LogInfo(BSTR component, BSTR message) = 0;
    /// Slot 12. A detail of the given level; the library always passes 8.
    virtual HRESULT STDMETHODCALLTYPE LogVerbose(BSTR component, LONG level, BSTR message) = 0;

protected:
    ~IHostLogger() = default;
};
