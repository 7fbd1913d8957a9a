#include "CInProcessClassObject.h"

#include <objbase.h>

#include "ThrowResult.h"
#include "ServiceClass.h"

CInProcessClassObject::CInProcessClassObject(IUnknown* classObject) {
    const HRESULT result =
        CoRegisterClassObject(kServiceClassId, classObject, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_registration);
    if (FAILED(result)) {
        ThrowResult(result);
    }
}

CInProcessClassObject::~CInProcessClassObject() {
    CoRevokeClassObject(m_registration);
}
