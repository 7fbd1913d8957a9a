#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "FakeObjects.h"

/// The characters that code under test has got from strings and not yet released.
class CFakePins {
public:
    /// A copy closed by a zero, kept until it is released.
    [[nodiscard]] const jchar* PinUnits(const std::shared_ptr<FakeString>& string);
    [[nodiscard]] const char* PinBytes(const std::shared_ptr<FakeString>& string);

    /// Null, or what was wrong: nothing is released then. `characters` may be any address.
    [[nodiscard]] const char* ReleaseUnits(const FakeString& string, const jchar* characters);
    [[nodiscard]] const char* ReleaseBytes(const FakeString& string, const char* characters);

    [[nodiscard]] long GetCount() const noexcept { return static_cast<long>(m_pins.size()); }
    void Forget() { m_pins.clear(); }

private:
    struct Pin {
        std::shared_ptr<FakeString> string;
        bool isBytes;
        std::u16string units;
        std::string bytes;
    };

    [[nodiscard]] const char* Release(const FakeString& string, const void* characters, bool isBytes);

    std::unordered_map<const void*, std::unique_ptr<Pin>> m_pins;  // each on its own: short texts lie inside a Pin
};
