#include "ErrorText.h"

namespace {

struct ErrorFormat {
    const wchar_t* withSystemText;
    const wchar_t* withoutSystemText;
};

// In the order of ErrorTextForm.
constexpr ErrorFormat kErrorFormats[] = {
    {L"  Error code 0x%08lx -- %s", L"  Error code 0x%08lx."},
    {L"Error code 0x%08lx -- %s", L"Error code 0x%08lx."},
    {L"0x%08lx -- %s", L"0x%08lx."},
};

const ErrorFormat& FormatOf(ErrorTextForm form) {
    return kErrorFormats[static_cast<std::size_t>(form)];
}

}  // namespace

CLocalText FindSystemText(HRESULT result) noexcept {
    CLocalText text;
    FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                   static_cast<DWORD>(result), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                   reinterpret_cast<wchar_t*>(text.Receive()), 0, nullptr);
    return text;
}

CWideString MakeErrorFormat(const wchar_t* message, ErrorTextForm form, bool hasSystemText) {
    const ErrorFormat& suffix = FormatOf(form);
    CWideString format{std::wstring_view(message)};
    format.Append(hasSystemText ? suffix.withSystemText : suffix.withoutSystemText);
    return format;
}

CWideString AppendErrorCode(CWideString text, HRESULT result) {
    text.Append(CWideString::Format(FormatOf(ErrorTextForm::eSuffix).withoutSystemText, result).GetView());
    return text;
}
