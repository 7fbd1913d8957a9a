#include "CDataDispatch.h"

#include <algorithm>
#include <iterator>

#include "CBstr.h"
#include "CJavaString.h"
#include "Enum2String.h"
#include "HostObject.h"
#include "ServerConnectionFailure.h"
#include "UserLabel.h"

namespace {

/// A kind without a name: a poll of the desktop.
constexpr unsigned char kDesktopPoll = 255;
/// Of an item that did not reach the message server: the Win32 error 5035.
constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

constexpr wchar_t kEventNotSent[] = L"Failed to send user event %s for user %s to the message server.  %s";
constexpr wchar_t kDataNotSent[] = L"Failed to send data with type %s to the message server.  %s";

}  // namespace

const CDataDispatch::Kind CDataDispatch::s_kinds[] = {
    // type, is a session event, takes the desktop
    {eUserSessionStart, true, false, &CDataDispatch::SendNothing},
    {eUserSessionLogon, true, true, &CDataDispatch::SendLogon},
    {eUserSessionLogoff, true, false, &CDataDispatch::SendLogoff},
    {eUserSessionRefresh, true, true, &CDataDispatch::SendRefresh},
    {eUserSessionReconnect, true, false, &CDataDispatch::SendReconnect},
    {eUserSessionDisconnect, true, false, &CDataDispatch::SendDisconnect},
    {eUserSessionEnd, true, false, &CDataDispatch::SendNothing},
    {eExtendedData, false, false, &CDataDispatch::SendExtendedData},
    {eStartup, false, false, &CDataDispatch::SendStartup},
    {eSample, false, false, &CDataDispatch::SendSample},
    {eTraceRoute, false, false, &CDataDispatch::SendTraceRoute},
    {kDesktopPoll, false, true, &CDataDispatch::SendDesktopPoll},
};

/// Null for a type that nobody has given a meaning.
const CDataDispatch::Kind* CDataDispatch::FindKind(unsigned char type) noexcept {
    const Kind* const found =
        std::find_if(std::begin(s_kinds), std::end(s_kinds), [type](const Kind& kind) { return kind.type == type; });
    return found == std::end(s_kinds) ? nullptr : found;
}

CDataDispatch::CDataDispatch(const CBridgeLog& log, const JavaBridge& bridge, ISystemInfo& systemInfo,
                             CCallbackRegistry& callbacks, PointClient pointClient, const MachineIdentity& identity,
                             const DataItem& item)
    : m_log(log),
      m_systemInfo(systemInfo),
      m_callbacks(callbacks),
      m_pointClient(std::move(pointClient)),
      m_item(item),
      m_componentsResult(identity.componentsResult),
      m_context{bridge.vm, bridge.messageClient, identity.id, OrEmpty(item.authToken), identity.virtualMachineId},
      m_convertor(log) {}

HRESULT CDataDispatch::Send() {
    // Asked for with every kind of data: failures to send name the user where there is one.
    m_session = QueryHostObject<IUserSessionInfo>(m_item.data);

    const Kind* const kind = FindKind(m_item.type);
    if (!kind) {
        return m_componentsResult;
    }
    m_connection = m_convertor.GetConnection(m_context, m_systemInfo);
    if (!m_connection) {
        return E_FAIL;
    }
    if (kind->isSessionEvent) {
        if (!m_session) {
            return E_FAIL;
        }
        m_javaSession = m_convertor.GetUserSession(m_context.vm, m_session.Get());
        if (!m_javaSession) {
            return m_componentsResult;
        }
    }
    if (kind->takesDesktop) {
        m_desktop = m_convertor.GetDesktop(m_context.vm, &m_systemInfo);
        if (!m_desktop) {
            return m_componentsResult;
        }
    }
    return (this->*kind->send)();
}

/// The beginning and the end of a session are known by its logon and its logoff.
HRESULT CDataDispatch::SendNothing() {
    return m_componentsResult;
}

/// Whether the message client took the item: to be asked right after the call.
HRESULT CDataDispatch::CheckSent() const {
    std::wstring exceptionText;
    if (!m_context.vm->GetJavaException(exceptionText)) {
        return S_OK;
    }
    LogNotSent(exceptionText);
    return IsServerConnectionFailure(exceptionText) ? kServerNotReached : E_FAIL;
}

/// @return S_OK with the text; S_FALSE when there is no answer; E_FAIL, logged, when Java does not give its text
HRESULT CDataDispatch::ReadAnswer(const std::shared_ptr<CJavaString>& answer, std::wstring& text) const {
    if (!answer || !answer->GetReference()) {
        return S_FALSE;
    }
    if (answer->GetString(text)) {
        return S_OK;
    }
    LogNotSent(m_context.vm->TakeExceptionText());
    return E_FAIL;
}

void CDataDispatch::LogNotSent(const std::wstring& exceptionText) const {
    if (!m_log) {
        return;
    }
    const CWideString typeName = Enum2String<DataType, eUserSessionStart>(static_cast<DataType>(m_item.type));
    if (!m_session) {
        m_log.Error(kDataNotSent, typeName.GetText(), exceptionText.c_str());
        return;
    }
    m_log.Error(kEventNotSent, typeName.GetText(), GetUserLabel(*m_session.Get()).c_str(), exceptionText.c_str());
}
