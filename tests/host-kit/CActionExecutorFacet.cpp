#include "CHostFacet.h"
#include "HostObjects.h"
#include "HostText.h"

namespace {

class CActionExecutorFacet final : public CHostFacet<IActionExecutor, std::shared_ptr<CHostActions>> {
public:
    CActionExecutorFacet(CHostObject& object, std::shared_ptr<CHostActions> actions)
        : CHostFacet(object, IActionExecutor::kId, std::move(actions)) {}

    STDMETHODIMP Execute(VARIANT action) noexcept override {
        return Perform(
            "Execute", [&] { return DescribeValue(action); }, [&] { return m_data->Execute(action); });
    }
};

}  // namespace

CHostReference<IActionExecutor> MakeActionExecutor(CRecordPointer record, std::shared_ptr<CHostActions> actions) {
    return CHostObject::MakeWith<IActionExecutor, CActionExecutorFacet>(std::move(record), "Actions",
                                                                        std::move(actions));
}
