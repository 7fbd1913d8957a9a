#pragma once

#include <memory>
#include <utility>

#include "CComObject.h"
#include "CNameValueEnumerator.h"
#include "IInstanceEnumerator.h"
#include "ISampleNode.h"
#include "Readings.h"

/// A node of a reading, and with it the whole reading, which lives as long as any object that shows a part of it.
using SharedNode = std::shared_ptr<const NodeReading>;

/// Walks the nodes below a node in their order, once.
class CInstanceEnumerator final : public CComObject<IInstanceEnumerator> {
public:
    explicit CInstanceEnumerator(SharedNode parent) noexcept : m_parent(std::move(parent)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Next(BSTR* key, ISampleNode** instance) override;

private:
    const SharedNode m_parent;
    std::size_t m_next = 0;
};

/// A node, perhaps of an object that has other interfaces as well: some items ask one object for several.
template <typename... Others>
class CNodeObject : public CComObject<ISampleNode, Others...> {
public:
    explicit CNodeObject(SharedNode node) noexcept : m_node(std::move(node)) {}

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE get_time(DATE* time) override {
        SYSTEMTIME systemTime = m_node->time;
        return SystemTimeToVariantTime(&systemTime, time) ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE get_instances(IInstanceEnumerator** instances) override {
        return GiveNewObject<CInstanceEnumerator>(instances, m_node);
    }
    /// This host has one selection of metrics, whatever the flag.
    HRESULT STDMETHODCALLTYPE get_metrics(INameValueEnumerator** metrics, LONG) override {
        return GiveNewObject<CNameValueEnumerator>(metrics, SharedValues(m_node, &m_node->metrics));
    }

private:
    const SharedNode m_node;
};

class CSampleNode final : public CNodeObject<> {
public:
    using CNodeObject::CNodeObject;
};

inline HRESULT STDMETHODCALLTYPE CInstanceEnumerator::Next(BSTR* key, ISampleNode** instance) {
    if (m_next == m_parent->instances.size()) {
        return S_FALSE;
    }
    const NodeReading& current = m_parent->instances[m_next++];
    const HRESULT named = GiveText(key, current.key);
    return FAILED(named) ? named : GiveNewObject<CSampleNode>(instance, SharedNode(m_parent, &current));
}
