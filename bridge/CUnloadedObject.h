#pragma once

#include <new>

#include "ProcessEnd.h"

/// Holds a static object that is destroyed when the library is unloaded, and left as it is when the process ends: every
/// other thread is gone by then, perhaps in the middle of changing the object or of holding a lock that it needs.
template <typename T>
class CUnloadedObject {
public:
    CUnloadedObject() { new (m_storage) T(); }
    ~CUnloadedObject() {
        if (!IsProcessEnding()) {
            Get().~T();
        }
    }

    CUnloadedObject(const CUnloadedObject&) = delete;
    CUnloadedObject& operator=(const CUnloadedObject&) = delete;

    [[nodiscard]] T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }

private:
    alignas(T) unsigned char m_storage[sizeof(T)];
};
