#include "CHostFacet.h"
#include "HostObjects.h"
#include "HostText.h"

namespace {

struct InstanceWalk {
    std::string parentName{};
    std::vector<InstanceData> instances{};
    WalkData walk{};
};

class CInstanceEnumeratorFacet final : public CHostFacet<IInstanceEnumerator, InstanceWalk> {
public:
    CInstanceEnumeratorFacet(CHostObject& object, InstanceWalk data)
        : CHostFacet(object, IInstanceEnumerator::kId, std::move(data)) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse("Reserved3"); }

    STDMETHODIMP Next(BSTR* key, ISampleNode** instance) noexcept override {
        return Perform(
            "Next", kNoInputs,
            [&] {
                const long position = static_cast<long>(m_position);
                if (position == m_data.walk.failAt) {
                    return m_data.walk.failure;
                }
                if (m_position == m_data.instances.size()) {
                    return m_data.walk.endResult;
                }
                const InstanceData& item = m_data.instances[m_position];
                CBstr itemKey = position == m_data.walk.nullNameAt ? CBstr() : CBstr::Make(item.key);
                *instance = position == m_data.walk.nullItemAt ? nullptr : MakeNode(item).Detach();
                *key = itemKey.Detach();
                ++m_position;
                return S_OK;
            },
            key, instance);
    }

private:
    [[nodiscard]] CHostReference<ISampleNode> MakeNode(const InstanceData& item) const {
        SampleData sample = item.sample;
        sample.name = m_data.parentName + "/" + ToUtf8(item.key);
        return MakeSampleNode(m_object.GetRecord(), std::move(sample));
    }

    std::size_t m_position = 0;
};

}  // namespace

CHostReference<IInstanceEnumerator> MakeInstanceEnumerator(CRecordPointer record, std::string parentName,
                                                           std::vector<InstanceData> instances, WalkData walk) {
    const std::string name = parentName + " instances";
    return CHostObject::MakeWith<IInstanceEnumerator, CInstanceEnumeratorFacet>(
        std::move(record), name, InstanceWalk{std::move(parentName), std::move(instances), walk});
}
