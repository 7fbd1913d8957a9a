#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "IFakeRuntime.h"

struct FakeClass;

/// Names of classes that the runtime itself knows.
constexpr char kObjectClass[] = "java/lang/Object";
constexpr char kClassClass[] = "java/lang/Class";
constexpr char kStringClass[] = "java/lang/String";
constexpr char kThrowableClass[] = "java/lang/Throwable";
constexpr char kFrameClass[] = "java/lang/StackTraceElement";
constexpr char kFrameArrayClass[] = "[Ljava/lang/StackTraceElement;";
constexpr char kRuntimeException[] = "java/lang/RuntimeException";
constexpr char kOutOfMemoryError[] = "java/lang/OutOfMemoryError";
constexpr char kNoClassDefFoundError[] = "java/lang/NoClassDefFoundError";
constexpr char kNoSuchMethodError[] = "java/lang/NoSuchMethodError";
constexpr char kIndexOutOfBounds[] = "java/lang/ArrayIndexOutOfBoundsException";

/// Something on the fake heap. It lives as long as a reference, an array or a record holds it.
struct FakeObject {
    explicit FakeObject(std::shared_ptr<FakeClass> objectClass);
    virtual ~FakeObject();

    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    /// As the method log names it.
    [[nodiscard]] virtual std::string Describe() const;

    const std::shared_ptr<FakeClass> javaClass;  // null for classes themselves
};
using FakeObjectPtr = std::shared_ptr<FakeObject>;

struct FakeClass : FakeObject {
    explicit FakeClass(std::string className);
    [[nodiscard]] std::string Describe() const override;

    const std::string name;  // as JNI has it: "java/util/HashMap"
};

struct FakeString : FakeObject {
    FakeString(std::shared_ptr<FakeClass> stringClass, std::u16string content);
    [[nodiscard]] std::string Describe() const override;

    const std::u16string units;
};

struct FakeArray : FakeObject {
    FakeArray(std::shared_ptr<FakeClass> arrayClass, std::vector<FakeObjectPtr> content);
    [[nodiscard]] std::string Describe() const override;

    const std::vector<FakeObjectPtr> elements;
};

/// A text that a getter returns, or how else it ends.
struct FakeTextAnswer {
    FakeTextAnswer(const char* text, FakeAnswer end);

    FakeAnswer answer;
    std::u16string units;
};

struct FakeStackFrame : FakeObject {
    FakeStackFrame(std::shared_ptr<FakeClass> frameClass, FakeTextAnswer description);

    const FakeTextAnswer toString;
};

/// An exception as it was ordered, with texts of its own; an empty frame is a null element.
struct FakeExceptionOrder {
    FakeExceptionOrder(const FakeException& exception);
    FakeExceptionOrder(std::string exceptionClass, const std::string& description, long frameCount);

    std::string className;
    FakeTextAnswer toString;
    FakeAnswer getStackTrace;
    std::vector<std::optional<FakeTextAnswer>> frames;
};

struct FakeThrowable : FakeObject {
    FakeThrowable(std::shared_ptr<FakeClass> throwableClass, FakeExceptionOrder exception);

    const FakeExceptionOrder order;
};
