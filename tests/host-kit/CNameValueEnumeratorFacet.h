#pragma once

#include <vector>

#include "CHostFacet.h"
#include "HostData.h"
#include "INameValueEnumerator.h"

/// The value as `asked` gives it: for an extended one a new enumerator, in the same record.
[[nodiscard]] CVariantValue MakeValueOf(const NameValueData& item, const CHostObject& asked);

struct NameValueWalk {
    std::vector<NameValueData> items{};
    WalkData walk{};
};

class CNameValueEnumeratorFacet final : public CHostFacet<INameValueEnumerator, NameValueWalk> {
public:
    CNameValueEnumeratorFacet(CHostObject& object, NameValueWalk data)
        : CHostFacet(object, INameValueEnumerator::kId, std::move(data)) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse("Reserved3"); }
    STDMETHODIMP Next(BSTR* name, VARIANT* value) noexcept override;

private:
    std::size_t m_position = 0;
};
