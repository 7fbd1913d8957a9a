#include "CThreadSlots.h"

#include <boost/thread/exceptions.hpp>
#include <new>

namespace {

/// A slot takes an object over only once it has room for it. Boost makes an event for each thread that has slots; what
/// it throws where the system has none left is nothing that hosts know.
template <typename T>
void PutInSlot(boost::thread_specific_ptr<T>& slot, std::unique_ptr<T> object) {
    try {
        slot.reset(object.get());
    } catch (const boost::thread_resource_error&) {
        throw std::bad_alloc();
    }
    static_cast<void>(object.release());
}

}  // namespace

void CThreadSlots::SetCleaner(CRMICommManagerImpl& manager, CRMICommManagerImplCleaner::Function clean) {
    if (m_cleaner.get()) {
        return;
    }
    m_storage.Require();
    PutInSlot(m_cleaner, std::make_unique<CRMICommManagerImplCleaner>(manager, clean));
}

void CThreadSlots::AttachThread(const std::shared_ptr<CJavaVM>& vm) {
    const JavaThreadDetacher* const detacher = m_detacher.get();
    if (m_cleaner.get() || (detacher && detacher->attachment)) {
        return;
    }
    WatchThread();
    // An environment that is known all the same is that of an earlier thread of this id, which ended unseen.
    vm->ForgetCurrentThread();
    m_storage.Require();
    // The slot first: a thread that is attached must not lack the detacher.
    PutInSlot(m_detacher, std::make_unique<JavaThreadDetacher>(JavaThreadDetacher{vm, nullptr}));
    m_detacher->attachment = MakeThreadAttachment(*vm);
}
