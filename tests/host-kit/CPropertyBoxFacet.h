#pragma once

#include "CHostFacet.h"
#include "HostData.h"
#include "IPropertyBox.h"

class CPropertyBoxFacet final : public CHostFacet<IPropertyBox, PropertyBoxData> {
public:
    CPropertyBoxFacet(CHostObject& object, PropertyBoxData data)
        : CHostFacet(object, IPropertyBox::kId, std::move(data)) {}

    STDMETHODIMP get_enumerator(INameValueEnumerator** properties) noexcept override;
    STDMETHODIMP GetProperty(BSTR name, VARIANT* value) noexcept override;
};
