#pragma once

#include <boost/thread/tss.hpp>
#include <memory>

#include "CJavaVM.h"
#include "CRMICommManagerImplCleaner.h"
#include "CThreadEndHook.h"
#include "CThreadStorage.h"
#include "JavaThreadDetacher.h"

/// What the library has to do when one of the host's threads ends, kept with the thread: dispose the manager at the end
/// of the thread that initialised it, detach every other thread from Java. Any thread may call; each sees its own
/// slots.
///
/// Threads that are killed (TerminateThread), and those still running when the library is unloaded, are not cleaned up.
class CThreadSlots {
public:
    /// Throws CHresultException when the system has no storage to give.
    CThreadSlots() = default;

    CThreadSlots(const CThreadSlots&) = delete;
    CThreadSlots& operator=(const CThreadSlots&) = delete;

    /// The calling thread's slots are cleaned when it ends. To be called before the thread attaches to Java.
    void WatchThread() const noexcept { m_threadEnd.WatchThread(); }

    /// `clean` is called with `manager` when the calling thread ends, unless that has a cleaner already.
    /// Throws std::bad_alloc, perhaps having called it at once.
    void SetCleaner(CRMICommManagerImpl& manager, CRMICommManagerImplCleaner::Function clean);

    /// Attaches the calling thread for the rest of its life, unless it is attached. A thread that cannot be attached
    /// has no environment then, and its first Java call says so. Throws std::bad_alloc, the thread being as before.
    void AttachThread(const std::shared_ptr<CJavaVM>& vm);

    /// Runs the calling thread's cleaner now, if it has one.
    void RunCleaner() noexcept { m_cleaner.reset(); }

private:
    CThreadStorage m_storage;
    CThreadEndHook m_threadEnd;
    boost::thread_specific_ptr<CRMICommManagerImplCleaner> m_cleaner;
    boost::thread_specific_ptr<JavaThreadDetacher> m_detacher;
};
