#pragma once

#include <cstddef>
#include <string_view>

#include "FakeFunctionNames.h"

constexpr bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.length()) == start;
}

constexpr bool EndsWith(std::string_view text, std::string_view end) {
    return text.length() >= end.length() && text.substr(text.length() - end.length()) == end;
}

/// The place of a function in kFunctionNames; kFunctionCount when it is not there.
constexpr std::size_t FindFunction(std::string_view name) {
    std::size_t index = 0;
    while (index < kFunctionCount && name != kFunctionNames[index]) {
        ++index;
    }
    return index;
}

/// One JNI function and what JNI says about it. Always constexpr: a name that JNI does not have does not compile then.
class FakeFunction {
public:
    constexpr explicit FakeFunction(std::string_view functionName) : FakeFunction(FindFunction(functionName)) {}
    constexpr explicit FakeFunction(std::size_t place)
        : index(place < kFunctionCount ? place : throw "JNI has no function of this name"),
          name(kFunctionNames[place]),
          mustSucceed(StartsWith(name, "Exception") || StartsWith(name, "Release") || IsDeletion(name) ||
                      name == std::string_view("PopLocalFrame") || name == std::string_view("MonitorExit")),
          mayRunWithException(mustSucceed || name == std::string_view("PushLocalFrame")),
          isInTable(place < kTableSlots) {}

    std::size_t index;
    const char* name;
    bool mustSucceed;          ///< has no way to fail that a caller could handle
    bool mayRunWithException;  ///< allowed while an exception is pending
    bool isInTable;

private:
    static constexpr bool IsDeletion(std::string_view text) {
        return StartsWith(text, "Delete") && EndsWith(text, "Ref");
    }
};
