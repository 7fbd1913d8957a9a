#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "CBridgeLog.h"

// Where the Java runtime and the archives are, by the registry of the host's installation. Any thread. All throw
// CHresultException or std::bad_alloc when memory is exhausted.

/// The directory of the Java runtime, closed by a backslash unless it is empty: the agent's own, else the broker
/// agent's, else the one inside the broker agent's installation. Says in the log which one it is.
/// @return the result of the last read; what a failed one left is in `directory`
[[nodiscard]] HRESULT GetJavaHome(const CBridgeLog& log, std::wstring& directory);

/// The archives of the agent's class path directory, separated by semicolons, in the thread's ANSI code page: a
/// character that it lacks is lost, and with it the archive. Failures are logged; `classPath` is empty then.
[[nodiscard]] HRESULT GetClassPath(const CBridgeLog& log, std::string& classPath);

/// Appends every file that matches `pattern`, in the file system's own order; subfolders are neither taken nor
/// searched.
/// @return the error of a search that finds nothing, which is logged
[[nodiscard]] HRESULT AppendJarsToClassPath(const CBridgeLog& log, const std::wstring& pattern, std::string& classPath);

/// The agent's configuration folder. Nothing is logged.
[[nodiscard]] HRESULT GetConfigDirectory(std::wstring& directory);

/// The folder of the Java side's own log. Nothing is logged.
[[nodiscard]] HRESULT GetLogDirectory(std::wstring& directory);

/// The options that the machine starts with; there are no others.
[[nodiscard]] std::vector<std::string> MakeJavaOptions(const std::string& classPath);
