#pragma once

#include <windows.h>

#include <wrl/client.h>

/// Fetches the host's object for `interfaceId` through the host's service object: from that object itself, or else from
/// what its GetHostObject gives. Where COM answers E_NOINTERFACE, the interface is registered for marshalling and asked
/// for once more. On a thread that COM is initialised on; called with or without the library's lock held.
///
/// @param object receives the interface, with one reference for the caller; null on failure, and where a host's object
///               answers with success and nothing
/// @return the last HRESULT of the host's or COM's
[[nodiscard]] HRESULT GetHostInterface(REFIID interfaceId, void** object);

/// The same for an interface type that knows its ID; `object` is empty before.
template <typename Interface>
[[nodiscard]] HRESULT GetHostInterface(Microsoft::WRL::ComPtr<Interface>& object) {
    return GetHostInterface(Interface::kId, reinterpret_cast<void**>(object.ReleaseAndGetAddressOf()));
}

/// The same for an object that cannot be done without: success without one is E_POINTER.
template <typename Interface>
[[nodiscard]] HRESULT RequireHostInterface(Microsoft::WRL::ComPtr<Interface>& object) {
    const HRESULT fetched = GetHostInterface(object);
    return SUCCEEDED(fetched) && !object ? E_POINTER : fetched;
}
