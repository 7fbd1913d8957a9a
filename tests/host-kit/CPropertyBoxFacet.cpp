#include "CPropertyBoxFacet.h"

#include <algorithm>

#include "CNameValueEnumeratorFacet.h"
#include "HostObjects.h"
#include "HostText.h"

HRESULT CPropertyBoxFacet::get_enumerator(INameValueEnumerator** properties) noexcept {
    return GiveObject(
        "get_enumerator", kNoInputs,
        [&] {
            return MakeNameValueEnumerator(m_object.GetRecord(), m_object.GetName() + " properties", m_data.properties,
                                           m_data.walk);
        },
        properties);
}

HRESULT CPropertyBoxFacet::GetProperty(BSTR name, VARIANT* value) noexcept {
    return Perform(
        "GetProperty", [&] { return DescribeText(name); },
        [&] {
            const std::wstring_view wanted(name ? name : L"", SysStringLen(name));
            const auto found = std::find_if(m_data.properties.begin(), m_data.properties.end(),
                                            [&](const PropertyData& property) { return property.name == wanted; });
            if (found == m_data.properties.end()) {
                return m_data.missingResult;
            }
            *value = MakeValueOf(*found, m_object).Detach();
            return S_OK;
        },
        value);
}

CHostReference<IPropertyBox> MakePropertyBox(CRecordPointer record, PropertyBoxData data) {
    const std::string name = data.name;
    return CHostObject::MakeWith<IPropertyBox, CPropertyBoxFacet>(std::move(record), name, std::move(data));
}
