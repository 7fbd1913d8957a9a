#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CJavaGlobalRef.h"
#include "JavaArgument.h"
#include "JavaMethodBinding.h"

class CJavaObject;
class CJavaVM;

/// One Java class, held by a global reference, with the IDs of its methods under their aliases. Made by
/// CJavaVM::LoadClass, which alone binds it; constant and usable on any attached thread from then on.
class CJavaClass {
public:
    CJavaClass(CJavaVM& vm, std::string_view className);
    /// Releases the class reference, silently not where the thread has no environment.
    virtual ~CJavaClass();

    CJavaClass(const CJavaClass&) = delete;
    CJavaClass& operator=(const CJavaClass&) = delete;

    /// Finds the class and the methods of `rows`; a later row replaces an earlier one of the same alias. False at the
    /// first thing missing, a Java exception then pending and what was bound before staying. `env` is the calling
    /// thread's. Only before the class is shared.
    [[nodiscard]] bool Bind(JNIEnv* env, const JavaMethodBinding* rows, std::size_t rowCount);

    /// The method bound under `alias`; null when there is none.
    [[nodiscard]] jmethodID FindMethod(std::string_view alias) const noexcept { return FindMethod(AliasNumber(alias)); }
    /// The same for the number of an alias.
    [[nodiscard]] jmethodID FindMethod(std::uint64_t aliasNumber) const noexcept {
        for (const BoundMethod& bound : m_methods) {
            if (bound.aliasNumber == aliasNumber) {
                return bound.method;
            }
        }
        return nullptr;
    }

    /// A new object, held by a global reference. Empty when the alias is unknown, the calling thread has no
    /// environment, or Java fails, an exception being pending then. Throws std::bad_alloc.
    template <typename... Parameters, typename... Arguments>
    [[nodiscard]] std::shared_ptr<CJavaObject> NewObject(const JavaConstructor<Parameters...>& constructor,
                                                         const Arguments&... arguments) {
        static_assert(sizeof...(Parameters) == sizeof...(Arguments), "as many arguments as the constructor takes");
        return NewObjectVariadic(constructor.aliasNumber, JavaArgument::Convert<Parameters>::From(arguments)...);
    }

private:
    struct BoundMethod {
        std::uint64_t aliasNumber;
        jmethodID method;
    };

    void Remember(std::uint64_t aliasNumber, jmethodID method);
    [[nodiscard]] std::shared_ptr<CJavaObject> NewObjectVariadic(std::uint64_t aliasNumber, ...);

    CJavaVM& m_vm;
    const std::string m_name;
    std::vector<BoundMethod> m_methods;  // a dozen at most
    CJavaGlobalRef<jclass> m_class;      // last: released before the aliases go
};
