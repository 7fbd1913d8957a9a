// Everything that lives from the library's load to its unload.

#include <boost/thread/detail/tss_hooks.hpp>

#include "CRMICommManagerFacade.h"
#include "CThreadSlots.h"
#include "CUnloadedObject.h"

namespace {

/// Gives back what Boost holds: the unloading thread's block and the index of its storage.
struct BoostThreadEnd {
    BoostThreadEnd() = default;
    ~BoostThreadEnd() {
        boost::on_thread_exit();
        boost::on_process_exit();
    }

    BoostThreadEnd(const BoostThreadEnd&) = delete;
    BoostThreadEnd& operator=(const BoostThreadEnd&) = delete;
};

/// They go in the reverse of this order. The facade has the unloading thread's cleaner run and gives Java up; only then
/// go the slots, so that a detacher of that thread's finds no machine: detaching would wait for Java's list of threads
/// under the loader lock.
struct LibraryStatics {
    BoostThreadEnd boostThreadEnd;
    CThreadSlots slots;
    CRMICommManagerFacade facade{slots};
};

// Where its lock cannot be made, the exception leaves the library's start-up and the load fails.
CUnloadedObject<LibraryStatics> g_statics;  // NOLINT(cert-err58-cpp)

}  // namespace

CRMICommManager& CRMICommManager::GetInstance() {
    return g_statics.Get().facade;
}
