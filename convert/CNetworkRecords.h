#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>

#include "NetworkInterfaceRecord.h"

/// The host's array of network adapters, locked as long as this lives; it stays its owner's.
class CNetworkRecords {
public:
    /// Throws CHresultException with the failure of SafeArrayGetLBound or SafeArrayGetUBound: null has no bounds
    /// either. An array of another rank or element size, or one that cannot be locked, has no records.
    explicit CNetworkRecords(SAFEARRAY* array);
    ~CNetworkRecords();

    CNetworkRecords(const CNetworkRecords&) = delete;
    CNetworkRecords& operator=(const CNetworkRecords&) = delete;

    [[nodiscard]] const NetworkInterfaceRecord* begin() const noexcept { return m_first; }
    [[nodiscard]] const NetworkInterfaceRecord* end() const noexcept { return m_first + m_count; }

private:
    SAFEARRAY* m_locked = nullptr;
    const NetworkInterfaceRecord* m_first = nullptr;
    std::size_t m_count = 0;
};
