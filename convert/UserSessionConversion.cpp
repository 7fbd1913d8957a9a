#include "BindingTable.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "HostWalk.h"
#include "TextWalk.h"
#include "UserLabel.h"

using Microsoft::WRL::ComPtr;

namespace {

namespace UserSession = Binding::BaseUserSession;

/// The one state of a session's that means connected. VARIANT_TRUE does not: hosts rely on that.
constexpr SHORT kConnected = 1;

constexpr wchar_t kNoUserSession[] = L"Failed to create a new Java user session object.  %s";
// Both run together with the error text: hosts know them that way.
constexpr wchar_t kNoPropertyBox[] = L"Failed to get property box";
constexpr wchar_t kNoPropertyEnumerator[] = L"Failed to get enumerator from property box";
constexpr wchar_t kPropertyNotSet[] = L"Failed to set user property %s for user %s.  %s";

}  // namespace

std::shared_ptr<CJavaObject> CJNIConvertor::GetUserSession(const std::shared_ptr<CJavaVM>& vm,
                                                           IUserSessionInfo* session) const {
    if (!session) {
        return {};
    }
    std::shared_ptr<CJavaObject> javaSession = MakeUserSession(vm, *session);
    if (javaSession) {
        PutProperties(vm, *javaSession, *session);
    }
    return javaSession;
}

std::shared_ptr<CJavaObject> CJNIConvertor::MakeUserSession(const std::shared_ptr<CJavaVM>& vm,
                                                            IUserSessionInfo& session) const {
    const std::shared_ptr<CJavaClass> sessionClass = vm->GetClass(UserSession::kClass);
    if (!sessionClass) {
        return {};
    }
    LONG id = 0;
    if (FAILED(session.get_id(&id))) {
        return {};
    }
    const JavaText sid = GetSessionText(vm, session, &IUserSessionInfo::get_sid);
    if (!sid) {
        return {};
    }
    const JavaText user = GetSessionText(vm, session, &IUserSessionInfo::get_user);
    if (!user) {
        return {};
    }
    const JavaText domain = GetSessionText(vm, session, &IUserSessionInfo::get_domain);
    if (!domain) {
        return {};
    }
    SHORT state = 0;
    if (FAILED(session.get_state(&state))) {
        return {};
    }

    std::shared_ptr<CJavaObject> javaSession =
        sessionClass->NewObject(UserSession::kCtorIdSidUserDomainConnected, id, sid, user, domain, state == kConnected);
    if (!javaSession) {
        m_log.Error(kNoUserSession, vm->TakeExceptionText().c_str());
    }
    return javaSession;
}

/// Empty when the host does not give the text, or Java does not take it.
CJNIConvertor::JavaText CJNIConvertor::GetSessionText(const std::shared_ptr<CJavaVM>& vm, IUserSessionInfo& session,
                                                      SessionTextGetter getter) const {
    CBstr text;
    if (FAILED((session.*getter)(text.Receive()))) {
        return {};
    }
    return NewJavaString(vm, text.Get());
}

void CJNIConvertor::PutProperties(const std::shared_ptr<CJavaVM>& vm, CJavaObject& javaSession,
                                  IUserSessionInfo& session) const {
    ComPtr<IPropertyBox> box;
    const HRESULT gotBox = AskForObject(box, [&](IPropertyBox** given) { return session.get_propertyBox(given); });
    if (FAILED(gotBox)) {
        m_log.ErrorRunTogether(gotBox, kNoPropertyBox);
        return;
    }
    if (!box) {
        return;
    }
    ComPtr<INameValueEnumerator> properties;
    const HRESULT gotEnumerator =
        AskForObject(properties, [&](INameValueEnumerator** given) { return box->get_enumerator(given); });
    if (FAILED(gotEnumerator)) {
        m_log.ErrorRunTogether(gotEnumerator, kNoPropertyEnumerator);
        return;
    }
    WalkTexts(*this, vm, properties.Get(), [&](std::wstring_view name, const JavaText& key, const JavaText& value) {
        javaSession.CallVoidMethod(UserSession::kPutProperty, key, value);
        LogIfThrown(*vm, [&](const wchar_t* thrown) {
            m_log.Error(kPropertyNotSet, std::wstring(name).c_str(), GetUserLabel(session).c_str(), thrown);
        });
    });
}
