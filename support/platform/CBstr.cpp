#include "CBstr.h"

#include <comdef.h>

#include <limits>

CBstr CBstr::Make(std::wstring_view text) {
    if (text.size() > std::numeric_limits<UINT>::max()) {
        throw _com_error(E_OUTOFMEMORY);
    }
    CBstr made(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
    if (!made) {
        throw _com_error(E_OUTOFMEMORY);
    }
    return made;
}
