#include "HostKitServer.h"

#include <objbase.h>

#include <mutex>
#include <utility>

#include "CHostReference.h"
#include "ServiceClass.h"

// An in-process server that hands out a class object of the process it is loaded into. It makes no objects itself: the
// test's own copy of the kit does, so that their record is the test's.

namespace {

std::mutex g_lock;  // guards the class object
IUnknown* g_classObject = nullptr;

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    if (!object) {
        return E_POINTER;
    }
    *object = nullptr;
    CHostReference<IUnknown> classObject;
    {
        const std::lock_guard<std::mutex> lock(g_lock);
        classObject = CHostReference<IUnknown>::Share(g_classObject);
    }
    if (!classObject || !IsEqualGUID(classId, kServiceClassId)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return classObject->QueryInterface(interfaceId, object);
}

STDAPI DllCanUnloadNow() {
    const std::lock_guard<std::mutex> lock(g_lock);
    return g_classObject ? S_FALSE : S_OK;
}

extern "C" void STDAPICALLTYPE SetHostKitClassObject(IUnknown* classObject) {
    CHostReference<IUnknown> previous;
    const std::lock_guard<std::mutex> lock(g_lock);
    previous.Reset(std::exchange(g_classObject, CHostReference<IUnknown>::Share(classObject).Detach()));
}
