#pragma once

#include <windows.h>

#include "CBridgeLog.h"
#include "JavaBridge.h"
#include "ServerConfig.h"

class CThreadSlots;

/// Points the message client at another server and has it set up its connection anew, with the host's configuration
/// folder. Attaches the calling thread to Java if it is not. Under the manager's lock. A failure that stands behind the
/// change of the URL leaves the client with the new one.
/// @return S_OK; OLE_E_BLANK without a machine; the registry's failure to give the configuration folder; E_FAIL for
///         Java's, which is logged
[[nodiscard]] HRESULT SwitchMessageServer(const CBridgeLog& log, const JavaBridge& bridge, CThreadSlots& slots,
                                          const ServerConfig& server);
