#include "CFindFile.h"

namespace {

/// The absolute form of `path`, or `path` itself where the system cannot make one.
std::wstring MakeAbsolute(const std::wstring& path) {
    std::wstring absolute(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(absolute.size()), absolute.data(), nullptr);
    if (length == 0 || length >= absolute.size()) {
        return path;
    }
    absolute.resize(length);
    return absolute;
}

std::wstring FolderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/") + 1);
}

}  // namespace

bool CFindFile::FindFirst(const std::wstring& pattern) {
    m_folder = FolderOf(MakeAbsolute(pattern));
    m_search.Reset();  // before the search, which leaves the last error for the caller
    m_search.Reset(FindFirstFileW(pattern.c_str(), &m_match));
    return static_cast<bool>(m_search);
}

bool CFindFile::FindNext() noexcept {
    return m_search && FindNextFileW(m_search.Get(), &m_match);
}

bool CFindFile::IsDirectory() const noexcept {
    return (m_match.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring CFindFile::GetFileName() const {
    return m_match.cFileName;
}

std::wstring CFindFile::GetFilePath() const {
    return m_folder + m_match.cFileName;
}
