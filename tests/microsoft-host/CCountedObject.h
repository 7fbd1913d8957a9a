#pragma once

#include <windows.h>

#include <unknwn.h>

/// A COM object with one interface beside IUnknown. It is of static storage, and its references are counted for nothing
/// but to be compared. The host itself has the first one.
template <typename Interface, const IID& kInterfaceId>
class CCountedObject : public Interface {
public:
    CCountedObject(const CCountedObject&) = delete;
    CCountedObject& operator=(const CCountedObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
        if (interfaceId != IID_IUnknown && interfaceId != kInterfaceId) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        *object = static_cast<Interface*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(InterlockedDecrement(&m_references)); }

    [[nodiscard]] LONG CountReferences() const { return m_references; }

protected:
    constexpr CCountedObject() = default;
    ~CCountedObject() = default;

private:
    LONG m_references = 1;
};
