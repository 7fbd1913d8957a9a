#pragma once

#include <windows.h>

#include <unknwn.h>
#include <wrl/client.h>

#include "CVariant.h"
#include "IPropertyBox.h"

/// The data's properties. Null data, or data that gives none with success, is E_FAIL.
[[nodiscard]] HRESULT QueryPropertyBox(IUnknown* data, Microsoft::WRL::ComPtr<IPropertyBox>& box);

/// The property `name` as an object, a VT_UNKNOWN afterwards, be it null.
[[nodiscard]] HRESULT ReadObject(IPropertyBox& box, const wchar_t* name, CVariant& object);
