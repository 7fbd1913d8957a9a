#include "CFakeClasses.h"

#include <utility>

#include "FakeFunction.h"
#include "FakeText.h"

namespace {

/// Neither a pointer to anything nor a reference, should it be taken for one.
constexpr std::uint64_t kMethodTag = 3;
constexpr unsigned kTagBits = 4;

bool IsNamedLikeThrowable(const FakeClass& javaClass) {
    return EndsWith(javaClass.name, "Exception") || EndsWith(javaClass.name, "Error") ||
           EndsWith(javaClass.name, "Throwable");
}

}  // namespace

const std::shared_ptr<FakeClass>& CFakeClasses::Get(const std::string& className) {
    std::shared_ptr<FakeClass>& javaClass = m_classes[className];
    if (!javaClass) {
        javaClass = std::make_shared<FakeClass>(className);
    }
    return javaClass;
}

const std::shared_ptr<FakeClass>& CFakeClasses::GetClassOf(const FakeObject& object) {
    return object.javaClass ? object.javaClass : Get(kClassClass);
}

bool CFakeClasses::IsInstance(const FakeObject& object, const FakeClass& javaClass) {
    if (javaClass.name == kObjectClass || GetClassOf(object)->name == javaClass.name) {
        return true;
    }
    return javaClass.name == kThrowableClass && dynamic_cast<const FakeThrowable*>(&object);
}

jmethodID CFakeClasses::GetMethod(const std::shared_ptr<FakeClass>& owner, const std::string& name,
                                  const FakeSignature& signature) {
    FakeMethod method{owner, name, signature};
    std::uint64_t& id = m_methodIds[method.Describe()];
    if (id == 0) {
        id = (m_nextMethod++ << kTagBits) | kMethodTag;
        m_methods.emplace(id, std::move(method));
    }
    return reinterpret_cast<jmethodID>(id);
}

const FakeMethod* CFakeClasses::FindMethod(jmethodID id) const {
    const auto found = m_methods.find(reinterpret_cast<std::uint64_t>(id));
    return found == m_methods.end() ? nullptr : &found->second;
}

std::shared_ptr<FakeString> CFakeClasses::MakeString(std::u16string units) {
    return std::make_shared<FakeString>(Get(kStringClass), std::move(units));
}

std::shared_ptr<FakeThrowable> CFakeClasses::MakeThrowable(const FakeExceptionOrder& order) {
    return std::make_shared<FakeThrowable>(Get(order.className), order);
}

FakeObjectPtr CFakeClasses::MakeInstance(const std::shared_ptr<FakeClass>& javaClass) {
    if (IsNamedLikeThrowable(*javaClass)) {
        return MakeThrowable(FakeExceptionOrder(javaClass->name, DottedName(javaClass->name), 0));
    }
    return std::make_shared<FakeObject>(javaClass);
}

FakeObjectPtr CFakeClasses::MakeStackTrace(const FakeThrowable& throwable) {
    std::vector<FakeObjectPtr> elements;
    for (const auto& frame : throwable.order.frames) {
        elements.push_back(frame ? std::make_shared<FakeStackFrame>(Get(kFrameClass), *frame) : nullptr);
    }
    return std::make_shared<FakeArray>(Get(kFrameArrayClass), std::move(elements));
}

void CFakeClasses::Forget() {
    m_classes.clear();
    m_methodIds.clear();
    m_methods.clear();
}
