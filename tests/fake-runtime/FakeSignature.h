#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A JNI method signature taken apart: "(ILjava/lang/String;)V".
struct FakeSignature {
    std::string text;
    std::vector<std::string> parameters;  // "I", "Ljava/lang/String;"
    std::string result;
};

/// Nothing when `text` is no signature.
[[nodiscard]] std::optional<FakeSignature> ParseSignature(std::string_view text);

/// Whether a type, as it stands in a signature, is one of references.
[[nodiscard]] bool IsReferenceType(std::string_view type);
