#pragma once

#include <nlohmann/json.hpp>

/// Prints the tables of docs/performance.md, as far as there are figures for them.
void PrintMarkdownTables(const nlohmann::json& results);
