#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>

#include "CCallRecord.h"
#include "CHostReference.h"
#include "NetworkInterfaceRecord.h"

/// Describes to OLE Automation a NetworkInterfaceRecord cut off or extended to `size` bytes. "Network record" among the
/// live objects.
[[nodiscard]] CHostReference<IRecordInfo> MakeNetworkRecordInfo(std::shared_ptr<CCallRecord> record, ULONG size);
