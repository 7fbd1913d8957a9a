#pragma once

#include <jni.h>

#include <cstdint>
#include <memory>

#include "CJavaGlobalRef.h"
#include "JavaArgument.h"
#include "JavaMethodBinding.h"

class CJavaClass;
class CJavaString;
class CJavaVM;

/// One Java object, held by a global reference. Usable on any attached thread; it must die before CJavaVM::Shutdown, on
/// an attached thread, or its reference is not released. Its class must outlive it, as classes in the cache do.
///
/// Calls do not look at what Java throws: the caller asks CJavaVM::GetJavaException after each. An alias that the class
/// did not bind is a programming error; nothing is called then.
class CJavaObject {
public:
    CJavaObject(CJavaVM& vm, CJavaClass& javaClass, CJavaGlobalRef<jobject>&& reference) noexcept;
    virtual ~CJavaObject();

    CJavaObject(const CJavaObject&) = delete;
    CJavaObject& operator=(const CJavaObject&) = delete;

    /// Calls a method that returns nothing. Does nothing where the calling thread has no environment.
    template <typename... Parameters, typename... Arguments>
    void CallVoidMethod(const JavaMethod<void(Parameters...)>& method, const Arguments&... arguments) {
        static_assert(sizeof...(Parameters) == sizeof...(Arguments), "as many arguments as the method takes");
        CallVoidVariadic(method.aliasNumber, JavaArgument::Convert<Parameters>::From(arguments)...);
    }

    /// Calls a method that returns a string, or another object of which only its release is wanted. The result is a
    /// local reference of the calling thread's; Java's null is wrapped like any other. Empty where the thread has no
    /// environment. Throws std::bad_alloc, no Java exception being pending then.
    template <typename Result, typename... Parameters, typename... Arguments>
    [[nodiscard]] std::shared_ptr<CJavaString> CallStringMethod(const JavaMethod<Result(Parameters...)>& method,
                                                                const Arguments&... arguments) {
        static_assert(std::is_convertible_v<Result, jobject>, "a method that returns a reference");
        static_assert(sizeof...(Parameters) == sizeof...(Arguments), "as many arguments as the method takes");
        return CallStringVariadic(method.aliasNumber, JavaArgument::Convert<Parameters>::From(arguments)...);
    }

    [[nodiscard]] jobject GetReference() const noexcept { return m_reference.Get(); }

private:
    void CallVoidVariadic(std::uint64_t aliasNumber, ...);
    [[nodiscard]] std::shared_ptr<CJavaString> CallStringVariadic(std::uint64_t aliasNumber, ...);

    CJavaVM& m_vm;
    CJavaClass& m_class;
    CJavaGlobalRef<jobject> m_reference;
};
