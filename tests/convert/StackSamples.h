#pragma once

#include <cstddef>

#include "IInstanceEnumerator.h"
#include "ISessionCollection.h"
#include "StackObjects.h"

// A sample's tree on the stack; see StackObjects.h.

/// A node that gives the same walks each time.
class CStackSample final : public CStackObject<ISampleNode> {
public:
    explicit CStackSample(INameValueEnumerator* metrics = nullptr, IInstanceEnumerator* instances = nullptr)
        : m_metrics(metrics), m_instances(instances) {}

    HRESULT getMetrics = S_OK;
    HRESULT getInstances = S_OK;

    STDMETHODIMP Reserved3() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved4() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved5() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved6() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_time(DATE* time) noexcept override {
        *time = 45351.5;
        return S_OK;
    }
    STDMETHODIMP get_instances(IInstanceEnumerator** instances) noexcept override {
        return Give(m_instances, instances, getInstances);
    }
    STDMETHODIMP get_metrics(INameValueEnumerator** metrics, LONG) noexcept override {
        return Give(m_metrics, metrics, getMetrics);
    }

private:
    INameValueEnumerator* const m_metrics;
    IInstanceEnumerator* const m_instances;
};

/// Walks one node again and again, with `endResult` after each time; that call gives the pair as well.
class CStackInstances final : public CStackObject<IInstanceEnumerator> {
public:
    CStackInstances(const wchar_t* key, ISampleNode* instance) : m_key(key), m_instance(instance) {}

    HRESULT endResult = S_FALSE;

    STDMETHODIMP Reserved3() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Next(BSTR* key, ISampleNode** instance) noexcept override {
        const HRESULT result = m_isAtEnd ? endResult : S_OK;
        m_isAtEnd = !m_isAtEnd;
        *key = SysAllocString(m_key);
        return Give(m_instance, instance, result);
    }
    /// After a walk that was broken off.
    void Rewind() noexcept { m_isAtEnd = false; }

private:
    const wchar_t* const m_key;
    ISampleNode* const m_instance;
    bool m_isAtEnd = false;
};

/// Has one session under every id.
class CStackSessions final : public CStackObject<ISessionCollection> {
public:
    explicit CStackSessions(IUserSessionInfo* session) : m_session(session) {}

    HRESULT getSession = S_OK;

    STDMETHODIMP GetSession(LONG, IUserSessionInfo** session) noexcept override {
        return Give(m_session, session, getSession);
    }

private:
    IUserSessionInfo* const m_session;
};
