#pragma once

#include <string>

/// What the library takes with each item: which server it goes to.
struct MessageServer {
    std::wstring url;
    std::wstring authToken;
    std::wstring certificate;  ///< empty for a server without TLS
};

/// Has the library find the message server: in the registry, or, where there is no legacy list, under the key that the
/// configuration document names. Once the service class is registered, for the second text is the machine's unique id,
/// unless the legacy list has one. Throws CannotGoOnException.
MessageServer FindServer(const std::wstring& configuration);
