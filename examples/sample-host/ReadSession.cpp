#include "ReadSession.h"

#include <oleauto.h>
#include <sddl.h>

#include "Handles.h"

namespace {

UniqueHandle OpenOwnToken() {
    HANDLE token = nullptr;
    return UniqueHandle(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) ? token : nullptr);
}

void ReadUser(HANDLE token, SessionReading& session) {
    alignas(TOKEN_USER) BYTE buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE] = {};
    DWORD size = 0;
    if (!GetTokenInformation(token, TokenUser, buffer, sizeof(buffer), &size)) {
        return;
    }
    const PSID sid = reinterpret_cast<const TOKEN_USER*>(buffer)->User.Sid;
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(sid, &text)) {
        session.sid = UniqueLocalMemory<wchar_t>(text).get();
    }
    wchar_t user[256] = L"";
    wchar_t domain[256] = L"";
    DWORD userSize = ARRAYSIZE(user);
    DWORD domainSize = ARRAYSIZE(domain);
    SID_NAME_USE use = SidTypeUnknown;
    if (LookupAccountSidW(nullptr, sid, user, &userSize, domain, &domainSize, &use)) {
        session.user = user;
        session.domain = domain;
    }
}

bool IsElevated(HANDLE token) {
    TOKEN_ELEVATION elevation = {};
    DWORD size = 0;
    return GetTokenInformation(token, TokenElevation, &elevation, sizeof(elevation), &size) &&
           elevation.TokenIsElevated != 0;
}

/// When this process began, as COM tells times: days since 1899-12-30, here in UTC.
DATE ReadStart() {
    FILETIME created = {};
    FILETIME unused = {};
    SYSTEMTIME start = {};
    DATE date = 0;
    GetProcessTimes(GetCurrentProcess(), &created, &unused, &unused, &unused);
    FileTimeToSystemTime(&created, &start);
    SystemTimeToVariantTime(&start, &date);
    return date;
}

std::wstring ReadProfileFolder() {
    wchar_t folder[MAX_PATH] = L"";
    return GetEnvironmentVariableW(L"USERPROFILE", folder, ARRAYSIZE(folder)) < ARRAYSIZE(folder) ? folder : L"";
}

}  // namespace

SessionReading ReadOwnSession() {
    SessionReading session;
    DWORD id = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &id);
    session.id = static_cast<LONG>(id);
    session.state = kSessionConnected;

    const UniqueHandle token = OpenOwnToken();
    ReadUser(token.get(), session);
    // Types that have a text of COM's making: the library sends what VariantChangeType makes of them.
    session.properties = {
        {L"profileFolder", _variant_t(ReadProfileFolder().c_str())},
        {L"agentProcessId", _variant_t(static_cast<LONG>(GetCurrentProcessId()))},
        {L"agentElevated", _variant_t(IsElevated(token.get()))},
        {L"agentStarted", _variant_t(ReadStart(), VT_DATE)},
    };
    return session;
}
