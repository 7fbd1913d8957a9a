#pragma once

#include <windows.h>

#include <oleauto.h>

#include <optional>
#include <string>

/// What becomes of a metric's value.
struct ModelMetricValue {
    enum class Kind { eInvalid, eLong, eDouble, eText };

    Kind kind = Kind::eInvalid;
    std::string number{};  ///< as a call of Java's shows it
    std::wstring text{};
};

/// By the whole type: eight kinds of numbers and texts are taken, nothing else.
[[nodiscard]] ModelMetricValue ModelMetric(const VARIANT& value);

/// The text of a value: what the system makes of it in its type's own way. Nothing where it makes none, and where the
/// value refers to nothing.
[[nodiscard]] std::optional<std::wstring> ModelText(const VARIANT& value);

/// What the system says to making an object of the value, which `object` receives, not referenced.
[[nodiscard]] HRESULT ModelObject(const VARIANT& value, IUnknown*& object);
