#include "CFakePins.h"

#include <utility>

#include "FakeText.h"

const jchar* CFakePins::PinUnits(const std::shared_ptr<FakeString>& string) {
    auto pin = std::make_unique<Pin>(Pin{string, false, string->units, {}});
    const auto* const characters = reinterpret_cast<const jchar*>(pin->units.c_str());
    m_pins.emplace(characters, std::move(pin));
    return characters;
}

const char* CFakePins::PinBytes(const std::shared_ptr<FakeString>& string) {
    auto pin = std::make_unique<Pin>(Pin{string, true, {}, EncodeModifiedUtf8(string->units)});
    const char* const characters = pin->bytes.c_str();
    m_pins.emplace(characters, std::move(pin));
    return characters;
}

const char* CFakePins::ReleaseUnits(const FakeString& string, const jchar* characters) {
    return Release(string, characters, false);
}

const char* CFakePins::ReleaseBytes(const FakeString& string, const char* characters) {
    return Release(string, characters, true);
}

const char* CFakePins::Release(const FakeString& string, const void* characters, bool isBytes) {
    const auto found = m_pins.find(characters);
    if (found == m_pins.end()) {
        return "characters that are not pinned";
    }
    if (found->second->string.get() != &string) {
        return "characters of another string";
    }
    if (found->second->isBytes != isBytes) {
        return "characters of the other encoding";
    }
    m_pins.erase(found);
    return nullptr;
}
