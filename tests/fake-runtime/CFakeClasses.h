#pragma once

#include <jni.h>

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "FakeObjects.h"
#include "FakeSignature.h"

struct FakeMethod {
    std::shared_ptr<FakeClass> owner;
    std::string name;
    FakeSignature signature;

    [[nodiscard]] bool IsConstructor() const { return name == "<init>"; }
    /// "java/x/Y.put(I)V".
    [[nodiscard]] std::string Describe() const { return owner->name + "." + name + signature.text; }
};

/// The classes of the machine and their methods, made when they are first asked for. Method IDs are, like references,
/// never given out twice.
class CFakeClasses {
public:
    [[nodiscard]] const std::shared_ptr<FakeClass>& Get(const std::string& className);
    /// The class of an object; that of a class is java.lang.Class.
    [[nodiscard]] const std::shared_ptr<FakeClass>& GetClassOf(const FakeObject& object);
    /// Whether `object` is of `javaClass`. Of inheritance only java.lang.Object and java.lang.Throwable are known.
    [[nodiscard]] bool IsInstance(const FakeObject& object, const FakeClass& javaClass);

    [[nodiscard]] jmethodID GetMethod(const std::shared_ptr<FakeClass>& owner, const std::string& name,
                                      const FakeSignature& signature);
    /// Null when no such ID was given out.
    [[nodiscard]] const FakeMethod* FindMethod(jmethodID id) const;

    [[nodiscard]] std::shared_ptr<FakeString> MakeString(std::u16string units);
    [[nodiscard]] std::shared_ptr<FakeThrowable> MakeThrowable(const FakeExceptionOrder& order);
    /// What `new` makes: an exception where the class is named like one.
    [[nodiscard]] FakeObjectPtr MakeInstance(const std::shared_ptr<FakeClass>& javaClass);
    /// What an exception's getStackTrace returns when it returns an array.
    [[nodiscard]] FakeObjectPtr MakeStackTrace(const FakeThrowable& throwable);

    void Forget();

private:
    std::unordered_map<std::string, std::shared_ptr<FakeClass>> m_classes;
    std::unordered_map<std::string, std::uint64_t> m_methodIds;  // by FakeMethod::Describe
    std::unordered_map<std::uint64_t, FakeMethod> m_methods;
    std::uint64_t m_nextMethod = 1;
};
