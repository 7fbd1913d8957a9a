#pragma once

#include <cassert>
#include <utility>

/// Sole owner of a system handle; move-only. `Traits` names the handle type, the value that means "none", and how one
/// is given back:
///
///     struct KeyTraits {
///         using Handle = HKEY;
///         static Handle None() noexcept { return nullptr; }
///         static void Close(Handle key) noexcept { RegCloseKey(key); }
///     };
template <typename Traits>
class CUniqueHandle {
public:
    using Handle = typename Traits::Handle;

    CUniqueHandle() noexcept = default;
    /// Takes `handle` over.
    explicit CUniqueHandle(Handle handle) noexcept : m_handle(handle) {}
    ~CUniqueHandle() { Reset(); }

    CUniqueHandle(const CUniqueHandle&) = delete;
    CUniqueHandle& operator=(const CUniqueHandle&) = delete;
    CUniqueHandle(CUniqueHandle&& other) noexcept : m_handle(other.Detach()) {}
    CUniqueHandle& operator=(CUniqueHandle&& other) noexcept {
        Reset(other.Detach());
        return *this;
    }

    [[nodiscard]] Handle Get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != Traits::None(); }

    /// Gives the handle away; this owner is empty afterwards.
    [[nodiscard]] Handle Detach() noexcept { return std::exchange(m_handle, Traits::None()); }

    /// Closes what is held, then takes `handle` over. Assigning a handle to the owner that holds it changes nothing.
    void Reset(Handle handle = Traits::None()) noexcept {
        const Handle previous = std::exchange(m_handle, handle);
        if (previous != Traits::None() && previous != handle) {
            Traits::Close(previous);
        }
    }

    /// The address for an out-parameter. The owner must be empty: what it held would be lost.
    [[nodiscard]] Handle* Receive() noexcept {
        assert(!*this);
        return &m_handle;
    }

private:
    Handle m_handle = Traits::None();
};
