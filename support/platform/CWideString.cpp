#include "CWideString.h"

#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <utility>

#include "ThrowResult.h"
#include "ProcessHeap.h"

CWideString::CWideString(CStringManager* manager) : m_manager(manager) {
    if (!manager) {
        ThrowResult(E_FAIL);
    }
}

CWideString::CWideString(std::wstring_view text, CStringManager* manager) : CWideString(manager) {
    Append(text);
}

CWideString::~CWideString() {
    Release();
}

CWideString::CWideString(const CWideString& other) noexcept
    : m_manager(other.m_manager), m_data(other.m_data), m_text(other.m_text) {
    if (m_data) {
        m_data->references.fetch_add(1, std::memory_order_relaxed);
    }
}

CWideString::CWideString(CWideString&& other) noexcept
    : m_manager(other.m_manager),
      m_data(std::exchange(other.m_data, nullptr)),
      m_text(std::exchange(other.m_text, L"")) {}

CWideString& CWideString::operator=(CWideString other) noexcept {
    std::swap(m_manager, other.m_manager);
    std::swap(m_data, other.m_data);
    std::swap(m_text, other.m_text);
    return *this;
}

CWideString& CWideString::Append(std::wstring_view text) {
    if (text.empty()) {
        return *this;
    }
    const std::size_t length = GetLength() + text.size();
    const bool fits = m_data && m_data->references.load(std::memory_order_acquire) == 1 && length <= m_data->capacity;
    if (fits) {
        // `text` may be a part of this very string; what is written lies behind it.
        std::copy(text.begin(), text.end(), m_data->GetText() + GetLength());
    } else {
        // Half as much again, so that a text grown piece by piece is not copied for each piece.
        const std::size_t capacity = m_data ? length + length / 2 : length;
        CStringData* const grown = m_manager->Allocate(capacity);
        wchar_t* const end = std::copy_n(m_text, GetLength(), grown->GetText());
        std::copy(text.begin(), text.end(), end);
        Release();
        m_data = grown;
        m_text = grown->GetText();
    }
    m_data->length = length;
    m_data->GetText()[length] = L'\0';
    return *this;
}

bool CWideString::Contains(const wchar_t* part) const noexcept {
    return std::wcsstr(m_text, part) != nullptr;
}

std::size_t CWideString::GetLength() const noexcept {
    return m_data ? m_data->length : 0;
}

// The one wide formatter. These functions of the C runtime agree on `%s` (wide); `vswprintf` under libstdc++ is MinGW's
// own, in which it is narrow. Most messages are short: formatted once, they take half the time.
CWideString CWideString::FormatArguments(const wchar_t* format, ...) {
    constexpr std::size_t kShort = 256;
    wchar_t shortText[kShort];
    std::va_list arguments;
    va_start(arguments, format);
    const int shortLength = _vsnwprintf(shortText, kShort, format, arguments);  // negative where it does not fit
    va_end(arguments);
    if (shortLength >= 0) {
        return CWideString({shortText, static_cast<std::size_t>(shortLength)});
    }

    va_start(arguments, format);
    const int length = _vscwprintf(format, arguments);
    va_end(arguments);
    if (length < 0) {
        return CWideString(format);  // a format that the runtime refuses still says more than nothing
    }

    const std::size_t capacity = static_cast<std::size_t>(length) + 1;
    CHeapArray<wchar_t> buffer(capacity);
    va_start(arguments, format);
    vswprintf_s(buffer.Get(), capacity, format, arguments);
    va_end(arguments);
    return CWideString({buffer.Get(), capacity - 1});
}

void CWideString::Release() noexcept {
    CStringData* const data = std::exchange(m_data, nullptr);
    if (data && data->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        CStringManager::Free(data);
    }
}
