#pragma once

#include <memory>
#include <string_view>

#include "CJNIConvertor.h"
#include "HostWalk.h"

/// Shows each value that Java can have as a text to `visit(std::wstring_view name, const
/// std::shared_ptr<CJavaString>& key, const std::shared_ptr<CJavaString>& value)`; `key` is the name. A value that
/// cannot become a text is an empty one.
template <typename Visit>
void WalkTexts(const CJNIConvertor& convertor, const std::shared_ptr<CJavaVM>& vm, INameValueEnumerator* values,
               const Visit& visit) {
    WalkValues(*vm, values, [&](std::wstring_view name, CVariant& value) {
        const std::shared_ptr<CJavaString> key = convertor.NewJavaString(vm, name, false);
        const bool isText = value.ChangeToText();
        const std::shared_ptr<CJavaString> text =
            convertor.NewJavaString(vm, isText ? ViewBstr(value.bstrVal) : std::wstring_view(), false);
        if (key && text) {
            visit(name, key, text);
        }
    });
}
