#pragma once

#include <optional>
#include <string>

struct Options {
    std::wstring configuration;  ///< the document that names the server's registry key; empty without one
    double durationSeconds = 30;
    double intervalSeconds = 2;
    bool isVerbose = false;
};

/// Reads the command line. Where it asks for help or cannot be understood, that is said, and `exitCode` set.
std::optional<Options> ReadOptions(int& exitCode);
