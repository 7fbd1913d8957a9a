#include "CNameValueEnumeratorFacet.h"
#include "CPropertyBoxFacet.h"
#include "CSampleNodeFacet.h"
#include "CUserSessionFacet.h"
#include "HostObjects.h"

CHostReference<IUnknown> MakeDataObject(CRecordPointer record, DataObjectData data) {
    CHostReference<CHostObject> object = CHostObject::Make(std::move(record), data.name);
    if (data.sample) {
        object->Add<CSampleNodeFacet>(std::move(*data.sample));
    }
    if (data.session) {
        object->Add<CUserSessionFacet>(std::move(*data.session));
    }
    if (data.properties) {
        object->Add<CPropertyBoxFacet>(std::move(*data.properties));
    }
    if (data.values) {
        object->Add<CNameValueEnumeratorFacet>(NameValueWalk{std::move(*data.values), data.valuesWalk});
    }
    return CHostReference<IUnknown>(object.Detach());
}
