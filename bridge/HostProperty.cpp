#include "HostProperty.h"

#include "CBstr.h"
#include "HostObject.h"

HRESULT QueryPropertyBox(IUnknown* data, Microsoft::WRL::ComPtr<IPropertyBox>& box) {
    if (!data) {
        return E_FAIL;
    }
    const HRESULT queried = AskForObject(box, [&](IPropertyBox** given) {
        return data->QueryInterface(IPropertyBox::kId, reinterpret_cast<void**>(given));
    });
    return SUCCEEDED(queried) && !box ? E_FAIL : queried;
}

HRESULT ReadObject(IPropertyBox& box, const wchar_t* name, CVariant& object) {
    const HRESULT read = box.GetProperty(CBstr::Make(name).Get(), object.Receive());
    return FAILED(read) ? read : object.ChangeTo(VT_UNKNOWN);
}
