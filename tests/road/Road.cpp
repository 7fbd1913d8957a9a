#include "Road.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr DWORD kPollMs = 10;

fs::path Folder() {
    wchar_t value[MAX_PATH];
    const DWORD length = GetEnvironmentVariableW(L"TELVAR_ROAD", value, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        throw std::runtime_error("to be run by tests/road/with-servers");
    }
    return std::wstring(value, length);
}

}  // namespace

std::string Road::Order(const std::vector<std::string>& words) {
    const fs::path unfinished = File("order.new");
    {
        std::ofstream order(unfinished, std::ios::binary);
        for (const std::string& word : words) {
            order << word << '\n';
        }
    }
    fs::rename(unfinished, File("order"));
    const fs::path file = File("answer");
    while (!fs::exists(file)) {
        Sleep(kPollMs);
    }
    const std::string answer = ReadText(file);
    fs::remove(file);

    static const std::string kDone = "done\n";
    if (answer.rfind(kDone, 0) != 0) {
        throw std::runtime_error("with-servers, ordered to " + words.at(0) + ": " + answer);
    }
    return answer.substr(kDone.size());
}

fs::path Road::File(const std::string& name) {
    return Folder() / name;
}

std::string Road::ReadText(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
