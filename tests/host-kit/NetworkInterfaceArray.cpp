#include "NetworkInterfaceArray.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "CBstr.h"
#include "ThrowResult.h"
#include "NetworkRecordInfo.h"
#include "SystemHandles.h"

namespace {

struct TextField {
    std::size_t offset;
    std::wstring NetworkInterfaceData::*text;
};
constexpr TextField kTextFields[] = {
    {offsetof(NetworkInterfaceRecord, description), &NetworkInterfaceData::description},
    {offsetof(NetworkInterfaceRecord, macAddress), &NetworkInterfaceData::macAddress},
    {offsetof(NetworkInterfaceRecord, ipAddress), &NetworkInterfaceData::ipAddress},
    {offsetof(NetworkInterfaceRecord, subnetMask), &NetworkInterfaceData::subnetMask},
    {offsetof(NetworkInterfaceRecord, subnet), &NetworkInterfaceData::subnet},
};

/// Fills one element, which is zeroed, with the fields that lie wholly inside `size` bytes.
void FillElement(BYTE* element, std::size_t size, const NetworkInterfaceData& data) {
    for (const TextField& field : kTextFields) {
        if (field.offset + sizeof(BSTR) <= size) {
            const BSTR text = CBstr::Make(data.*field.text).Detach();
            std::memcpy(element + field.offset, &text, sizeof(text));
        }
    }
    if (offsetof(NetworkInterfaceRecord, linkSpeed) + sizeof(LONG) <= size) {
        std::memcpy(element + offsetof(NetworkInterfaceRecord, linkSpeed), &data.linkSpeed, sizeof(LONG));
    }
}

}  // namespace

SAFEARRAY* MakeNetworkInterfaceArray(const std::shared_ptr<CCallRecord>& record,
                                     const std::vector<NetworkInterfaceData>& interfaces,
                                     const NetworkArrayShape& shape) {
    if (shape.isNull) {
        return nullptr;
    }
    std::vector<SAFEARRAYBOUND> bounds(std::max<std::size_t>(shape.rank, 1), SAFEARRAYBOUND{1, 0});
    bounds[0] = {static_cast<ULONG>(interfaces.size()), shape.lowerBound};
    const auto recordInfo = MakeNetworkRecordInfo(record, shape.elementSize);

    CSafeArray array(SafeArrayCreateEx(VT_RECORD, static_cast<UINT>(bounds.size()), bounds.data(), recordInfo.Get()));
    if (!array) {
        ThrowResult(E_OUTOFMEMORY);
    }
    auto* element = static_cast<BYTE*>(array.Get()->pvData);
    for (const NetworkInterfaceData& data : interfaces) {
        FillElement(element, shape.elementSize, data);
        element += shape.elementSize;
    }
    return array.Detach();
}
