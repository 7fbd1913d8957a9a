#include "CStringManager.h"

#include <limits>
#include <new>

#include "ThrowResult.h"
#include "ProcessHeap.h"

CStringData* CStringManager::Allocate(std::size_t capacity) {
    constexpr std::size_t kMost = (std::numeric_limits<std::size_t>::max() - sizeof(CStringData)) / sizeof(wchar_t) - 1;
    if (capacity > kMost) {
        ThrowResult(E_OUTOFMEMORY);
    }
    void* const block = RequireFromProcessHeap(sizeof(CStringData) + (capacity + 1) * sizeof(wchar_t), 1);
    return new (block) CStringData{this, 0, capacity, {1}};
}

void CStringManager::Free(CStringData* data) noexcept {
    data->~CStringData();
    FreeToProcessHeap(data);
}

CStringManager* CStringManager::Shared() noexcept {
    static CStringManager shared;
    return &shared;
}
