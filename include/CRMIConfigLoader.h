#pragma once

#include <windows.h>

#include <oleauto.h>

// Defined empty where the library itself is built.
#ifndef TELVAR_RMI_API
#define TELVAR_RMI_API __declspec(dllimport)
#endif

/// Tells a host where its message server is. Holds nothing between calls; any thread may call on which COM is
/// initialised. Entries go to the host's log, which each call fetches anew, as it does the system information.
///
/// Exhausted memory leaves as an exception: `_com_error`, CHresultException, or std::bad_alloc. Nothing else throws.
class CRMIConfigLoader {
public:
    /// Finds the server in the first of these places that has it: the legacy list in the registry, the registry key
    /// that a configuration document names, the agent's policy key (docs/host-guide.md has the values). The outputs are
    /// what CRMICommManager::DumpData takes.
    ///
    /// @param configuration the document: XML in anything that converts to a text, or an IXMLDOMElement; stays the
    ///                      caller's, unchanged. Whether it holds one at all does not matter: there are other places.
    /// @param url           receives the server's URL, as a BSTR
    /// @param secondValue   receives the machine's unique id, or what a legacy list of three fields has in its place
    /// @param certificate   receives the certificate, in one text
    ///
    /// The outputs are BSTRs for the caller to free, set to null by him before: one without a value is left as it is,
    /// and one that is a null pointer is passed over. After a failure too, one may have been written.
    /// @return S_OK; the failure of reading the last of the places, or of asking the host for its unique id
    static TELVAR_RMI_API long GetServerInfo(VARIANT configuration, wchar_t** url, wchar_t** secondValue,
                                             wchar_t** certificate);

    /// The text of the document's first serverConfigRegistry element, which names a registry key.
    ///
    /// @param configuration as for GetServerInfo
    /// @param content       an initialised VARIANT; cleared, and receives the text as a VT_BSTR; untouched where there
    ///                      is none
    /// @return S_OK; E_FAIL without such an element, or a document; E_POINTER for a null `content`; else the HRESULT of
    ///         MSXML or VariantCopy
    static TELVAR_RMI_API long GetConfigContent(VARIANT configuration, VARIANT* content);

    CRMIConfigLoader() = delete;
};
