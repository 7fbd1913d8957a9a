#include "Options.h"

#include <windows.h>

#include <shellapi.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "Handles.h"
#include "Text.h"

namespace {

constexpr int kBadOptions = 2;
constexpr double kLeastInterval = 0.05;
constexpr double kMostSeconds = 24.0 * 60 * 60;

/// In UTF-8, last one first, as the parser takes them.
std::vector<std::string> ReadArguments() {
    int count = 0;
    const UniqueLocalMemory<wchar_t*> words(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int i = 1; words && i < count; ++i) {
        arguments.push_back(ToUtf8(words.get()[i]));
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

/// A document that cannot be read would be none, and another server might be found.
std::string CheckConfigFile(const std::string& path) {
    return ReadFile(path).empty() ? path + " cannot be read, or is empty" : std::string();
}

}  // namespace

std::optional<Options> ReadOptions(int& exitCode) {
    Options options;
    std::string configFile;
    std::string product;
    CLI::App app(
        "A small host of the library: sends what it reads of this machine to a message server, and prints a "
        "line of JSON for each item.\nIt ends in order after the duration, or when its standard input ends.",
        "sample-host");
    app.add_option("--config", configFile,
                   "The configuration document, whose serverConfigRegistry element names the registry key of the "
                   "message server; without one, the legacy list and the policy in the registry tell")
        ->check(CheckConfigFile);
    app.add_option("--duration", options.durationSeconds, "For how many seconds samples are sent")
        ->check(CLI::Range(0.0, kMostSeconds))
        ->capture_default_str();
    app.add_option("--interval", options.intervalSeconds, "Seconds from one sample to the next")
        ->check(CLI::Range(kLeastInterval, kMostSeconds))
        ->capture_default_str();
    // The library itself looks for it in the command line; the host has to let it be there.
    app.add_option("--product", product, "Under which name the host is installed in the registry")->required();
    app.add_flag("--verbose", options.isVerbose, "Prints the library's detailed log as well");
    try {
        app.parse(ReadArguments());
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        exitCode = 0;
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "sample-host: %s; --help tells the options\n", error.what());
        exitCode = kBadOptions;
        return std::nullopt;
    }
    options.configuration = configFile.empty() ? std::wstring() : FromUtf8(ReadFile(configFile));
    return options;
}
