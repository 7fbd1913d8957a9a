#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// A key by its root and its path below.
struct RegistryPath {
    HKEY root;
    std::wstring key;
};

/// Takes the name of a root, if `path` begins with one, off it, with one backslash behind it. Without such a name the
/// whole is below HKEY_LOCAL_MACHINE. Throws std::bad_alloc.
[[nodiscard]] RegistryPath SplitRegistryPath(std::wstring_view path);
