#pragma once

#include "CHostFacet.h"
#include "HostData.h"
#include "ISampleNode.h"

class CSampleNodeFacet final : public CHostFacet<ISampleNode, SampleData> {
public:
    CSampleNodeFacet(CHostObject& object, SampleData data) : CHostFacet(object, ISampleNode::kId, std::move(data)) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse("Reserved3"); }
    STDMETHODIMP Reserved4() noexcept override { return Refuse("Reserved4"); }
    STDMETHODIMP Reserved5() noexcept override { return Refuse("Reserved5"); }
    STDMETHODIMP Reserved6() noexcept override { return Refuse("Reserved6"); }

    STDMETHODIMP get_time(DATE* time) noexcept override { return GiveNumber("get_time", m_data.time, time); }
    STDMETHODIMP get_instances(IInstanceEnumerator** instances) noexcept override;
    STDMETHODIMP get_metrics(INameValueEnumerator** metrics, LONG flag) noexcept override;
};
