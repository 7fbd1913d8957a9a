#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>
#include <vector>

#include "CCallRecord.h"
#include "HostData.h"

/// An array of NetworkInterfaceRecord in the given shape, or null where the shape says so. It carries a description of
/// its record, by which SafeArrayDestroy alone frees the texts and SafeArrayCopy copies them; the description is one of
/// the record's live objects as long as an array refers to it. Throws CHresultException.
[[nodiscard]] SAFEARRAY* MakeNetworkInterfaceArray(const std::shared_ptr<CCallRecord>& record,
                                                   const std::vector<NetworkInterfaceData>& interfaces,
                                                   const NetworkArrayShape& shape);
