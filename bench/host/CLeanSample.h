#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CLeanObject.h"
#include "CLeanValues.h"
#include "IInstanceEnumerator.h"
#include "ISampleNode.h"
#include "MeasuredContent.h"

class CLeanNode;

/// Walks the nodes below a node, again and again as CLeanValues does.
class CLeanInstances final : public CLeanObject<IInstanceEnumerator> {
public:
    using Instance = std::pair<std::wstring, std::unique_ptr<CLeanNode>>;

    explicit CLeanInstances(std::vector<Instance> instances);
    ~CLeanInstances() override;

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Next(BSTR* key, ISampleNode** instance) override;

private:
    const std::vector<Instance> m_instances;
    std::size_t m_position = 0;
};

/// A node of a sample in an object that has other interfaces as well.
template <typename... Others>
class CLeanNodeObject : public CLeanObject<Others..., ISampleNode> {
public:
    explicit CLeanNodeObject(std::vector<NameValueData> metrics, std::vector<CLeanInstances::Instance> instances = {})
        : m_metrics(std::move(metrics)), m_instances(std::move(instances)) {}

    HRESULT STDMETHODCALLTYPE get_time(DATE* time) override {
        *time = kMeasuredTime;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_instances(IInstanceEnumerator** instances) override {
        return GiveObject<IInstanceEnumerator>(instances, &m_instances);
    }
    HRESULT STDMETHODCALLTYPE get_metrics(INameValueEnumerator** metrics, LONG) override {
        return GiveObject<INameValueEnumerator>(metrics, &m_metrics);
    }

    HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved4() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved5() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved6() override { return E_NOTIMPL; }

private:
    CLeanValues m_metrics;
    CLeanInstances m_instances;
};

class CLeanNode final : public CLeanNodeObject<> {
public:
    using CLeanNodeObject::CLeanNodeObject;
};
