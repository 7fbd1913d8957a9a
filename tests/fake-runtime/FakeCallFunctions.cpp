#include <cstdarg>

#include "CFakeCall.h"
#include "FakeArguments.h"
#include "FakeJniTable.h"
#include "FakeText.h"

namespace {

constexpr char16_t kDefaultResult[] = u"result";

/// The method of an ID; null, the misuse being reported, when there is no such ID.
const FakeMethod* ResolveMethod(CFakeCall& call, jmethodID id) {
    const FakeMethod* const method = call.State().classes.FindMethod(id);
    if (!method) {
        call.ReportMisuse("unknown method ID");
    }
    return method;
}

/// The method of an ID, if it is one of the object's and returns what the called function does: an object, or nothing.
const FakeMethod* ResolveMethodOf(CFakeCall& call, const FakeObject& object, jmethodID id, bool returnsObject) {
    const FakeMethod* const method = ResolveMethod(call, id);
    if (!method) {
        return nullptr;
    }
    if (!call.State().classes.IsInstance(object, *method->owner)) {
        call.ReportMisuse("method ID of another class: " + method->Describe());
        return nullptr;
    }
    const bool fits = returnsObject ? IsReferenceType(method->signature.result) : method->signature.result == "V";
    if (method->IsConstructor() || !fits) {
        call.ReportMisuse("method ID of another kind: " + method->Describe());
        return nullptr;
    }
    return method;
}

/// The constructor of an ID, if it is one of the class's.
const FakeMethod* ResolveConstructor(CFakeCall& call, const FakeClass& javaClass, jmethodID id) {
    const FakeMethod* const method = ResolveMethod(call, id);
    if (!method) {
        return nullptr;
    }
    if (method->owner->name != javaClass.name) {
        call.ReportMisuse("method ID of another class: " + method->Describe());
        return nullptr;
    }
    if (!method->IsConstructor()) {
        call.ReportMisuse("method ID of another kind: " + method->Describe());
        return nullptr;
    }
    return method;
}

/// Notes the call in the method log. False when its arguments are bad.
bool RecordMethod(CFakeCall& call, const FakeMethod& method, std::va_list arguments) {
    const auto text = DescribeArguments(call, method, arguments);
    if (text) {
        call.State().record.AddMethod(method.Describe() + *text);
    }
    return text.has_value();
}

/// Throws what `behaviour`, which may be null, has its method throw. True when it does.
bool ThrowIfOrdered(CFakeCall& call, const FakeMethodBehaviour* behaviour) {
    if (!behaviour || !behaviour->exception) {
        return false;
    }
    call.State().Throw(call.Env(), *behaviour->exception);
    return true;
}

/// Null for Java's null and after a throw.
FakeObjectPtr AnswerText(CFakeCall& call, const FakeTextAnswer& text) {
    if (text.answer == FakeAnswer::eThrows) {
        call.State().Throw(call.Env(), kRuntimeException, "ordered");
    }
    return text.answer == FakeAnswer::eValue ? call.State().classes.MakeString(text.units) : nullptr;
}

FakeObjectPtr AnswerToString(CFakeCall& call, const FakeObjectPtr& object) {
    if (const auto* const throwable = dynamic_cast<const FakeThrowable*>(object.get())) {
        return AnswerText(call, throwable->order.toString);
    }
    if (const auto* const frame = dynamic_cast<const FakeStackFrame*>(object.get())) {
        return AnswerText(call, frame->toString);
    }
    if (dynamic_cast<const FakeString*>(object.get())) {
        return object;
    }
    return call.State().classes.MakeString(DecodeModifiedUtf8(object->Describe()));
}

FakeObjectPtr AnswerStackTrace(CFakeCall& call, const FakeThrowable& throwable) {
    if (throwable.order.getStackTrace == FakeAnswer::eThrows) {
        call.State().Throw(call.Env(), kRuntimeException, "ordered");
    }
    return throwable.order.getStackTrace == FakeAnswer::eValue ? call.State().classes.MakeStackTrace(throwable)
                                                               : nullptr;
}

/// The result of a method that returns an object; null also when it throws.
FakeObjectPtr RunMethod(CFakeCall& call, const FakeObjectPtr& object, const FakeMethod& method) {
    FakeState& state = call.State();
    const auto* const behaviour = state.behaviour.FindMethod(state.classes.GetClassOf(*object)->name, method.name);
    if (ThrowIfOrdered(call, behaviour)) {
        return nullptr;
    }
    if (behaviour && behaviour->result) {
        return AnswerText(call, *behaviour->result);
    }
    if (method.name == "toString") {
        return AnswerToString(call, object);
    }
    const auto* const throwable = dynamic_cast<const FakeThrowable*>(object.get());
    if (method.name == "getStackTrace" && throwable) {
        return AnswerStackTrace(call, *throwable);
    }
    return method.signature.result == "Ljava/lang/String;" ? state.classes.MakeString(kDefaultResult) : nullptr;
}

jobject JNICALL NewObjectV(JNIEnv* env, jclass javaClass, jmethodID id, std::va_list arguments) {
    static constexpr FakeFunction function("NewObjectV");
    CFakeCall call(env, function);
    const auto resolved = call.MayRun() ? call.ResolveAs<FakeClass>(javaClass, kNotAClass) : nullptr;
    const FakeMethod* const constructor = resolved ? ResolveConstructor(call, *resolved, id) : nullptr;
    if (!constructor || !RecordMethod(call, *constructor, arguments)) {
        return nullptr;
    }
    if (ThrowIfOrdered(call, call.State().behaviour.FindMethod(resolved->name, constructor->name))) {
        return nullptr;
    }
    return call.MakeLocal(call.State().classes.MakeInstance(resolved));
}

void JNICALL CallVoidMethodV(JNIEnv* env, jobject object, jmethodID id, std::va_list arguments) {
    static constexpr FakeFunction function("CallVoidMethodV");
    CFakeCall call(env, function);
    const FakeObjectPtr resolved = call.MayRun() ? call.Resolve(object) : nullptr;
    const FakeMethod* const method = resolved ? ResolveMethodOf(call, *resolved, id, false) : nullptr;
    if (!method || !RecordMethod(call, *method, arguments)) {
        return;
    }
    const std::string& className = call.State().classes.GetClassOf(*resolved)->name;
    ThrowIfOrdered(call, call.State().behaviour.FindMethod(className, method->name));
}

jobject JNICALL CallObjectMethodV(JNIEnv* env, jobject object, jmethodID id, std::va_list arguments) {
    static constexpr FakeFunction function("CallObjectMethodV");
    CFakeCall call(env, function);
    const FakeObjectPtr resolved = call.MayRun() ? call.Resolve(object) : nullptr;
    const FakeMethod* const method = resolved ? ResolveMethodOf(call, *resolved, id, true) : nullptr;
    if (!method || !RecordMethod(call, *method, arguments)) {
        return nullptr;
    }
    return call.MakeLocal(RunMethod(call, resolved, *method));
}

}  // namespace

void InstallCallFunctions(JNINativeInterface_& table) {
    table.NewObjectV = &NewObjectV;
    table.CallVoidMethodV = &CallVoidMethodV;
    table.CallObjectMethodV = &CallObjectMethodV;
}
