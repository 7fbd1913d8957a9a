#pragma once

#include <new>

#include "ProcessEnd.h"

/// Holds a static object of a library. What its making throws is kept in: an exception that leaves a library's start-up
/// meets the loader, which knows nothing of C++ (seen: it never returned). The object is destroyed when the library is
/// unloaded, and left as it is when the process ends: every other thread is gone by then, perhaps in the middle of
/// changing the object or of holding a lock that it needs.
template <typename T>
class CUnloadedObject {
public:
    CUnloadedObject() noexcept {
        try {
            m_object = new (m_storage) T();
        } catch (...) {
            m_object = nullptr;
        }
    }
    ~CUnloadedObject() {
        if (m_object && !IsProcessEnding()) {
            m_object->~T();
        }
    }

    CUnloadedObject(const CUnloadedObject&) = delete;
    CUnloadedObject& operator=(const CUnloadedObject&) = delete;

    /// False where it could not be made.
    [[nodiscard]] bool IsMade() const noexcept { return m_object != nullptr; }
    [[nodiscard]] T& Get() noexcept { return *m_object; }

private:
    alignas(T) unsigned char m_storage[sizeof(T)];
    T* m_object = nullptr;
};
