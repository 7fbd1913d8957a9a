#include "HostInterface.h"

#include <objbase.h>

#include "IHostServiceProvider.h"
#include "InterfaceMarshalling.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr wchar_t kServiceClass[] = L"{2D6D321D-3A1D-4BB9-9161-2191D701011D}";

/// Asks by `ask`, and once more after the interface was registered for marshalling, if that was what was missing.
template <typename Ask>
HRESULT AskWithRegistration(REFIID interfaceId, const Ask& ask) {
    const HRESULT first = ask();
    if (first != E_NOINTERFACE || FAILED(RegisterInterfaceMarshalling(interfaceId))) {
        return first;
    }
    return ask();
}

HRESULT CreateServiceObject(ComPtr<IHostServiceProvider>& service) {
    CLSID serviceClass;
    const HRESULT parsed = CLSIDFromString(kServiceClass, &serviceClass);
    if (FAILED(parsed)) {
        return parsed;
    }
    return AskWithRegistration(IHostServiceProvider::kId, [&] {
        return CoCreateInstance(serviceClass, nullptr, CLSCTX_ALL, IHostServiceProvider::kId,
                                reinterpret_cast<void**>(service.ReleaseAndGetAddressOf()));
    });
}

/// `object` is null after a failure, whatever the host has written there.
HRESULT QueryWithRegistration(IUnknown* source, REFIID interfaceId, void** object) {
    const HRESULT result = AskWithRegistration(interfaceId, [&] {
        *object = nullptr;
        return source->QueryInterface(interfaceId, object);
    });
    if (FAILED(result)) {
        *object = nullptr;
    }
    return result;
}

}  // namespace

HRESULT GetHostInterface(REFIID interfaceId, void** object) {
    *object = nullptr;
    ComPtr<IHostServiceProvider> service;
    const HRESULT created = CreateServiceObject(service);
    if (FAILED(created) || !service) {
        return created;
    }

    const HRESULT queried = QueryWithRegistration(service.Get(), interfaceId, object);
    if (SUCCEEDED(queried)) {
        return queried;
    }

    ComPtr<IUnknown> hostObject;
    const HRESULT given = service->GetHostObject(interfaceId, hostObject.GetAddressOf());
    if (FAILED(given)) {
        static_cast<void>(hostObject.Detach());  // nothing was given, whatever stands there
        return given;
    }
    if (!hostObject) {
        return given;
    }
    return QueryWithRegistration(hostObject.Get(), interfaceId, object);
}
