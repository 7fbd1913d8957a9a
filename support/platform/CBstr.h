#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string_view>

#include "CUniqueHandle.h"

struct BstrTraits {
    using Handle = BSTR;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle text) noexcept { SysFreeString(text); }
};

/// The text of `text` by its stored length; empty for null, as everywhere in OLE Automation. Valid as long as the BSTR.
[[nodiscard]] inline std::wstring_view ViewBstr(BSTR text) noexcept {
    return {text, SysStringLen(text)};
}

/// Sole owner of a BSTR. Beside `_bstr_t` because it receives out-parameters without a control block of its own and
/// never throws on destruction or receipt; a null BSTR is an empty text, as everywhere in OLE Automation.
class CBstr : public CUniqueHandle<BstrTraits> {
public:
    using CUniqueHandle::CUniqueHandle;

    /// A BSTR holding `text`, embedded zeros included. Throws `_com_error` with E_OUTOFMEMORY.
    [[nodiscard]] static CBstr Make(std::wstring_view text);

    /// The text by its stored length; empty for null. Valid as long as this owner holds the BSTR.
    [[nodiscard]] std::wstring_view GetView() const noexcept { return ViewBstr(Get()); }
    /// The text up to its first zero, for a format's `%s`; never null.
    [[nodiscard]] const wchar_t* GetText() const noexcept { return Get() ? Get() : L""; }
};
