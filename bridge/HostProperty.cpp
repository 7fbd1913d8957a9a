#include "HostProperty.h"

#include "CBstr.h"
#include "HostObject.h"

HRESULT QueryPropertyBox(IUnknown* data, Microsoft::WRL::ComPtr<IPropertyBox>& box) {
    if (!data) {
        return E_FAIL;
    }
    const HRESULT queried = QueryHostObject(*data, box);
    return SUCCEEDED(queried) && !box ? E_FAIL : queried;
}

HRESULT ReadObject(IPropertyBox& box, const wchar_t* name, CVariant& object) {
    const HRESULT read = box.GetProperty(CBstr::Make(name).Get(), object.Receive());
    return FAILED(read) ? read : object.ChangeTo(VT_UNKNOWN);
}
