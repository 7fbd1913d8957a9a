#include "FakeObjects.h"

#include <utility>

#include "FakeText.h"

FakeObject::FakeObject(std::shared_ptr<FakeClass> objectClass) : javaClass(std::move(objectClass)) {}
FakeObject::~FakeObject() = default;
std::string FakeObject::Describe() const {
    return javaClass->name + "@instance";
}

FakeClass::FakeClass(std::string className) : FakeObject(nullptr), name(std::move(className)) {}
std::string FakeClass::Describe() const {
    return "class " + name;
}

FakeString::FakeString(std::shared_ptr<FakeClass> stringClass, std::u16string content)
    : FakeObject(std::move(stringClass)), units(std::move(content)) {}
std::string FakeString::Describe() const {
    return QuoteText(units);
}

FakeArray::FakeArray(std::shared_ptr<FakeClass> arrayClass, std::vector<FakeObjectPtr> content)
    : FakeObject(std::move(arrayClass)), elements(std::move(content)) {}
std::string FakeArray::Describe() const {
    return javaClass->name + " of " + std::to_string(elements.size());
}

FakeTextAnswer::FakeTextAnswer(const char* text, FakeAnswer end)
    : answer(text || end == FakeAnswer::eThrows ? end : FakeAnswer::eNull),
      units(DecodeModifiedUtf8(text ? text : "")) {}

FakeStackFrame::FakeStackFrame(std::shared_ptr<FakeClass> frameClass, FakeTextAnswer description)
    : FakeObject(std::move(frameClass)), toString(std::move(description)) {}

FakeExceptionOrder::FakeExceptionOrder(const FakeException& exception)
    : className(exception.className),
      toString(exception.description, exception.toString),
      getStackTrace(exception.getStackTrace) {
    for (long i = 0; i < exception.frameCount; ++i) {
        const FakeFrame& frame = exception.frames[i];
        if (frame.isNullElement) {
            frames.emplace_back(std::nullopt);
        } else {
            frames.emplace_back(FakeTextAnswer(frame.text, frame.toString));
        }
    }
}

FakeExceptionOrder::FakeExceptionOrder(std::string exceptionClass, const std::string& description, long frameCount)
    : className(std::move(exceptionClass)),
      toString(description.c_str(), FakeAnswer::eValue),
      getStackTrace(FakeAnswer::eValue) {
    for (long i = 0; i < frameCount; ++i) {
        const std::string text =
            "fake.Source.method" + std::to_string(i) + "(Source.java:" + std::to_string(i + 1) + ")";
        frames.emplace_back(FakeTextAnswer(text.c_str(), FakeAnswer::eValue));
    }
}

FakeThrowable::FakeThrowable(std::shared_ptr<FakeClass> throwableClass, FakeExceptionOrder exception)
    : FakeObject(std::move(throwableClass)), order(std::move(exception)) {}
