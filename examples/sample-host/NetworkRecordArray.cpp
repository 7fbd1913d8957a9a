#include "NetworkRecordArray.h"

#include <cstring>

#include "CComObject.h"
#include "NetworkInterfaceRecord.h"

namespace {

constexpr BSTR NetworkInterfaceRecord::*kTexts[] = {
    &NetworkInterfaceRecord::description, &NetworkInterfaceRecord::macAddress, &NetworkInterfaceRecord::ipAddress,
    &NetworkInterfaceRecord::subnetMask,  &NetworkInterfaceRecord::subnet,
};

constexpr GUID kRecordId = {0x3B1D0C5E, 0x71A4, 0x4C2E, {0x9D, 0x58, 0xE6, 0x0F, 0x8A, 0x27, 0xB4, 0x93}};

BSTR CopyText(BSTR text) {
    return text ? SysAllocStringLen(text, SysStringLen(text)) : nullptr;
}

/// Tells the system how a record is copied and emptied. Without it SafeArrayDestroy would free the array and leave the
/// texts behind. A host with a type library gets the same from GetRecordInfoFromTypeInfo.
class CNetworkRecordInfo final : public CComObject<IRecordInfo> {
public:
    HRESULT STDMETHODCALLTYPE RecordInit(void* record) override {
        std::memset(record, 0, sizeof(NetworkInterfaceRecord));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE RecordClear(void* record) override {
        for (const auto text : kTexts) {
            SysFreeString(static_cast<NetworkInterfaceRecord*>(record)->*text);
        }
        return RecordInit(record);
    }
    HRESULT STDMETHODCALLTYPE RecordCopy(void* source, void* copy) override {
        const NetworkInterfaceRecord& from = *static_cast<const NetworkInterfaceRecord*>(source);
        NetworkInterfaceRecord& to = *static_cast<NetworkInterfaceRecord*>(copy);
        RecordClear(copy);
        to.linkSpeed = from.linkSpeed;
        for (const auto text : kTexts) {
            to.*text = CopyText(from.*text);
            if (from.*text && !(to.*text)) {
                return E_OUTOFMEMORY;
            }
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetGuid(GUID* id) override {
        *id = kRecordId;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetName(BSTR* name) override {
        *name = SysAllocString(L"NetworkInterfaceRecord");
        return *name ? S_OK : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE GetSize(ULONG* size) override {
        *size = sizeof(NetworkInterfaceRecord);
        return S_OK;
    }
    BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo* other) override {
        GUID id = {};
        return other && SUCCEEDED(other->GetGuid(&id)) && id == kRecordId;
    }

    // For callers that know fields by name, and for records outside of arrays: there are none.
    HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetField(void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNoCopy(void*, LPCOLESTR, VARIANT*, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutField(ULONG, void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG, void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
    void* STDMETHODCALLTYPE RecordCreate() override { return nullptr; }
    HRESULT STDMETHODCALLTYPE RecordCreateCopy(void*, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RecordDestroy(void*) override { return E_NOTIMPL; }
};

bool Fill(NetworkInterfaceRecord& record, const AdapterReading& adapter) noexcept {
    record.linkSpeed = adapter.linkSpeedMbit;
    return SUCCEEDED(GiveText(&record.description, adapter.description)) &&
           SUCCEEDED(GiveText(&record.macAddress, adapter.macAddress)) &&
           SUCCEEDED(GiveText(&record.ipAddress, adapter.ipAddress)) &&
           SUCCEEDED(GiveText(&record.subnetMask, adapter.subnetMask)) &&
           SUCCEEDED(GiveText(&record.subnet, adapter.subnet));
}

}  // namespace

SAFEARRAY* MakeNetworkRecordArray(const std::vector<AdapterReading>& adapters) noexcept {
    IRecordInfo* info = nullptr;
    if (FAILED(GiveNewObject<CNetworkRecordInfo>(&info))) {
        return nullptr;
    }
    SAFEARRAYBOUND bound = {static_cast<ULONG>(adapters.size()), 0};
    SAFEARRAY* const array = SafeArrayCreateEx(VT_RECORD, 1, &bound, info);
    info->Release();  // the array has a reference of its own
    if (!array) {
        return nullptr;
    }
    auto* record = static_cast<NetworkInterfaceRecord*>(array->pvData);
    for (const AdapterReading& adapter : adapters) {
        if (!Fill(*record++, adapter)) {
            SafeArrayDestroy(array);
            return nullptr;
        }
    }
    return array;
}
