#include "CReferenceCount.h"

ULONG CReferenceCount::CountUp() noexcept {
    return static_cast<ULONG>(InterlockedIncrement(&m_count));
}

ULONG CReferenceCount::CountDown() noexcept {
    const LONG left = InterlockedDecrement(&m_count);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}
