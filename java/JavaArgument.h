#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>
#include <type_traits>

class CJavaObject;
class CJavaString;

/// What may stand for a parameter of a Java method. JNI reads arguments from an untyped list: one that is wider than
/// the method expects, or a pointer that is no reference, would be read as something else or crash the machine.
namespace JavaArgument {

/// Every value of the C++ number type `From` is a value of the JNI number type `To`.
template <typename To, typename From>
constexpr bool IsLossless() {
    if constexpr (std::is_same_v<To, jboolean>) {
        return std::is_same_v<From, bool> || std::is_same_v<From, jboolean>;
    } else if constexpr (std::is_floating_point_v<To>) {
        return std::is_floating_point_v<From> && sizeof(From) <= sizeof(To);
    } else {
        return std::is_integral_v<From> && !std::is_same_v<From, bool> &&
               (std::is_signed_v<From> ? sizeof(From) <= sizeof(To) : sizeof(From) < sizeof(To));
    }
}

[[nodiscard]] jobject ToReference(const CJavaObject& object) noexcept;
[[nodiscard]] jstring ToReference(const CJavaString& text) noexcept;

/// `argument` as the JNI type `Parameter`: a number without loss; for a reference a raw JNI reference, nullptr, or a
/// wrapper, an empty pointer to one being Java's null. Anything else does not compile.
template <typename Parameter>
struct Convert {
    template <typename Argument>
    [[nodiscard]] static Parameter From(const Argument& argument) noexcept {
        if constexpr (std::is_pointer_v<Parameter>) {
            static_assert(std::is_convertible_v<Argument, Parameter>,
                          "a Java reference parameter takes a JNI reference of its kind or a wrapper of one");
            return argument;
        } else {
            static_assert(IsLossless<Parameter, Argument>(),
                          "a Java number parameter takes a number that it can hold without loss");
            return static_cast<Parameter>(argument);
        }
    }

    [[nodiscard]] static Parameter From(std::nullptr_t) noexcept {
        static_assert(std::is_pointer_v<Parameter>, "null is no number");
        return nullptr;
    }

    [[nodiscard]] static Parameter From(const CJavaObject& object) noexcept { return FromWrapper(object); }
    [[nodiscard]] static Parameter From(const CJavaString& text) noexcept { return FromWrapper(text); }

    template <typename Wrapper>
    [[nodiscard]] static Parameter From(const std::shared_ptr<Wrapper>& wrapper) noexcept {
        static_assert(std::is_same_v<Wrapper, CJavaObject> || std::is_same_v<Wrapper, CJavaString>,
                      "only objects and strings are Java values");
        return wrapper ? FromWrapper(*wrapper) : nullptr;
    }

private:
    template <typename Wrapper>
    [[nodiscard]] static Parameter FromWrapper(const Wrapper& wrapper) noexcept {
        static_assert(std::is_convertible_v<decltype(ToReference(wrapper)), Parameter>,
                      "the wrapper's reference is not of the parameter's kind");
        return ToReference(wrapper);
    }
};

}  // namespace JavaArgument
