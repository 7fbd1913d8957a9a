#pragma once

#include <windows.h>

#include <unknwn.h>
#include <wrl/client.h>

/// Has `ask` fill `object`, which is emptied first, and returns what it returns. A host that fails has given nothing,
/// whatever stands at the address: an object there is not released, for it would be called, and may be none. (A text
/// there is freed all the same: hosts make their texts before they know whether they succeed.) One that succeeds may
/// still leave `object` empty.
template <typename Interface, typename Ask>
[[nodiscard]] HRESULT AskForObject(Microsoft::WRL::ComPtr<Interface>& object, const Ask& ask) {
    const HRESULT asked = ask(object.ReleaseAndGetAddressOf());
    if (FAILED(asked)) {
        static_cast<void>(object.Detach());
    }
    return asked;
}

/// Asks `object` for the interface `Interface`, as AskForObject does.
template <typename Interface>
[[nodiscard]] HRESULT QueryHostObject(IUnknown& object, Microsoft::WRL::ComPtr<Interface>& found) {
    return AskForObject(found, [&](Interface** given) {
        return object.QueryInterface(Interface::kId, reinterpret_cast<void**>(given));
    });
}

/// The interface `Interface` of `object`, which may be null; empty when it has none.
template <typename Interface>
[[nodiscard]] Microsoft::WRL::ComPtr<Interface> QueryHostObject(IUnknown* object) {
    Microsoft::WRL::ComPtr<Interface> found;
    if (object) {
        static_cast<void>(QueryHostObject(*object, found));
    }
    return found;
}
