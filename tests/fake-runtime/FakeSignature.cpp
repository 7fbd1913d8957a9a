#include "FakeSignature.h"

#include <cstddef>

namespace {

/// Length of the type that `text` begins with; 0 when it begins with none.
std::size_t MeasureType(std::string_view text) {
    const std::size_t element = text.find_first_not_of('[');
    if (element == std::string_view::npos) {
        return 0;
    }
    if (text[element] == 'L') {
        const std::size_t end = text.find(';', element);
        return end == std::string_view::npos ? 0 : end + 1;
    }
    return std::string_view("ZBCSIJFD").find(text[element]) == std::string_view::npos ? 0 : element + 1;
}

}  // namespace

std::optional<FakeSignature> ParseSignature(std::string_view text) {
    FakeSignature signature;
    signature.text = text;
    if (text.empty() || text[0] != '(') {
        return std::nullopt;
    }
    std::string_view rest = text.substr(1);
    while (const std::size_t length = MeasureType(rest)) {
        signature.parameters.emplace_back(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    if (rest.empty() || rest[0] != ')') {
        return std::nullopt;
    }
    signature.result = rest.substr(1);
    if (signature.result != "V" &&
        (signature.result.empty() || MeasureType(signature.result) != signature.result.size())) {
        return std::nullopt;
    }
    return signature;
}

bool IsReferenceType(std::string_view type) {
    return !type.empty() && (type[0] == 'L' || type[0] == '[');
}
