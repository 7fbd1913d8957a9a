#pragma once

#include "CHostFacet.h"
#include "HostData.h"
#include "IUserSessionInfo.h"

class CUserSessionFacet final : public CHostFacet<IUserSessionInfo, SessionData> {
public:
    CUserSessionFacet(CHostObject& object, SessionData data)
        : CHostFacet(object, IUserSessionInfo::kId, std::move(data)) {}

    STDMETHODIMP get_propertyBox(IPropertyBox** properties) noexcept override;
    STDMETHODIMP get_id(LONG* id) noexcept override { return GiveNumber("get_id", m_data.id, id); }
    STDMETHODIMP get_sid(BSTR* sid) noexcept override { return GiveText("get_sid", m_data.sid, sid); }
    STDMETHODIMP get_user(BSTR* user) noexcept override { return GiveText("get_user", m_data.user, user); }
    STDMETHODIMP get_domain(BSTR* domain) noexcept override { return GiveText("get_domain", m_data.domain, domain); }
    STDMETHODIMP get_state(SHORT* state) noexcept override { return GiveNumber("get_state", m_data.state, state); }

    STDMETHODIMP Reserved9() noexcept override { return Refuse("Reserved9"); }
    STDMETHODIMP Reserved10() noexcept override { return Refuse("Reserved10"); }
    STDMETHODIMP Reserved11() noexcept override { return Refuse("Reserved11"); }
    STDMETHODIMP Reserved12() noexcept override { return Refuse("Reserved12"); }
    STDMETHODIMP Reserved13() noexcept override { return Refuse("Reserved13"); }

    STDMETHODIMP get_userLabel(BSTR* label) noexcept override { return GiveText("get_userLabel", m_data.label, label); }
};
