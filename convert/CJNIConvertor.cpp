#include "CJNIConvertor.h"

#include "CBstr.h"

namespace {

constexpr wchar_t kNoString[] = L"Failed to create a new Java string for %s.  %s";
constexpr wchar_t kNoSecretString[] = L"Failed to create a new Java string.  %s";

}  // namespace

std::shared_ptr<CJavaString> CJNIConvertor::NewJavaString(const std::shared_ptr<CJavaVM>& vm, std::wstring_view text,
                                                          bool hideValue) const {
    std::shared_ptr<CJavaString> string = vm->NewString(text);
    if (string) {
        return string;
    }
    const std::wstring exceptionText = vm->TakeExceptionText();
    if (hideValue) {
        m_log.Error(kNoSecretString, exceptionText.c_str());
    } else {
        m_log.Error(kNoString, std::wstring(text).c_str(), exceptionText.c_str());
    }
    return {};
}

CJNIConvertor::JavaText CJNIConvertor::NewJavaString(const std::shared_ptr<CJavaVM>& vm, BSTR text) const {
    return NewJavaString(vm, ViewBstr(text), false);
}
