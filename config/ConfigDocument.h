#pragma once

#include <windows.h>

#include <oleauto.h>

#include "CBstr.h"

/// The text of the first serverConfigRegistry element of a configuration document: XML in anything that converts to a
/// text, or an IXMLDOMElement, whose whole document is searched. `configuration` is not changed. On a thread that COM
/// is initialised on.
///
/// Documents come from outside: they are read with MSXML 6's own settings, by which a document type is refused, no
/// entity grows, and nothing is fetched from a file or the network.
///
/// @param path replaced on success, else untouched
/// @return S_OK; E_FAIL without a document or such an element; else the failure of MSXML's
[[nodiscard]] HRESULT ReadServerConfigRegistryPath(const VARIANT& configuration, CBstr& path);
