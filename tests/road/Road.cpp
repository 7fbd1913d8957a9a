#include "Road.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

std::wstring FromRunner(const wchar_t* name) {
    wchar_t value[1024];
    const DWORD length = GetEnvironmentVariableW(name, value, 1024);
    if (length == 0 || length >= 1024) {
        throw std::runtime_error("to be run by tests/road/with-servers");
    }
    return {value, length};
}

}  // namespace

std::wstring Road::PlainUrl() {
    return FromRunner(L"TELVAR_PLAIN_URL");
}

std::wstring Road::TlsUrl() {
    return FromRunner(L"TELVAR_TLS_URL");
}

std::filesystem::path Road::File(const wchar_t* name) {
    return std::filesystem::path(FromRunner(L"TELVAR_ROAD")) / name;
}

std::string Road::ReadText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::wstring Road::ReadCertificate(const wchar_t* name) {
    const std::string text = ReadText(File(name));
    return {text.begin(), text.end()};
}
