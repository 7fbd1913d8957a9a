#pragma once

#include <windows.h>

#include <oleauto.h>
#include <unknwn.h>

/// Carries out the actions that the message server asks for in reply to data.
struct IActionExecutor : IUnknown {
    static constexpr IID kId = {0x545A3670, 0x9230, 0x4402, {0x83, 0x8F, 0x4A, 0xC3, 0x88, 0x27, 0x0E, 0x6A}};

    /// Slot 3. Carries out one action; its result goes back to the caller that handed the data over.
    /// @param action stays the caller's; what is to outlive the call is copied
    virtual HRESULT STDMETHODCALLTYPE Execute(VARIANT action) = 0;

protected:
    ~IActionExecutor() = default;
};
