#include "CHostFacet.h"
#include "HostObjects.h"

namespace {

class CServiceProviderFacet final : public CHostFacet<IHostServiceProvider, std::shared_ptr<CHostServices>> {
public:
    CServiceProviderFacet(CHostObject& object, std::shared_ptr<CHostServices> services)
        : CHostFacet(object, IHostServiceProvider::kId, std::move(services)) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse("Reserved3"); }
    STDMETHODIMP Reserved4() noexcept override { return Refuse("Reserved4"); }
    STDMETHODIMP Reserved5() noexcept override { return Refuse("Reserved5"); }
    STDMETHODIMP Reserved6() noexcept override { return Refuse("Reserved6"); }

    STDMETHODIMP GetHostObject(REFIID interfaceId, IUnknown** object) noexcept override {
        return Perform(
            "GetHostObject", [&] { return DescribeInterface(interfaceId); },
            [&] { return m_data->Find(interfaceId, object); }, object);
    }
};

class CClassFactoryFacet final : public CHostFacet<IClassFactory, std::shared_ptr<CHostServices>> {
public:
    CClassFactoryFacet(CHostObject& object, std::shared_ptr<CHostServices> services)
        : CHostFacet(object, IID_IClassFactory, std::move(services)) {}

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) noexcept override {
        return Perform(
            "CreateInstance", [&] { return DescribeInterface(interfaceId); },
            [&] {
                *object = nullptr;
                if (outer) {
                    return CLASS_E_NOAGGREGATION;
                }
                return MakeServiceProvider(m_object.GetRecord(), m_data)->QueryInterface(interfaceId, object);
            },
            object);
    }

    // The host lives for as long as its class object is registered, whatever callers lock.
    STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }
};

}  // namespace

CHostReference<IHostServiceProvider> MakeServiceProvider(CRecordPointer record,
                                                         std::shared_ptr<CHostServices> services) {
    const CHostReference<CHostObject> object = CHostObject::Make(std::move(record), "Services");
    services->VisitDirect([&](REFIID interfaceId, IUnknown* target) { object->AddForward(interfaceId, target); });
    return CHostReference<IHostServiceProvider>::Share(&object->Add<CServiceProviderFacet>(std::move(services)));
}

CHostReference<IClassFactory> MakeServiceClassObject(CRecordPointer record, std::shared_ptr<CHostServices> services) {
    return CHostObject::MakeWith<IClassFactory, CClassFactoryFacet>(std::move(record), "Service class",
                                                                    std::move(services));
}
