#include "EnumeratorName.h"

#include <charconv>

#include "CConversionBuffer.h"

namespace {

constexpr std::string_view kFunction = "Enum2String";

/// What lies between the first `opening` of the text and the first `closing` after that.
std::string_view Between(std::string_view text, std::string_view opening, char closing) {
    const std::size_t found = text.find(opening);
    if (found == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(found + opening.size());
    return text.substr(0, text.find(closing));
}

/// The template argument: the second one between angle brackets, or what stands last between square ones.
std::string_view FindArgument(std::string_view signature) {
    const std::string_view arguments = Between(signature, "[", ']');
    if (arguments.empty()) {
        return Between(signature, ",", '>');
    }
    const std::size_t equals = arguments.rfind("= ");
    return equals == std::string_view::npos ? arguments : arguments.substr(equals + 2);
}

std::string_view WithoutCast(std::string_view argument) {
    return !argument.empty() && argument[0] == '(' ? argument.substr(argument.find(')') + 1) : argument;
}

}  // namespace

CWideString CutEnumeratorName(std::string_view signature) {
    const std::size_t function = signature.find(kFunction);
    if (function == std::string_view::npos) {
        return {};
    }
    const std::string_view name = WithoutCast(FindArgument(signature.substr(function + kFunction.size())));
    unsigned value = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value);
    if (error == std::errc() && end == name.data() + name.size()) {
        return CWideString::Format(L"0x%x", value);
    }
    return CWideString(CWideFromNarrow(name).GetView());
}
