#include "CThreadStorage.h"

#include <boost/thread/detail/tss_hooks.hpp>
#include <boost/thread/tss.hpp>
#include <boost/thread/win32/thread_data.hpp>
#include <new>

#include "ThrowResult.h"

namespace {

DWORD RequireIndex() {
    const DWORD index = TlsAlloc();
    if (index == TLS_OUT_OF_INDEXES) {
        ThrowLastError();
    }
    return index;
}

/// Boost takes its index with the first slot that is filled.
void HaveBoostTakeItsIndex() {
    if (boost::detail::get_current_thread_data()) {
        return;
    }
    TlsFree(RequireIndex());
    {
        boost::thread_specific_ptr<int> slot([](int*) {});
        int value = 0;
        slot.reset(&value);
    }
    boost::on_thread_exit();
}

/// An index taken after Boost's is above it, as the system gives the lowest that is free: where a thread has storage
/// for this one, it has for Boost's.
DWORD TakeIndexAboveBoosts() {
    HaveBoostTakeItsIndex();
    return RequireIndex();
}

}  // namespace

CThreadStorage::CThreadStorage() : m_index(TakeIndexAboveBoosts()) {}

CThreadStorage::~CThreadStorage() {
    TlsFree(m_index);
}

void CThreadStorage::Require() const {
    if (!TlsSetValue(m_index, const_cast<DWORD*>(&m_index))) {
        throw std::bad_alloc();
    }
}
