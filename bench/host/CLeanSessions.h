#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CLeanObject.h"
#include "CLeanSample.h"
#include "CLeanValues.h"
#include "ISessionCollection.h"
#include "IUserSessionInfo.h"

/// A session that is a node of a sample as well, as the data of a logoff is.
class CLeanSession final : public CLeanNodeObject<IUserSessionInfo> {
public:
    CLeanSession(SessionData user, std::vector<MetricData> metrics, std::vector<CLeanInstances::Instance> applications)
        : CLeanNodeObject(std::move(metrics), std::move(applications)),
          m_user(std::move(user)),
          m_box(m_user.properties.properties) {}

    [[nodiscard]] LONG GetId() const noexcept { return m_user.id; }

    HRESULT STDMETHODCALLTYPE get_propertyBox(IPropertyBox** properties) override {
        return GiveObject<IPropertyBox>(properties, &m_box);
    }
    HRESULT STDMETHODCALLTYPE get_id(LONG* id) override {
        *id = m_user.id;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_sid(BSTR* sid) override { return GiveText(sid, m_user.sid); }
    HRESULT STDMETHODCALLTYPE get_user(BSTR* user) override { return GiveText(user, m_user.user); }
    HRESULT STDMETHODCALLTYPE get_domain(BSTR* domain) override { return GiveText(domain, m_user.domain); }
    HRESULT STDMETHODCALLTYPE get_state(SHORT* state) override {
        *state = m_user.state;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Reserved9() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved10() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved11() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved12() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved13() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_userLabel(BSTR* label) override { return GiveText(label, m_user.label); }

private:
    const SessionData m_user;
    CLeanBox m_box;
};

/// The machine's sessions, with the ids 1, 2, 3, ...
class CLeanSessions final : public CLeanObject<ISessionCollection> {
public:
    /// One more session; lives as long as this.
    CLeanSession& Add(int properties, std::vector<MetricData> metrics,
                      std::vector<CLeanInstances::Instance> applications) {
        m_sessions.push_back(
            std::make_unique<CLeanSession>(MakeMeasuredSession(static_cast<LONG>(m_sessions.size() + 1), properties),
                                           std::move(metrics), std::move(applications)));
        return *m_sessions.back();
    }

    HRESULT STDMETHODCALLTYPE GetSession(LONG id, IUserSessionInfo** session) override {
        const std::size_t index = static_cast<std::size_t>(id) - 1;
        return GiveObject<IUserSessionInfo>(session, index < m_sessions.size() ? m_sessions[index].get() : nullptr);
    }

private:
    std::vector<std::unique_ptr<CLeanSession>> m_sessions;
};

/// Extended data: a box with "meta-data" and "metrics", and a node for the time.
class CLeanExtendedData final : public CLeanNodeObject<IPropertyBox> {
public:
    CLeanExtendedData(IUnknown* metaData, IUnknown* metrics)
        : CLeanNodeObject({}), m_box({{L"meta-data", MakeInterface(metaData)}, {L"metrics", MakeInterface(metrics)}}) {}

    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) override {
        return m_box.get_enumerator(properties);
    }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) override { return m_box.GetProperty(name, value); }

private:
    CLeanBox m_box;
};
