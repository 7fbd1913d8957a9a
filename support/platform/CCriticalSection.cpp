#include "CCriticalSection.h"

#include "ThrowResult.h"

namespace {
constexpr DWORD kSpinCount = 0;
}

CCriticalSection::CCriticalSection(LockRank rank) : CLockOrder(rank) {
    if (!InitializeCriticalSectionAndSpinCount(&m_section, kSpinCount)) {
        ThrowLastError();
    }
    Join(m_section);
}

CCriticalSection::~CCriticalSection() {
    Leave();
    DeleteCriticalSection(&m_section);
}
