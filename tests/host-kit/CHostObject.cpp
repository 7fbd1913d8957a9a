#include "CHostObject.h"

#include <algorithm>
#include <new>

ULONG CInterfaceReferences::Add() noexcept {
    if (m_object.IsDestroyed()) {
        m_object.AddViolation(std::string(GetInterfaceName()) + " referenced after the last release");
        return 0;
    }
    ++m_count;
    m_object.m_record.ChangeReferences(m_interfaceIndex, 1);
    return static_cast<ULONG>(++m_object.m_references);
}

ULONG CInterfaceReferences::Release() noexcept {
    if (m_object.IsDestroyed()) {
        m_object.AddViolation(std::string(GetInterfaceName()) + " released after the last release");
        return 0;
    }
    if (--m_count < 0) {
        ++m_count;
        m_object.AddViolation(std::string(GetInterfaceName()) + " released below zero");
        return static_cast<ULONG>(m_object.m_references);
    }
    m_object.m_record.ChangeReferences(m_interfaceIndex, -1);
    const long left = --m_object.m_references;
    if (left == 0) {
        m_object.LoseLastReference();
    }
    return static_cast<ULONG>(left);
}

CHostReference<CHostObject> CHostObject::Make(std::shared_ptr<CCallRecord> record, std::string name) {
    return CHostReference<CHostObject>::Share(new CHostObject(std::move(record), std::move(name)));
}

CHostObject::CHostObject(std::shared_ptr<CCallRecord> record, std::string name)
    : m_record(*record), m_keepsRecord(std::move(record)), m_name(std::move(name)) {
    m_record.AddObject(m_name);
}

void CHostObject::AddForward(REFIID interfaceId, IUnknown* target) {
    m_forwards.emplace_back(interfaceId, CHostReference<IUnknown>::Share(target));
}

HRESULT CHostObject::QueryInterface(REFIID interfaceId, void** object) noexcept {
    if (!object) {
        return E_POINTER;
    }
    try {
        const std::string text = DescribeQuery(m_name, interfaceId);
        if (m_isDestroyed) {
            m_record.AddViolation(text + " after the last release");
            *object = nullptr;
            return E_NOINTERFACE;
        }
        IUnknown* const found = Find(interfaceId);
        const Fault fault = m_record.EnterQuery(text, found != nullptr);
        if (fault.kind == FaultKind::eUntouched) {
            return S_OK;
        }
        *object = nullptr;
        if (fault.kind != FaultKind::eNone) {
            return fault.result;
        }
        if (!found) {
            return E_NOINTERFACE;
        }
        found->AddRef();
        *object = found;
        return S_OK;
    } catch (const std::bad_alloc&) {
        *object = nullptr;
        return E_OUTOFMEMORY;
    }
}

std::string CHostObject::DescribeQuery(const std::string& objectName, REFIID interfaceId) {
    return objectName + ": QueryInterface(" + DescribeInterface(interfaceId) + ")";
}

IUnknown* CHostObject::Find(REFIID interfaceId) noexcept {
    if (IsEqualGUID(interfaceId, IID_IUnknown)) {
        return this;
    }
    const auto facet = std::find_if(m_facets.begin(), m_facets.end(), [&](const auto& candidate) {
        return IsEqualGUID(candidate->GetInterfaceId(), interfaceId);
    });
    if (facet != m_facets.end()) {
        return (*facet)->GetInterface();
    }
    const auto forward = std::find_if(m_forwards.begin(), m_forwards.end(),
                                      [&](const auto& candidate) { return IsEqualGUID(candidate.first, interfaceId); });
    return forward != m_forwards.end() ? forward->second.Get() : nullptr;
}

void CHostObject::LoseLastReference() noexcept {
    m_isDestroyed = true;
    for (const auto& facet : m_facets) {
        facet->Drop();
    }
    m_forwards.clear();
    // Held to the end of this function: when the last owner of the record goes, this object goes with it.
    const std::shared_ptr<CCallRecord> record = std::move(m_keepsRecord);
    record->Bury(this);
}
