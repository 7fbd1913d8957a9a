#pragma once

#include <string>

/// The name of the product that hosts the library, by the option `--product` of the process's command line, which is
/// read anew on every call. It selects the product's registry key. Any thread. Throws std::bad_alloc.
[[nodiscard]] std::wstring ProductName();

/// The same for a given command line; null counts as none.
///
/// The value follows "--product=" at once, or else "--product" and any white space. It ends at white space, or at the
/// closing one of the double quotes around it. Without the option it begins at the start of the command line, which
/// makes it the program's own path: hosts rely on that. Without a command line, and with a quote that is not closed, it
/// is the default name.
[[nodiscard]] std::wstring ParseProductName(const wchar_t* commandLine);
