#include <algorithm>
#include <cstddef>
#include <cstring>

#include "CHostFacet.h"
#include "NetworkRecordInfo.h"

namespace {

constexpr std::size_t kFirstText = offsetof(NetworkInterfaceRecord, description);
constexpr std::size_t kTextsEnd = offsetof(NetworkInterfaceRecord, linkSpeed);
// None is registered anywhere; arrays of this record tell each other by it.
constexpr GUID kRecordId = {0x8C4E7B15, 0x2F60, 0x4D93, {0xB1, 0x0A, 0x67, 0xE2, 0x35, 0xD8, 0x9F, 0x4C}};

// The system's own calls, when it copies and destroys arrays: they are no calls on the host, so none is recorded.
class CNetworkRecordInfoFacet final : public CHostFacet<IRecordInfo, ULONG> {
public:
    CNetworkRecordInfoFacet(CHostObject& object, ULONG size) : CHostFacet(object, IID_IRecordInfo, size) {}

    STDMETHODIMP RecordInit(void* element) noexcept override {
        std::memset(element, 0, m_data);
        return S_OK;
    }

    STDMETHODIMP RecordClear(void* element) noexcept override {
        for (std::size_t offset = kFirstText; offset < TextsEnd(); offset += sizeof(BSTR)) {
            SysFreeString(TextAt(element, offset));
        }
        return RecordInit(element);
    }

    STDMETHODIMP RecordCopy(void* source, void* copy) noexcept override {
        RecordClear(copy);
        std::memcpy(copy, source, m_data);
        for (std::size_t offset = kFirstText; offset < TextsEnd(); offset += sizeof(BSTR)) {
            const BSTR text = TextAt(source, offset);
            const BSTR copied = text ? SysAllocStringLen(text, SysStringLen(text)) : nullptr;
            std::memcpy(static_cast<BYTE*>(copy) + offset, &copied, sizeof(copied));
        }
        return S_OK;
    }

    STDMETHODIMP GetGuid(GUID* id) noexcept override {
        *id = kRecordId;
        return S_OK;
    }
    STDMETHODIMP GetName(BSTR* name) noexcept override {
        *name = SysAllocString(L"NetworkInterfaceRecord");
        return *name ? S_OK : E_OUTOFMEMORY;
    }
    STDMETHODIMP GetSize(ULONG* size) noexcept override {
        *size = m_data;
        return S_OK;
    }
    STDMETHODIMP_(BOOL) IsMatchingType(IRecordInfo* other) noexcept override {
        GUID id = GUID_NULL;
        return other && SUCCEEDED(other->GetGuid(&id)) && IsEqualGUID(id, kRecordId);
    }

    // What only callers that know fields by name use.
    STDMETHODIMP GetTypeInfo(ITypeInfo**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetField(void*, LPCOLESTR, VARIANT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetFieldNoCopy(void*, LPCOLESTR, VARIANT*, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP PutField(ULONG, void*, LPCOLESTR, VARIANT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP PutFieldNoCopy(ULONG, void*, LPCOLESTR, VARIANT*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP GetFieldNames(ULONG*, BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP_(void*) RecordCreate() noexcept override { return nullptr; }
    STDMETHODIMP RecordCreateCopy(void*, void**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP RecordDestroy(void*) noexcept override { return E_NOTIMPL; }

private:
    /// The end of the texts that lie wholly inside the element.
    [[nodiscard]] std::size_t TextsEnd() const noexcept {
        const std::size_t size = m_data;
        return std::min(kTextsEnd, size - size % sizeof(BSTR));
    }

    [[nodiscard]] static BSTR TextAt(const void* element, std::size_t offset) noexcept {
        BSTR text = nullptr;
        std::memcpy(&text, static_cast<const BYTE*>(element) + offset, sizeof(text));
        return text;
    }
};

}  // namespace

CHostReference<IRecordInfo> MakeNetworkRecordInfo(std::shared_ptr<CCallRecord> record, ULONG size) {
    return CHostObject::MakeWith<IRecordInfo, CNetworkRecordInfoFacet>(std::move(record), "Network record", size);
}
