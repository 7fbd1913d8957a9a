#include "ProductName.h"

#include <windows.h>

#include <string_view>

namespace {

using namespace std::string_view_literals;

constexpr std::wstring_view kDefaultName = L"Tessaro"sv;
constexpr std::wstring_view kOption = L"--product"sv;
constexpr std::wstring_view kOptionWithValue = L"--product="sv;
// Backspace is one of them, and so is the zero that ends the command line.
constexpr std::wstring_view kSeparators = L" \t\r\n\f\b\0"sv;
constexpr wchar_t kQuote = L'"';

/// The command line from where the value begins.
std::wstring_view FindValue(std::wstring_view commandLine) {
    const std::size_t withValue = commandLine.find(kOptionWithValue);
    if (withValue != std::wstring_view::npos) {
        return commandLine.substr(withValue + kOptionWithValue.size());
    }
    const std::size_t option = commandLine.find(kOption);
    if (option == std::wstring_view::npos) {
        return commandLine;
    }
    const std::wstring_view behind = commandLine.substr(option + kOption.size());
    const std::size_t first = behind.find_first_not_of(kSeparators);
    return first == std::wstring_view::npos ? std::wstring_view() : behind.substr(first);
}

}  // namespace

std::wstring ProductName() {
    return ParseProductName(GetCommandLineW());
}

std::wstring ParseProductName(const wchar_t* commandLine) {
    if (!commandLine) {
        return std::wstring(kDefaultName);
    }
    const std::wstring_view value = FindValue(commandLine);
    if (value.empty() || value.front() != kQuote) {
        return std::wstring(value.substr(0, value.find_first_of(kSeparators)));
    }
    const std::wstring_view quoted = value.substr(1);
    const std::size_t end = quoted.find(kQuote);
    return std::wstring(end == std::wstring_view::npos ? kDefaultName : quoted.substr(0, end));
}
