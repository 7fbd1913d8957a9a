#include "FakeArguments.h"

#include <array>
#include <charconv>

#include "FakeText.h"

namespace {

/// With as many digits as it takes to tell it from its neighbours.
template <typename Number>
std::string DescribeFloating(Number number) {
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    return std::string(text.data(), end.ptr);
}

std::optional<std::string> DescribeReference(CFakeCall& call, const std::string& type, jobject reference) {
    bool isGood = false;
    const FakeObjectPtr object = call.ResolveOrNull(reference, isGood);
    if (!isGood) {
        return std::nullopt;
    }
    if (!object) {
        return "null";
    }
    if (type == "Ljava/lang/String;" && !dynamic_cast<const FakeString*>(object.get())) {
        call.ReportMisuse(kNotAString);
        return std::nullopt;
    }
    return object->Describe();
}

/// Takes the next argument. Numbers narrower than an int were widened to one by the caller, a float to a double.
std::optional<std::string> DescribeNext(CFakeCall& call, const std::string& type, std::va_list& arguments) {
    switch (type[0]) {
        case 'Z':
            return static_cast<jboolean>(va_arg(arguments, int)) != JNI_FALSE ? "true" : "false";
        case 'C': {
            const char16_t unit = static_cast<char16_t>(va_arg(arguments, int));
            return QuoteText({&unit, 1});
        }
        case 'B':
            return std::to_string(static_cast<jbyte>(va_arg(arguments, int)));
        case 'S':
            return std::to_string(static_cast<jshort>(va_arg(arguments, int)));
        case 'I':
            return std::to_string(va_arg(arguments, jint));
        case 'J':
            return std::to_string(va_arg(arguments, jlong));
        case 'F':
            return DescribeFloating(static_cast<jfloat>(va_arg(arguments, double)));
        case 'D':
            return DescribeFloating(va_arg(arguments, jdouble));
        default:
            return DescribeReference(call, type, va_arg(arguments, jobject));
    }
}

}  // namespace

std::optional<std::string> DescribeArguments(CFakeCall& call, const FakeMethod& method, std::va_list arguments) {
    std::string text = "(";
    for (const std::string& type : method.signature.parameters) {
        const auto argument = DescribeNext(call, type, arguments);
        if (!argument) {
            return std::nullopt;
        }
        text.append(text.length() > 1 ? ", " : "").append(*argument);
    }
    return text + ")";
}
