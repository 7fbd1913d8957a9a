#include "HostileSampleJava.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <cwchar>

std::wstring ModelErrorText(HRESULT result, const wchar_t* blanks) {
    std::array<wchar_t, 32> code{};
    swprintf(code.data(), code.size(), L"Error code 0x%08lx", static_cast<unsigned long>(result));
    wchar_t* text = nullptr;
    constexpr DWORD kFlags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = FormatMessageW(kFlags, nullptr, static_cast<DWORD>(result), 0x400,
                                        reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring all = blanks + std::wstring(code.data()) + (length == 0 ? L"." : L" -- " + std::wstring(text, length));
    LocalFree(text);
    return all;
}

std::wstring InMessage(const std::wstring& text) {
    return text.substr(0, text.find(L'\0'));
}

bool CModelJava::Fails(const char* function) {
    if (m_fault.nth == 0 || std::strcmp(function, m_fault.function) != 0) {
        return false;
    }
    ++m_calls;
    return m_calls >= m_fault.nth && (m_fault.times < 0 || m_calls < m_fault.nth + m_fault.times);
}

std::string QuoteForEvent(const std::wstring& text) {
    std::string quoted = "\"";
    for (const wchar_t unit : text) {
        if (unit >= L' ' && unit <= L'~' && unit != L'"' && unit != L'\\') {
            quoted += static_cast<char>(unit);
        } else {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(unit));
            quoted += code.data();
        }
    }
    return quoted + "\"";
}
