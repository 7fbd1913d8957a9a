#pragma once

#include <windows.h>

#include <string>

#include "CBridgeLog.h"
#include "ISystemInfo.h"

/// Who sends a data item.
struct MachineIdentity {
    std::wstring id;                  ///< the machine's, or that of the component that takes its place
    std::wstring virtualMachineId;    ///< a secret
    HRESULT componentsResult = S_OK;  ///< of the request for the component identities, whatever came of it
};

/// Asks the host who it is. What fails is logged; the identities of components may.
/// @param identity complete on success
/// @return S_OK; the failure of whichever id is not to be had
[[nodiscard]] HRESULT ReadMachineIdentity(const CBridgeLog& log, ISystemInfo& systemInfo, MachineIdentity& identity);
