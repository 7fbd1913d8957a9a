#include "CNetworkRecords.h"

#include <cstdint>

#include "ThrowResult.h"

namespace {

constexpr UINT kRank = 1;

LONG GetBound(HRESULT(STDMETHODCALLTYPE* query)(SAFEARRAY*, UINT, LONG*), SAFEARRAY* array) {
    LONG bound = 0;
    const HRESULT got = query(array, kRank, &bound);
    if (FAILED(got)) {
        ThrowResult(got);
    }
    return bound;
}

}  // namespace

CNetworkRecords::CNetworkRecords(SAFEARRAY* array) {
    const LONG lowerBound = GetBound(SafeArrayGetLBound, array);
    const LONG upperBound = GetBound(SafeArrayGetUBound, array);
    const std::int64_t count = std::int64_t{upperBound} - lowerBound + 1;

    if (count <= 0 || SafeArrayGetDim(array) != kRank ||
        SafeArrayGetElemsize(array) != sizeof(NetworkInterfaceRecord)) {
        return;
    }
    void* records = nullptr;
    if (FAILED(SafeArrayAccessData(array, &records))) {
        return;
    }
    m_locked = array;
    if (records) {
        m_first = static_cast<const NetworkInterfaceRecord*>(records);
        m_count = static_cast<std::size_t>(count);
    }
}

CNetworkRecords::~CNetworkRecords() {
    if (m_locked) {
        SafeArrayUnaccessData(m_locked);
    }
}
