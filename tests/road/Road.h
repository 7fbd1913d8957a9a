#pragma once

#include <filesystem>
#include <string>

/// What the runner of these tests, with-servers, says of the servers that it has started. Throws std::runtime_error
/// where the test was started without it.
namespace Road {

[[nodiscard]] std::wstring PlainUrl();
[[nodiscard]] std::wstring TlsUrl();

/// A file of the runner's folder.
[[nodiscard]] std::filesystem::path File(const wchar_t* name);
[[nodiscard]] std::string ReadText(const std::filesystem::path& file);
/// A certificate's text as a host would have it.
[[nodiscard]] std::wstring ReadCertificate(const wchar_t* name);

}  // namespace Road
