#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "CStringManager.h"

/// A reference-counted UTF-16 text: copies share one buffer until one of them changes. Messages are built in it.
/// Distinct objects may be used on distinct threads even where they share a buffer; one object on one thread at a time.
/// Every operation that may need memory throws CHresultException with E_OUTOFMEMORY.
class CWideString {
public:
    /// An empty text.
    CWideString() : CWideString(CStringManager::Shared()) {}
    /// An empty text whose buffers `manager` will hand out. Throws CHresultException with E_FAIL when that is null.
    explicit CWideString(CStringManager* manager);
    /// A copy of `text`, embedded zeros included.
    explicit CWideString(std::wstring_view text, CStringManager* manager = CStringManager::Shared());
    ~CWideString();

    CWideString(const CWideString& other) noexcept;
    CWideString(CWideString&& other) noexcept;
    CWideString& operator=(CWideString other) noexcept;

    /// Interprets `format` by the rules of the C runtime's wide formatting, in which `%s` is a wide text. Arguments are
    /// numbers and wide texts, checked when compiled; formats are this library's own literals, never text from outside.
    template <typename... Args>
    [[nodiscard]] static CWideString Format(const wchar_t* format, Args... args) {
        static_assert((kIsFormattable<Args> && ...), "only numbers and const wchar_t* can be formatted");
        return FormatArguments(format, args...);
    }

    CWideString& Append(std::wstring_view text);

    [[nodiscard]] bool Contains(const wchar_t* part) const noexcept;

    /// The characters, closed by a zero; valid until this object changes or dies.
    [[nodiscard]] const wchar_t* GetText() const noexcept { return m_text; }
    [[nodiscard]] std::size_t GetLength() const noexcept;
    [[nodiscard]] bool IsEmpty() const noexcept { return GetLength() == 0; }
    [[nodiscard]] std::wstring_view GetView() const noexcept { return {m_text, GetLength()}; }

private:
    template <typename T>
    static constexpr bool kIsFormattable =
        std::is_arithmetic_v<T> || std::is_same_v<T, const wchar_t*> || std::is_same_v<T, wchar_t*>;

    [[nodiscard]] static CWideString FormatArguments(const wchar_t* format, ...);

    void Release() noexcept;

    CStringManager* m_manager;
    CStringData* m_data = nullptr;  // null for the empty text
    const wchar_t* m_text = L"";
};
