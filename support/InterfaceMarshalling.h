#pragma once

#include <windows.h>

/// Registers the OLE Automation marshaller for the interface `interfaceId` in the machine's class registry, so that COM
/// can hand the interface across apartments and processes. A marshaller that is registered already, whichever it is,
/// is left alone. Needs rights to write under HKEY_CLASSES_ROOT. Any thread; COM need not be initialised.
///
/// Returns S_OK, also when the interface ID cannot be turned into text (the caller's retry then fails in vain); else
/// the calling thread's last error as an HRESULT, not the registry function's own result. Writing the class of the
/// marshaller is documented with CoGetPSClsid (Windows documentation, COM).
[[nodiscard]] HRESULT RegisterInterfaceMarshalling(REFIID interfaceId);
