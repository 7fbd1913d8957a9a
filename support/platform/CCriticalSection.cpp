#include "CCriticalSection.h"

#include "ThrowResult.h"

namespace {
constexpr DWORD kSpinCount = 0;
}

CCriticalSection::CCriticalSection() {
    if (!InitializeCriticalSectionAndSpinCount(&m_section, kSpinCount)) {
        ThrowLastError();
    }
}

CCriticalSection::~CCriticalSection() {
    DeleteCriticalSection(&m_section);
}

void CCriticalSection::lock() noexcept {
    EnterCriticalSection(&m_section);
}

void CCriticalSection::unlock() noexcept {
    LeaveCriticalSection(&m_section);
}
