#pragma once

#include <windows.h>

#include <string>

#include "SystemHandles.h"

/// Walks the entries of one folder that match a pattern, in the file system's own order. One thread at a time.
class CFindFile {
public:
    CFindFile() = default;

    /// Starts at the first match of `pattern` (a path whose last part may hold wildcards). False without a match, the
    /// last error telling why; an enumeration in progress ends first.
    [[nodiscard]] bool FindFirst(const std::wstring& pattern);
    /// Goes on to the next match; false when there is none.
    [[nodiscard]] bool FindNext() noexcept;

    // Of the current match; only after a search that returned true.
    [[nodiscard]] bool IsDirectory() const noexcept;
    [[nodiscard]] std::wstring GetFileName() const;
    /// The folder of the pattern, made absolute, and the file name.
    [[nodiscard]] std::wstring GetFilePath() const;

private:
    std::wstring m_folder;
    CFindHandle m_search;
    WIN32_FIND_DATAW m_match{};
};
