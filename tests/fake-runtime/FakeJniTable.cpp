#include "FakeJniTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "FakeFunction.h"
#include "FakeState.h"

namespace {

constexpr std::size_t kReservedSlots = 4;

constexpr bool IsInSlot(std::size_t offset, const char* name) {
    return offset / sizeof(void*) == FindFunction(name);
}
static_assert(IsInSlot(offsetof(JNINativeInterface_, GetVersion), "GetVersion"));
static_assert(IsInSlot(offsetof(JNINativeInterface_, CallVoidMethodA), "CallVoidMethodA"));
static_assert(IsInSlot(offsetof(JNINativeInterface_, NewString), "NewString"));
static_assert(IsInSlot(offsetof(JNINativeInterface_, ExceptionCheck), "ExceptionCheck"));
static_assert(IsInSlot(offsetof(JNINativeInterface_, IsVirtualThread), "IsVirtualThread"));

/// Code under test calls methods with a list of arguments it was given; these take them in another form.
constexpr bool IsOtherForm(std::string_view name) {
    for (const std::string_view method : {"NewObject", "CallVoidMethod", "CallObjectMethod"}) {
        if (StartsWith(name, method) && (name.length() == method.length() || name.substr(method.length()) == "A")) {
            return true;
        }
    }
    return false;
}

void RecordUnexpectedCall(const FakeFunction& function) {
    FakeState& state = GetFakeState();
    const std::lock_guard<std::mutex> lock(state.mutex);
    state.record.AddCall(function);
    const char* const what = IsOtherForm(function.name) ? "not the V form: " : "unexpected call: ";
    state.record.AddMisuse(std::string(what) + function.name);
}

/// Stands in for any function of any parameters: a 64-bit caller clears them away itself.
template <std::size_t Slot>
std::intptr_t JNICALL UnexpectedCall(JNIEnv*) {
    static constexpr FakeFunction function(Slot);
    RecordUnexpectedCall(function);
    return 0;
}

/// The same where the caller looks for its result in a floating-point register.
template <std::size_t Slot>
double JNICALL UnexpectedFloatingCall(JNIEnv*) {
    static constexpr FakeFunction function(Slot);
    RecordUnexpectedCall(function);
    return 0;
}

constexpr bool ReturnsFloating(std::string_view name) {
    const bool isNumber = name.find("Float") != std::string_view::npos || name.find("Double") != std::string_view::npos;
    const bool isMethod = name.find("Method") != std::string_view::npos && StartsWith(name, "Call");
    const bool isField = EndsWith(name, "Field") && StartsWith(name, "Get");
    return isNumber && (isMethod || isField);
}

template <std::size_t Slot>
std::uintptr_t MakeSlot() {
    if constexpr (Slot < kReservedSlots) {
        return 0;
    } else if constexpr (ReturnsFloating(kFunctionNames[Slot])) {
        return reinterpret_cast<std::uintptr_t>(&UnexpectedFloatingCall<Slot>);
    } else {
        return reinterpret_cast<std::uintptr_t>(&UnexpectedCall<Slot>);
    }
}

template <std::size_t... Slots>
std::array<std::uintptr_t, kTableSlots> MakeSlots(std::index_sequence<Slots...>) {
    return {MakeSlot<Slots>()...};
}

JNINativeInterface_ MakeTable() {
    const auto slots = MakeSlots(std::make_index_sequence<kTableSlots>{});
    JNINativeInterface_ table;
    static_assert(sizeof(table) == sizeof(slots), "a table of as many pointers");
    std::memcpy(&table, slots.data(), sizeof(table));
    InstallClassFunctions(table);
    InstallReferenceFunctions(table);
    InstallExceptionFunctions(table);
    InstallCallFunctions(table);
    InstallStringFunctions(table);
    InstallArrayFunctions(table);
    return table;
}

}  // namespace

const JNINativeInterface_* GetJniTable() {
    static const JNINativeInterface_ table = MakeTable();
    return &table;
}
