#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

struct IInstanceEnumerator;
struct INameValueEnumerator;

/// A node of a sample: the machine, one of its sessions (keyed by the session id as decimal text), or one of a
/// session's remote applications (keyed by the application's id).
struct ISampleNode : IUnknown {
    static constexpr IID kId = {0xC4FABE5D, 0x60DF, 0x4AE7, {0xA7, 0x35, 0x1D, 0xD5, 0x67, 0xCD, 0x2F, 0x2B}};

    // Slots 3 to 6: the host's own. The library never calls them.
    virtual HRESULT STDMETHODCALLTYPE Reserved3() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved4() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved5() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved6() = 0;

    /// Slot 7. When the sample was taken.
    /// @param time receives days since 1899-12-30, in UTC
    virtual HRESULT STDMETHODCALLTYPE get_time(DATE* time) = 0;
    /// Slot 8. The nodes below this one.
    /// @param instances receives a new enumerator; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE get_instances(IInstanceEnumerator** instances) = 0;
    /// Slot 9. What was measured at this node.
    /// @param metrics receives a new enumerator; one reference goes to the caller
    /// @param flag    the library always passes 1
    virtual HRESULT STDMETHODCALLTYPE get_metrics(INameValueEnumerator** metrics, LONG flag) = 0;

protected:
    ~ISampleNode() = default;
};
