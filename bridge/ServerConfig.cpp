#include "ServerConfig.h"

#include <cwchar>
#include <tuple>

bool operator<(const ServerConfig& left, const ServerConfig& right) noexcept {
    return std::tie(left.url, left.authToken, left.certificate) <
           std::tie(right.url, right.authToken, right.certificate);
}

bool IsSameServer(const ServerConfig& config, const wchar_t* url, const wchar_t* authToken,
                  const wchar_t* certificate) noexcept {
    return _wcsicmp(OrEmpty(url), config.url.c_str()) == 0 && config.authToken == OrEmpty(authToken) &&
           config.certificate == OrEmpty(certificate);
}

ServerConfig MakeServerConfig(const wchar_t* url, const wchar_t* authToken, const wchar_t* certificate) {
    return {OrEmpty(url), OrEmpty(authToken), OrEmpty(certificate)};
}
