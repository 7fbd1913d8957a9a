#include "CAllocationFault.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr long kNone = 0;

thread_local long t_allocationsToFault = kNone;
thread_local bool t_hasFired = false;

bool IsToFail() noexcept {
    if (t_allocationsToFault == kNone || --t_allocationsToFault != kNone) {
        return false;
    }
    t_hasFired = true;
    return true;
}

}  // namespace

CAllocationFault::CAllocationFault(long nth) noexcept {
    t_allocationsToFault = nth;
    t_hasFired = false;
}

CAllocationFault::~CAllocationFault() {
    t_allocationsToFault = kNone;
}

bool CAllocationFault::HasFired() const noexcept {
    return t_hasFired;
}

// Replaces the C++ runtime's own for the whole program; the other forms of `new` and `delete` come through these two.
void* operator new(std::size_t bytes) {
    void* const block = IsToFail() ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
    if (!block) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
