#pragma once

#include <windows.h>

#include "CUniqueHandle.h"
#include "CWideString.h"

/// How the text of a result is joined to the message in front of it. Hosts compare these texts; each form has a variant
/// for results that the system has no text for.
enum class ErrorTextForm {
    eSuffix,       ///< two blanks, "Error code", the code, the system's text
    eRunTogether,  ///< the same without the blanks
    eBare,         ///< the code and the system's text alone
};

struct LocalTextTraits {
    using Handle = wchar_t*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle text) noexcept { LocalFree(text); }
};
/// A text from the system's local heap.
using CLocalText = CUniqueHandle<LocalTextTraits>;

/// The system's own text for `result`, with its closing line break; empty when it has none.
[[nodiscard]] CLocalText FindSystemText(HRESULT result) noexcept;

/// `message` followed by the format of the error text, to be formatted with the message's arguments, the result, and,
/// where `hasSystemText`, the system's text.
[[nodiscard]] CWideString MakeErrorFormat(const wchar_t* message, ErrorTextForm form, bool hasSystemText);

/// `message`, one of the library's own literals, formatted together with the error text of `result`: directives in the
/// message take `arguments`. Throws CHresultException when memory is exhausted.
template <typename... Arguments>
[[nodiscard]] CWideString FormatWithErrorText(ErrorTextForm form, HRESULT result, const wchar_t* message,
                                              Arguments... arguments) {
    const CLocalText systemText = FindSystemText(result);
    const CWideString format = MakeErrorFormat(message, form, static_cast<bool>(systemText));
    return systemText ? CWideString::Format(format.GetText(), arguments..., result, systemText.Get())
                      : CWideString::Format(format.GetText(), arguments..., result);
}

/// `text`, which is formatted already, followed by the code of `result` alone: for warnings whose code is not looked
/// up.
[[nodiscard]] CWideString AppendErrorCode(CWideString text, HRESULT result);
