#include "CConversionBuffer.h"

#include <algorithm>
#include <cwchar>
#include <limits>

#include "ThrowResult.h"

namespace {

/// A length as the system's conversions take it.
int ToSystemLength(std::size_t length) {
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        ThrowResult(E_INVALIDARG);
    }
    return static_cast<int>(length);
}

/// The result of asking for the converted length; 0 is the system's word for failure, as the source is not empty.
std::size_t RequireLength(int length) {
    if (length == 0) {
        ThrowLastError();
    }
    return static_cast<std::size_t>(length);
}

}  // namespace

CWideCopy::CWideCopy(const wchar_t* text) {
    if (text) {
        const std::size_t length = std::wcslen(text);
        std::copy_n(text, length, Prepare(length));
    }
}

CWideFromNarrow::CWideFromNarrow(const char* text, UINT codePage) {
    if (text) {
        Convert(text, codePage);
    }
}

CWideFromNarrow::CWideFromNarrow(std::string_view text, UINT codePage) {
    Convert(text, codePage);
}

void CWideFromNarrow::Convert(std::string_view text, UINT codePage) {
    if (text.empty()) {
        Prepare(0);
        return;
    }
    const int length = ToSystemLength(text.size());
    const std::size_t wideLength = RequireLength(MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0));
    wchar_t* const wide = Prepare(wideLength);
    MultiByteToWideChar(codePage, 0, text.data(), length, wide, ToSystemLength(wideLength));
}

CNarrowFromWide::CNarrowFromWide(std::wstring_view text, UINT codePage) {
    if (text.empty()) {
        Prepare(0);
        return;
    }
    const int length = ToSystemLength(text.size());
    const std::size_t narrowLength =
        RequireLength(WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr));
    char* const narrow = Prepare(narrowLength);
    WideCharToMultiByte(codePage, 0, text.data(), length, narrow, ToSystemLength(narrowLength), nullptr, nullptr);
}
