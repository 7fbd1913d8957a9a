#include "CNameValueEnumeratorFacet.h"

#include "HostObjects.h"
#include "HostText.h"

CVariantValue MakeValueOf(const NameValueData& item, const CHostObject& asked) {
    if (!item.isExtended) {
        return item.value;
    }
    const auto values = MakeNameValueEnumerator(asked.GetRecord(), asked.GetName() + " " + ToUtf8(item.name),
                                                item.items, item.itemsWalk);
    return MakeInterface(values.Get());
}

HRESULT CNameValueEnumeratorFacet::Next(BSTR* name, VARIANT* value) noexcept {
    return Perform(
        "Next", kNoInputs,
        [&] {
            const long position = static_cast<long>(m_position);
            if (position == m_data.walk.failAt) {
                return m_data.walk.failure;
            }
            if (m_position == m_data.items.size()) {
                return m_data.walk.endResult;
            }
            const NameValueData& item = m_data.items[m_position];
            CBstr itemName = position == m_data.walk.nullNameAt ? CBstr() : CBstr::Make(item.name);
            *value = position == m_data.walk.nullItemAt ? VARIANT{} : MakeValueOf(item, m_object).Detach();
            *name = itemName.Detach();
            ++m_position;
            return S_OK;
        },
        name, value);
}

CHostReference<INameValueEnumerator> MakeNameValueEnumerator(CRecordPointer record, std::string name,
                                                             std::vector<NameValueData> items, WalkData walk) {
    return CHostObject::MakeWith<INameValueEnumerator, CNameValueEnumeratorFacet>(
        std::move(record), std::move(name), NameValueWalk{std::move(items), walk});
}
