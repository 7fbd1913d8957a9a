#include "CDataDispatch.h"
#include "HostObject.h"

namespace {

namespace Client = Binding::DesktopMessageClient;

constexpr wchar_t kLogonNotTold[] = L"Failed to CallCallback for eUserSessionLogon:(%s, %s, %s)";

}  // namespace

HRESULT CDataDispatch::SendLogon() {
    std::wstring answer;
    const HRESULT asked = Ask(answer, Client::kOnUserLogon, m_connection, m_desktop, GetJavaId(), m_javaSession);
    return TellCallbacks(asked, eUserSessionLogon, kLogonNotTold, answer);
}

HRESULT CDataDispatch::SendLogoff() {
    AddLogoffFigures();
    return OrComponents(Tell(Client::kOnUserLogoff, m_connection, GetJavaId(), m_javaSession));
}

/// What was measured in the session up to its end, where the data has it. The logoff is sent in any case.
void CDataDispatch::AddLogoffFigures() {
    const auto figures = QueryHostObject<ISampleNode>(m_item.data);
    if (figures && m_convertor.AddMetrics(m_context.vm, m_javaSession, figures.Get())) {
        m_convertor.AddRemoteApps(m_context.vm, m_javaSession, figures.Get());
    }
}

HRESULT CDataDispatch::SendRefresh() {
    return OrComponents(Tell(Client::kRefreshSession, m_connection, GetJavaId(), m_desktop, m_javaSession));
}

HRESULT CDataDispatch::SendReconnect() {
    return OrComponents(Tell(Client::kOnUserReconnect, m_connection, GetJavaId(), m_javaSession));
}

HRESULT CDataDispatch::SendDisconnect() {
    return OrComponents(Tell(Client::kOnUserDisconnect, m_connection, GetJavaId(), m_javaSession));
}
