#include "RuntimeDiscovery.h"

#include <shlwapi.h>

#include "AgentRegistry.h"
#include "CConversionBuffer.h"
#include "CFindFile.h"
#include "ThrowResult.h"

namespace {

constexpr wchar_t kBrokerKey[] = L"Software\\Orvane, Inc.\\Orvane Dorsel";

// Of the agent's key.
constexpr wchar_t kJrePath[] = L"JrePath";
constexpr wchar_t kClassPath[] = L"ClassPath";
constexpr wchar_t kConfigDirectory[] = L"ConfigDirectory";
constexpr wchar_t kLogDirectory[] = L"LogDirectory";
// Of the broker agent's key.
constexpr wchar_t kJavaHome[] = L"JavaHome";
constexpr wchar_t kAgentInstallPath[] = L"AgentInstallPath";

constexpr wchar_t kJreSubfolder[] = L"jre";
constexpr wchar_t kArchives[] = L"*.jar";
constexpr char kClassPathSeparator = ';';

constexpr char kClassPathOption[] = "-Djava.class.path=";
constexpr char kReduceSignalsOption[] = "-Xrs";
constexpr char kHeapLimitOption[] = "-Xmx100M";

constexpr wchar_t kNoJavaHome[] = L"Failed to retrieve the Java home path.  Using the Lumeth agent's JRE instead.";
constexpr wchar_t kNoInstallPath[] = L"Failed to get the agent's installation path.";
constexpr wchar_t kUsingJre[] = L"Using JRE from '%s'.";
constexpr wchar_t kNoClassPath[] = L"Failed to get the agent's class path.";
constexpr wchar_t kNoEnumeration[] = L"Failed to enumerate class path directory '%s'.";

void CloseWithBackslash(std::wstring& directory) {
    if (directory.empty() || directory.back() != L'\\') {
        directory += L'\\';
    }
}

/// The runtime inside the broker agent's installation, which is the last place to look.
HRESULT GetInstalledJavaHome(const CBridgeLog& log, std::wstring& directory) {
    const HRESULT read = ReadAgentRegistryString(kBrokerKey, kAgentInstallPath, directory);
    if (FAILED(read)) {
        log.ErrorWithResult(read, kNoInstallPath);
        return read;
    }
    CloseWithBackslash(directory);
    directory += kJreSubfolder;
    return read;
}

HRESULT FindJavaHome(const CBridgeLog& log, std::wstring& directory) {
    const HRESULT ofAgent = ReadAgentRegistryString(AgentKeyPath(), kJrePath, directory);
    if (SUCCEEDED(ofAgent)) {
        return ofAgent;
    }
    const HRESULT ofBroker = ReadAgentRegistryString(kBrokerKey, kJavaHome, directory);
    if (SUCCEEDED(ofBroker)) {
        return ofBroker;
    }
    log.WarningWithCode(ofBroker, kNoJavaHome);
    return GetInstalledJavaHome(log, directory);
}

}  // namespace

HRESULT GetJavaHome(const CBridgeLog& log, std::wstring& directory) {
    const HRESULT found = FindJavaHome(log, directory);
    if (FAILED(found)) {
        return found;
    }
    if (!directory.empty()) {
        CloseWithBackslash(directory);
    }
    log.Info(kUsingJre, directory.c_str());
    return found;
}

HRESULT GetClassPath(const CBridgeLog& log, std::string& classPath) {
    std::wstring directory;
    const HRESULT read = ReadAgentRegistryString(AgentKeyPath(), kClassPath, directory);
    if (FAILED(read)) {
        log.ErrorWithResult(read, kNoClassPath);
        return read;
    }
    wchar_t pattern[MAX_PATH];
    if (!PathCombineW(pattern, directory.c_str(), kArchives)) {
        // Longer than the platform joins paths.
        const HRESULT tooLong = HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE);
        log.ErrorWithResult(tooLong, kNoEnumeration, directory.c_str());
        return tooLong;
    }
    return AppendJarsToClassPath(log, pattern, classPath);
}

HRESULT AppendJarsToClassPath(const CBridgeLog& log, const std::wstring& pattern, std::string& classPath) {
    CFindFile find;
    if (!find.FindFirst(pattern)) {
        const HRESULT failed = LastErrorResult();
        log.ErrorWithResult(failed, kNoEnumeration, pattern.c_str());
        return failed;
    }
    do {
        if (find.IsDirectory()) {
            continue;
        }
        if (!classPath.empty()) {
            classPath += kClassPathSeparator;
        }
        classPath += CNarrowFromWide(find.GetFilePath()).GetView();
    } while (find.FindNext());
    return S_OK;
}

HRESULT GetConfigDirectory(std::wstring& directory) {
    return ReadAgentRegistryString(AgentKeyPath(), kConfigDirectory, directory);
}

HRESULT GetLogDirectory(std::wstring& directory) {
    return ReadAgentRegistryString(AgentKeyPath(), kLogDirectory, directory);
}

std::vector<std::string> MakeJavaOptions(const std::string& classPath) {
    return {kClassPathOption + classPath, kReduceSignalsOption, kHeapLimitOption};
}
