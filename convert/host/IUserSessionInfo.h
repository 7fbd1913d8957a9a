#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

struct IPropertyBox;

/// One user session.
struct IUserSessionInfo : IUnknown {
    static constexpr IID kId = {0x0F46AB8A, 0xA37C, 0x40CA, {0x95, 0x92, 0x2B, 0xF0, 0xF7, 0x18, 0xAC, 0x87}};

    /// Slot 3. What else there is to say of the session.
    /// @param properties receives the properties; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE get_propertyBox(IPropertyBox** properties) = 0;
    /// Slot 4. @param id receives the session id
    virtual HRESULT STDMETHODCALLTYPE get_id(LONG* id) = 0;
    /// Slot 5. @param sid receives the text of the user's security identifier; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_sid(BSTR* sid) = 0;
    /// Slot 6. @param user receives the user's name; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_user(BSTR* user) = 0;
    /// Slot 7. @param domain receives the name of the user's domain; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_domain(BSTR* domain) = 0;
    /// Slot 8. @param state receives the connection state; 1, and nothing else, means connected
    virtual HRESULT STDMETHODCALLTYPE get_state(SHORT* state) = 0;

    // Slots 9 to 13: the host's own. The library never calls them.
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved13() = 0;

    /// Slot 14. @param label receives the user as failure messages name him; the caller frees it
    virtual HRESULT STDMETHODCALLTYPE get_userLabel(BSTR* label) = 0;

protected:
    ~IUserSessionInfo() = default;
};
