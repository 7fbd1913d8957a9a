#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The runner of these tests, with-servers, which starts and ends message servers on the build machine. One thread at a
/// time. Throws std::runtime_error where the test was started without it.
namespace Road {

/// Has it carry out an order, and waits for that. What it has to say of it; throws where it fails.
std::string Order(const std::vector<std::string>& words);

/// A file of its folder, the servers' working directory.
[[nodiscard]] std::filesystem::path File(const std::string& name);
/// Empty where there is no such file.
[[nodiscard]] std::string ReadText(const std::filesystem::path& file);

}  // namespace Road
