#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <oleauto.h>

#include <cstddef>

#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"

// A host's objects that live on the stack. They take no C++ memory, so that what fails of it is the convertor's alone,
// and they can contradict themselves: each operation leaves what it is told to and returns what it is told to.

/// One interface, whose references are counted; all are given back before it dies.
template <typename Interface>
class CStackObject : public Interface {
public:
    CStackObject() = default;
    virtual ~CStackObject() { EXPECT_EQ(m_references, 0) << "references left"; }

    CStackObject(const CStackObject&) = delete;
    CStackObject& operator=(const CStackObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override {
        if (!IsEqualIID(interfaceId, Interface::kId)) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(++m_references); }
    STDMETHODIMP_(ULONG) Release() noexcept override { return static_cast<ULONG>(--m_references); }

    [[nodiscard]] long CountReferences() const noexcept { return m_references; }

protected:
    /// Gives `object`, which may be null, with a reference where the operation succeeds, and without where it fails.
    template <typename Given>
    static HRESULT Give(Given* object, Given** given, HRESULT result) noexcept {
        *given = object;
        if (object && SUCCEEDED(result)) {
            object->AddRef();
        }
        return result;
    }
    static HRESULT GiveText(const wchar_t* text, BSTR* given) noexcept {
        *given = SysAllocString(text);
        return S_OK;
    }

private:
    long m_references = 0;
};

struct StackPair {
    const wchar_t* name;  ///< null: none
    VARIANT value;        ///< copied for each walk
};

/// Walks the same pairs again when it has come to their end.
class CStackValues final : public CStackObject<INameValueEnumerator> {
public:
    CStackValues() = default;
    template <std::size_t count>
    explicit CStackValues(const StackPair (&pairs)[count]) : m_pairs(pairs), m_count(count) {}

    HRESULT endResult = S_FALSE;

    STDMETHODIMP Reserved3() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Next(BSTR* name, VARIANT* value) noexcept override {
        if (m_position == m_count) {
            m_position = 0;
            return endResult;
        }
        const StackPair& pair = m_pairs[m_position++];
        *name = SysAllocString(pair.name);
        return VariantCopy(value, const_cast<VARIANT*>(&pair.value));
    }
    /// After a walk that was broken off.
    void Rewind() noexcept { m_position = 0; }

private:
    const StackPair* m_pairs = nullptr;
    std::size_t m_count = 0;
    std::size_t m_position = 0;
};

class CStackBox final : public CStackObject<IPropertyBox> {
public:
    explicit CStackBox(INameValueEnumerator* properties, HRESULT getEnumerator = S_OK)
        : m_properties(properties), m_getEnumerator(getEnumerator) {}

    STDMETHODIMP get_enumerator(INameValueEnumerator** properties) noexcept override {
        return Give(m_properties, properties, m_getEnumerator);
    }
    STDMETHODIMP GetProperty(BSTR, VARIANT*) noexcept override { return E_NOTIMPL; }

private:
    INameValueEnumerator* const m_properties;
    const HRESULT m_getEnumerator;
};

class CStackSession final : public CStackObject<IUserSessionInfo> {
public:
    explicit CStackSession(IPropertyBox* box, HRESULT getPropertyBox = S_OK)
        : m_box(box), m_getPropertyBox(getPropertyBox) {}

    STDMETHODIMP get_propertyBox(IPropertyBox** box) noexcept override { return Give(m_box, box, m_getPropertyBox); }
    STDMETHODIMP get_id(LONG* id) noexcept override {
        *id = 7;
        return S_OK;
    }
    STDMETHODIMP get_sid(BSTR* sid) noexcept override { return GiveText(L"a security identifier", sid); }
    STDMETHODIMP get_user(BSTR* user) noexcept override { return GiveText(L"a user's name", user); }
    STDMETHODIMP get_domain(BSTR* domain) noexcept override { return GiveText(L"a domain's name", domain); }
    STDMETHODIMP get_state(SHORT* state) noexcept override {
        *state = 1;
        return S_OK;
    }
    STDMETHODIMP Reserved9() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved10() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved11() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved12() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved13() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_userLabel(BSTR* label) noexcept override {
        *label = SysAllocString(L"the user's label");
        return getUserLabel;
    }

    HRESULT getUserLabel = S_OK;

private:
    IPropertyBox* const m_box;
    const HRESULT m_getPropertyBox;
};

class CStackSystem final : public CStackObject<ISystemInfo> {
public:
    /// `array` is given as it is: each walk destroys it.
    SAFEARRAY* array = nullptr;
    HRESULT getNetworkInterfaces = S_OK;
    HRESULT getTexts = S_OK;
    HRESULT getTotalMemory = S_OK;

    STDMETHODIMP Refresh() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_networkInterfaces(SAFEARRAY** given) noexcept override {
        *given = array;
        return getNetworkInterfaces;
    }
    STDMETHODIMP get_machineName(BSTR* name) noexcept override {
        *name = SysAllocString(L"the machine's name");
        return getTexts;
    }
    STDMETHODIMP Reserved6() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_isDesktop(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_FQDN(BSTR* name) noexcept override {
        *name = SysAllocString(L"the machine's full name");
        return getTexts;
    }
    STDMETHODIMP get_totalMemory(LONG* memory) noexcept override {
        *memory = 4096;
        return getTotalMemory;
    }
    STDMETHODIMP get_virtualMachineId(BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_machineId(BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_machineUniqueId(BSTR*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_componentsIdentities(IPropertyBox**) noexcept override { return E_NOTIMPL; }
};

class CStackNode final : public CStackObject<ISampleNode> {
public:
    STDMETHODIMP Reserved3() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved4() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved5() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Reserved6() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_time(DATE* time) noexcept override {
        *time = 25570.0;
        return getTime;
    }
    STDMETHODIMP get_instances(IInstanceEnumerator**) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP get_metrics(INameValueEnumerator**, LONG) noexcept override { return E_NOTIMPL; }

    HRESULT getTime = S_OK;
};
