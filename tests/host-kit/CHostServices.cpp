#include "CHostServices.h"

#include <algorithm>
#include <utility>

using Lock = std::lock_guard<std::mutex>;

void CHostServices::Set(REFIID interfaceId, IUnknown* object) {
    auto reference = CHostReference<IUnknown>::Share(object);
    {
        const Lock lock(m_lock);
        Entry& entry = FindOrAdd(interfaceId);
        std::swap(entry.object, reference);
        entry.result = S_OK;
    }
    // What was there before is released here, outside the lock.
}

void CHostServices::SetResult(REFIID interfaceId, HRESULT result) {
    CHostReference<IUnknown> previous;
    const Lock lock(m_lock);
    Entry& entry = FindOrAdd(interfaceId);
    std::swap(entry.object, previous);
    entry.result = result;
}

void CHostServices::AnswerDirectly(REFIID interfaceId) {
    const Lock lock(m_lock);
    FindOrAdd(interfaceId).isDirect = true;
}

void CHostServices::Remove(REFIID interfaceId) {
    SetResult(interfaceId, E_NOINTERFACE);
}

void CHostServices::Clear() {
    std::vector<Entry> entries;
    const Lock lock(m_lock);
    m_entries.swap(entries);
}

HRESULT CHostServices::Find(REFIID interfaceId, IUnknown** object) const {
    *object = nullptr;
    const Lock lock(m_lock);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return IsEqualGUID(entry.interfaceId, interfaceId); });
    if (found == m_entries.end()) {
        return E_NOINTERFACE;
    }
    *object = CHostReference<IUnknown>::Share(found->object.Get()).Detach();
    return found->result;
}

void CHostServices::VisitDirect(const std::function<void(REFIID, IUnknown*)>& visit) const {
    const Lock lock(m_lock);
    for (const Entry& entry : m_entries) {
        if (entry.isDirect && entry.object) {
            visit(entry.interfaceId, entry.object.Get());
        }
    }
}

CHostServices::Entry& CHostServices::FindOrAdd(REFIID interfaceId) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return IsEqualGUID(entry.interfaceId, interfaceId); });
    if (found != m_entries.end()) {
        return *found;
    }
    m_entries.push_back({interfaceId, {}, E_NOINTERFACE, false});
    return m_entries.back();
}
