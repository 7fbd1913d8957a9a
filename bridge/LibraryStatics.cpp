// Everything that lives from the library's load to its unload.

#include <boost/thread/detail/tss_hooks.hpp>

#include "CRMICommManagerFacade.h"
#include "CThreadSlots.h"
#include "CUnloadedObject.h"

// Of the C++ runtime, in none of its headers: for programs that count what is left at their end, as we do at an unload.
namespace __gnu_cxx {
void __freeres();  // NOLINT(bugprone-reserved-identifier,readability-identifier-naming): its name
}

namespace {

/// Gives back what Boost and the C++ runtime, of which this library has its own, hold to the end: the unloading
/// thread's block, the index of its storage, and the memory set aside for throwing where there is no other.
struct RuntimeEnd {
    RuntimeEnd() = default;
    ~RuntimeEnd() {
        boost::on_thread_exit();
        boost::on_process_exit();
        __gnu_cxx::__freeres();
    }

    RuntimeEnd(const RuntimeEnd&) = delete;
    RuntimeEnd& operator=(const RuntimeEnd&) = delete;
};

/// They go in the reverse of this order. The facade has the unloading thread's cleaner run and gives Java up; only then
/// go the slots, so that a detacher of that thread's finds no machine: detaching would wait for Java's list of threads
/// under the loader lock.
struct LibraryStatics {
    RuntimeEnd runtimeEnd;
    CThreadSlots slots;
    CRMICommManagerFacade facade{slots};
};

CUnloadedObject<LibraryStatics> g_statics;

}  // namespace

/// The load fails (ERROR_DLL_INIT_FAILED) where a lock or the threads' storage cannot be had. Nothing else happens
/// here; the notifications of threads stay on, as the slots' clean-up needs them.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    return reason != DLL_PROCESS_ATTACH || g_statics.IsMade();
}

CRMICommManager& CRMICommManager::GetInstance() {
    return g_statics.Get().facade;
}
