#pragma once

// The data of items that are more than a node of a sample.

#include "CPropertyBox.h"
#include "CSampleNode.h"
#include "IUserSessionInfo.h"

/// A session, with its last figures for the item that reports its logoff (other items do not ask for them).
class CUserSession final : public CNodeObject<IUserSessionInfo> {
public:
    CUserSession(SessionReading session, SharedNode figures)
        : CNodeObject(std::move(figures)),
          m_session(std::move(session)),
          m_properties(MakeComObject<CPropertyBox>(m_session.properties)) {}

    HRESULT STDMETHODCALLTYPE get_propertyBox(IPropertyBox** properties) override {
        return m_properties.CopyTo(properties);
    }
    HRESULT STDMETHODCALLTYPE get_id(LONG* id) override {
        *id = m_session.id;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_sid(BSTR* sid) override { return GiveText(sid, m_session.sid); }
    HRESULT STDMETHODCALLTYPE get_user(BSTR* user) override { return GiveText(user, m_session.user); }
    HRESULT STDMETHODCALLTYPE get_domain(BSTR* domain) override { return GiveText(domain, m_session.domain); }
    HRESULT STDMETHODCALLTYPE get_state(SHORT* state) override {
        *state = m_session.state;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Reserved9() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved10() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved11() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved12() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved13() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_userLabel(BSTR* label) override { return GiveText(label, m_session.user); }

private:
    const SessionReading m_session;
    const Microsoft::WRL::ComPtr<IPropertyBox> m_properties;
};

/// Extended data: a box with the texts and the metrics, and a node for the time.
class CExtendedData final : public CNodeObject<IPropertyBox> {
public:
    CExtendedData(SharedNode node, NamedValues values)
        : CNodeObject(std::move(node)), m_values(std::make_shared<const NamedValues>(std::move(values))) {}

    HRESULT STDMETHODCALLTYPE get_enumerator(INameValueEnumerator** properties) override {
        return GiveNewObject<CNameValueEnumerator>(properties, m_values);
    }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR name, VARIANT* value) override {
        return GiveValue(*m_values, name, value);
    }

private:
    const SharedValues m_values;
};

/// The objects are handed over once, so one enumerator of each metric's instances will do.
inline Microsoft::WRL::ComPtr<IUnknown> MakeExtendedData(const ExtendedReading& reading, const SYSTEMTIME& time) {
    NamedValues metrics;
    for (const ExtendedMetric& metric : reading.metrics) {
        const auto instances =
            MakeComObject<CNameValueEnumerator>(std::make_shared<const NamedValues>(metric.instances));
        metrics.push_back({metric.name, _variant_t(static_cast<IUnknown*>(instances.Get()))});
    }
    const auto texts = MakeComObject<CPropertyBox>(reading.texts);
    const auto allMetrics =
        MakeComObject<CNameValueEnumerator>(std::make_shared<const NamedValues>(std::move(metrics)));
    auto node = std::make_shared<NodeReading>();
    node->time = time;
    const auto data =
        MakeComObject<CExtendedData>(node, NamedValues{{L"meta-data", static_cast<IUnknown*>(texts.Get())},
                                                       {L"metrics", static_cast<IUnknown*>(allMetrics.Get())}});
    return static_cast<ISampleNode*>(data.Get());
}

inline Microsoft::WRL::ComPtr<IUnknown> MakeRouteData(const RouteReading& reading) {
    const auto texts = MakeComObject<CPropertyBox>(reading.texts);
    return MakeComObject<CPropertyBox>(
        NamedValues{{L"metadata", static_cast<IUnknown*>(texts.Get())}, {L"route", _variant_t(reading.route.c_str())}});
}
