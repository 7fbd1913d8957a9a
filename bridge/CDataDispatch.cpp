#include "CDataDispatch.h"

#include "BindingTable.h"
#include "CBstr.h"
#include "CJavaString.h"
#include "Enum2String.h"
#include "HostObject.h"
#include "ServerConnectionFailure.h"
#include "UserLabel.h"

namespace {

namespace Client = Binding::DesktopMessageClient;

/// A kind without a name: a poll of the desktop.
constexpr unsigned char kDesktopPoll = 255;
/// Of an item that did not reach the message server: the Win32 error 5035.
constexpr HRESULT kServerNotReached = static_cast<HRESULT>(0x800713AB);

constexpr wchar_t kClientDescriptor[] =
    L"<client><type>DesktopAgent</type><name>%s</name><id>%s</id><version>%s.%s.%s.%s</version><uniqueid>%s</uniqueid>"
    L"</client>";
constexpr const wchar_t* kClientVersion[] = {L"6", L"2", L"0", L"3274634"};

constexpr wchar_t kEventNotSent[] = L"Failed to send user event %s for user %s to the message server.  %s";
constexpr wchar_t kDataNotSent[] = L"Failed to send data with type %s to the message server.  %s";
constexpr wchar_t kStartupNotTold[] = L"Failed to CallCallback for eStartup:(%s, %s, %s)";

const wchar_t* OrNull(const wchar_t* text) noexcept {
    return text ? text : L"null";
}

}  // namespace

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
    FindSession();
    switch (m_item.type) {
        case eStartup:
            return SendStartup();
        case eUserSessionStart:
        case eUserSessionLogon:
        case eUserSessionLogoff:
        case eUserSessionRefresh:
        case eUserSessionReconnect:
        case eUserSessionDisconnect:
        case eUserSessionEnd:
        case eExtendedData:
        case eSample:
        case eTraceRoute:
        case kDesktopPoll:
            return E_NOTIMPL;
        default:
            return m_componentsResult;
    }
}

HRESULT CDataDispatch::SendStartup() {
    const std::shared_ptr<CJavaObject> connection = m_convertor.GetConnection(m_context, m_systemInfo);
    if (!connection) {
        return E_FAIL;
    }
    // Hidden from the log: the virtual machine's id is part of it.
    const std::shared_ptr<CJavaString> descriptor =
        m_convertor.NewJavaString(m_context.vm, MakeClientDescriptor(), true);
    if (!descriptor) {
        return E_FAIL;
    }
    const HRESULT pointed = m_pointClient();
    if (FAILED(pointed)) {
        return pointed;
    }
    const std::shared_ptr<CJavaString> answer =
        m_context.messageClient->CallStringMethod(Client::kOnStartup, descriptor, connection);
    const HRESULT sent = CheckSent();
    if (FAILED(sent)) {
        return sent;
    }
    std::wstring text;
    const HRESULT read = ReadAnswer(answer, text);
    if (read != S_OK) {
        return FAILED(read) ? read : m_componentsResult;
    }
    const HRESULT told = TellCallbacks(eStartup, kStartupNotTold, text);
    return FAILED(told) ? told : m_componentsResult;
}

/// Events of sessions are logged with their user, so each kind of data is asked whether it is one.
void CDataDispatch::FindSession() {
    m_session = QueryHostObject<IUserSessionInfo>(m_item.data);
}

/// A machine name that is not to be had is empty.
std::wstring CDataDispatch::MakeClientDescriptor() const {
    CBstr machineName;
    static_cast<void>(m_systemInfo.get_machineName(machineName.Receive()));
    return std::wstring(CWideString::Format(kClientDescriptor, machineName.GetText(), m_context.id.c_str(),
                                            kClientVersion[0], kClientVersion[1], kClientVersion[2], kClientVersion[3],
                                            m_context.uniqueId.c_str())
                            .GetView());
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

HRESULT CDataDispatch::TellCallbacks(DataType type, const wchar_t* failure, const std::wstring& text) const {
    const ServerConfig server = MakeServerConfig(m_item.url, m_item.authToken, m_item.certificate);
    const HRESULT told = m_callbacks.CallCallback(server, type, text.c_str());
    if (FAILED(told)) {
        m_log.Error(failure, OrNull(m_item.url), OrNull(m_item.authToken), OrNull(m_item.certificate));
    }
    return told;
}
