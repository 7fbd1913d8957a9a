#include "LoaderLockRule.h"

#ifndef NDEBUG

#include <cassert>

#include "LoaderLock.h"

namespace {

/// How many exemptions there are of the thread that holds the loader lock, which guards this: nobody else looks.
int g_exemptions = 0;

}  // namespace

void AssertOutsideLoaderLock() noexcept {
    assert((!HasLoaderLock() || g_exemptions > 0) && "Java is called under the loader lock");
}

CLoaderLockExemption::CLoaderLockExemption() noexcept : m_isUnderLoaderLock(HasLoaderLock()) {
    if (m_isUnderLoaderLock) {
        ++g_exemptions;
    }
}

CLoaderLockExemption::~CLoaderLockExemption() {
    if (m_isUnderLoaderLock) {
        --g_exemptions;
    }
}

#endif
