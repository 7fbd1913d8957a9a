#include "CBstr.h"
#include "CDataDispatch.h"

namespace {

constexpr wchar_t kClientDescriptor[] =
    L"<client><type>DesktopAgent</type><name>%s</name><id>%s</id><version>%s.%s.%s.%s</version><uniqueid>%s</uniqueid>"
    L"</client>";
constexpr const wchar_t* kClientVersion[] = {L"6", L"2", L"0", L"3274634"};

constexpr wchar_t kStartupNotTold[] = L"Failed to CallCallback for eStartup:(%s, %s, %s)";

}  // namespace

HRESULT CDataDispatch::SendStartup() {
    // Hidden from the log: the virtual machine's id is part of it.
    const std::shared_ptr<CJavaString> descriptor =
        m_convertor.NewJavaString(m_context.vm, MakeClientDescriptor(), true);
    if (!descriptor) {
        return E_FAIL;
    }
    std::wstring answer;
    const HRESULT asked = Ask(answer, Binding::DesktopMessageClient::kOnStartup, descriptor, m_connection);
    return TellCallbacks(asked, eStartup, kStartupNotTold, answer);
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
