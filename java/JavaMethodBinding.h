#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// One row of a binding table: a Java method under the short name by which the library calls it. Three null-terminated
/// texts; the signature is JNI's ("(ILjava/lang/String;)V").
struct JavaMethodBinding {
    const char* alias;
    const char* name;
    const char* signature;
};

/// A number that stands for an alias, so that a call finds its method without comparing texts (FNV-1a, 64 bits). That
/// those of one class differ is checked where the rows are compiled.
constexpr std::uint64_t AliasNumber(std::string_view alias) {
    std::uint64_t number = 0xcbf29ce484222325;
    for (const char character : alias) {
        number = (number ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    return number;
}

/// Reads JNI signatures while compiling (Java Native Interface Specification, chapter 3, "Type Signatures").
namespace JniSignature {

/// Length of the type descriptor that `text` begins with, 0 when it begins with none.
constexpr std::size_t TypeLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && text[length] == '[') {
        ++length;
    }
    if (length == text.size()) {
        return 0;
    }
    if (text[length] == 'L') {
        const std::size_t end = text.find(';', length);
        return end == std::string_view::npos ? 0 : end + 1;
    }
    return std::string_view("ZBCSIJFD").find(text[length]) == std::string_view::npos ? 0 : length + 1;
}

/// Whether a value of the JNI type `T` is what a Java type described by `type` holds. `jstring` stands for
/// java.lang.String alone, `jobject` for every class and array.
template <typename T>
constexpr bool IsTypeOf(std::string_view type) {
    static_assert(std::is_same_v<T, std::decay_t<T>>, "JNI types are named without const and reference");
    if constexpr (std::is_same_v<T, jstring>) {
        return type == "Ljava/lang/String;";
    } else if constexpr (std::is_same_v<T, jobject>) {
        return !type.empty() && (type[0] == 'L' || type[0] == '[');
    } else if constexpr (std::is_same_v<T, void>) {
        return type == "V";
    } else if constexpr (std::is_same_v<T, jboolean>) {
        return type == "Z";
    } else if constexpr (std::is_same_v<T, jint>) {
        return type == "I";
    } else if constexpr (std::is_same_v<T, jlong>) {
        return type == "J";
    } else if constexpr (std::is_same_v<T, jdouble>) {
        return type == "D";
    } else {
        static_assert(!std::is_same_v<T, T>, "bind methods over jboolean, jint, jlong, jdouble, jstring and jobject");
    }
}

/// Drops the type at the front of `rest` and tells whether a `T` passes there.
template <typename T>
constexpr bool TakeParameter(std::string_view& rest) {
    const std::size_t length = TypeLength(rest);
    const bool matches = length != 0 && IsTypeOf<T>(rest.substr(0, length));
    rest.remove_prefix(length);
    return matches;
}

/// Whether `signature` is that of a method that takes `Parameters` and returns `Result`.
template <typename Result, typename... Parameters>
constexpr bool Describes(std::string_view signature) {
    if (signature.empty() || signature[0] != '(') {
        return false;
    }
    std::string_view rest = signature.substr(1);
    const bool parametersMatch = (TakeParameter<Parameters>(rest) && ...);
    return parametersMatch && !rest.empty() && rest[0] == ')' && IsTypeOf<Result>(rest.substr(1));
}

}  // namespace JniSignature

/// A row whose C++ types are known, so that calls through it are checked by the compiler: `JavaMethod<void(jint)>` is a
/// method that takes a Java int. Always declared constexpr: a signature that says something else then does not compile.
template <typename Function>
struct JavaMethod;

template <typename Result, typename... Parameters>
struct JavaMethod<Result(Parameters...)> : JavaMethodBinding {
    constexpr JavaMethod(const char* methodAlias, const char* methodName, const char* methodSignature)
        : JavaMethodBinding{methodAlias, methodName, methodSignature}, aliasNumber(AliasNumber(methodAlias)) {
        if (!JniSignature::Describes<Result, Parameters...>(methodSignature)) {
            throw "the JNI signature does not have these parameter and result types";
        }
    }

    std::uint64_t aliasNumber;
};

/// The row of a constructor, whose JNI name is always "<init>".
template <typename... Parameters>
struct JavaConstructor : JavaMethod<void(Parameters...)> {
    constexpr JavaConstructor(const char* constructorAlias, const char* constructorSignature)
        : JavaMethod<void(Parameters...)>(constructorAlias, "<init>", constructorSignature) {}
};
