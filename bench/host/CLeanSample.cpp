#include "CLeanSample.h"

CLeanInstances::CLeanInstances(std::vector<Instance> instances) : m_instances(std::move(instances)) {}

CLeanInstances::~CLeanInstances() = default;

HRESULT CLeanInstances::Next(BSTR* key, ISampleNode** instance) {
    if (m_position == m_instances.size()) {
        m_position = 0;
        return S_FALSE;
    }
    const Instance& next = m_instances[m_position++];
    const HRESULT made = GiveText(key, next.first);
    return FAILED(made) ? made : GiveObject<ISampleNode>(instance, next.second.get());
}
