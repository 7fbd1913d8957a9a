#pragma once

#include "CUniqueHandle.h"

template <typename Interface>
struct HostReferenceTraits {
    using Handle = Interface*;
    static Handle None() noexcept { return nullptr; }
    static void Close(Handle object) noexcept { object->Release(); }
};

/// One counted reference to a COM object.
template <typename Interface>
class CHostReference : public CUniqueHandle<HostReferenceTraits<Interface>> {
public:
    using CUniqueHandle<HostReferenceTraits<Interface>>::CUniqueHandle;

    Interface* operator->() const noexcept { return this->Get(); }

    /// One more reference to `object`, which stays the caller's; null stays null.
    [[nodiscard]] static CHostReference Share(Interface* object) noexcept {
        if (object) {
            object->AddRef();
        }
        return CHostReference(object);
    }
};
