#pragma once

#include <atomic>
#include <cstddef>

class CStringManager;

/// Header of one text buffer; the characters and their closing zero follow it in the same block.
struct CStringData {
    CStringManager* manager;
    std::size_t length;
    std::size_t capacity;  // characters without the closing zero
    std::atomic<long> references;

    [[nodiscard]] wchar_t* GetText() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
};

/// Hands out the text buffers of CWideString, from the process heap, and the one empty text that all empty strings
/// share. Any thread; holds no lock (the process heap has its own).
class CStringManager {
public:
    constexpr CStringManager() noexcept = default;

    CStringManager(const CStringManager&) = delete;
    CStringManager& operator=(const CStringManager&) = delete;

    /// A buffer for up to `capacity` characters, empty and with one reference. Throws CHresultException with
    /// E_OUTOFMEMORY.
    [[nodiscard]] CStringData* Allocate(std::size_t capacity);
    static void Free(CStringData* data) noexcept;

    /// The manager of all strings that name no other. It is never destroyed, so a string may outlive static objects.
    [[nodiscard]] static CStringManager* Shared() noexcept;
};
