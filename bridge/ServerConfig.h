#pragma once

#include <string>

/// A host's text, which may be null and is empty then.
[[nodiscard]] inline const wchar_t* OrEmpty(const wchar_t* text) noexcept {
    return text ? text : L"";
}

/// Which message server is meant, as hosts say it with every item and every callback. As a key it is ordered by the
/// three texts one after the other, each by its code units.
struct ServerConfig {
    std::wstring url;
    std::wstring authToken;
    std::wstring certificate;

    friend bool operator<(const ServerConfig& left, const ServerConfig& right) noexcept;
};

/// The same server: the URL in whatever letter case, the token and the certificate exactly. Null texts are empty ones.
[[nodiscard]] bool IsSameServer(const ServerConfig& config, const wchar_t* url, const wchar_t* authToken,
                                const wchar_t* certificate) noexcept;

/// Null texts become empty ones. Throws std::bad_alloc.
[[nodiscard]] ServerConfig MakeServerConfig(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate);
