#pragma once

#include <windows.h>

#include <oleauto.h>

#include "Readings.h"

/// The adapters as the library takes them: a SAFEARRAY of NetworkInterfaceRecord for the caller to destroy, texts and
/// all. Null when memory is exhausted.
SAFEARRAY* MakeNetworkRecordArray(const std::vector<AdapterReading>& adapters) noexcept;
