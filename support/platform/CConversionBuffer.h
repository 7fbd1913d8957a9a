#pragma once

#include <windows.h>

#include <cstddef>
#include <string_view>

#include "ProcessHeap.h"

/// A text that was copied or converted for the length of a call: up to 128 characters, the closing zero included, lie
/// in the object itself, longer texts on the process heap. A null source stays null. Lives on the stack, one thread.
template <typename Char>
class CConversionBuffer {
public:
    static constexpr std::size_t kInlineCharacters = 128;

    CConversionBuffer(const CConversionBuffer&) = delete;
    CConversionBuffer& operator=(const CConversionBuffer&) = delete;

    /// The text, closed by a zero, or null where the source was null.
    [[nodiscard]] const Char* Get() const noexcept { return m_text; }
    /// The text without its closing zero; empty for null.
    [[nodiscard]] std::basic_string_view<Char> GetView() const noexcept { return {m_text, m_length}; }

protected:
    CConversionBuffer() noexcept = default;
    ~CConversionBuffer() = default;

    /// Room for `length` characters and a closing zero; the text is that long from now on. Throws CHresultException
    /// with E_OUTOFMEMORY.
    Char* Prepare(std::size_t length) {
        if (length >= kInlineCharacters) {
            m_heap = CHeapArray<Char>(length + 1);
            m_text = m_heap.Get();
        } else {
            m_text = m_inline;
        }
        m_length = length;
        m_text[length] = Char();
        return m_text;
    }

private:
    Char* m_text = nullptr;
    std::size_t m_length = 0;
    CHeapArray<Char> m_heap;
    Char m_inline[kInlineCharacters];
};

/// A private copy of a wide text. Throws CHresultException with E_OUTOFMEMORY.
class CWideCopy : public CConversionBuffer<wchar_t> {
public:
    explicit CWideCopy(const wchar_t* text);
};

/// A narrow text in a code page (by default the calling thread's ANSI code page) as UTF-16. Throws CHresultException:
/// E_OUTOFMEMORY, E_INVALIDARG for a text longer than the system can convert, else the system's error.
class CWideFromNarrow : public CConversionBuffer<wchar_t> {
public:
    explicit CWideFromNarrow(const char* text, UINT codePage = CP_THREAD_ACP);
    explicit CWideFromNarrow(std::string_view text, UINT codePage = CP_THREAD_ACP);

private:
    void Convert(std::string_view text, UINT codePage);
};

/// A UTF-16 text in a code page (by default the calling thread's ANSI code page); characters that the code page lacks
/// become its default character. Throws as CWideFromNarrow does.
class CNarrowFromWide : public CConversionBuffer<char> {
public:
    explicit CNarrowFromWide(std::wstring_view text, UINT codePage = CP_THREAD_ACP);
};
