#pragma once

#include <windows.h>

#include <unknwn.h>

struct IUserSessionInfo;

/// The user sessions of the machine.
struct ISessionCollection : IUnknown {
    static constexpr IID kId = {0xC0781D6C, 0x5265, 0x496A, {0x99, 0x33, 0xB1, 0x53, 0x92, 0x86, 0x4F, 0x81}};

    /// Slot 3. The session with this id; a failure says that there is none.
    /// @param session receives the session; one reference goes to the caller
    virtual HRESULT STDMETHODCALLTYPE GetSession(LONG id, IUserSessionInfo** session) = 0;

protected:
    ~ISessionCollection() = default;
};
