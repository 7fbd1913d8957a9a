#pragma once

#include <windows.h>

#include <unknwn.h>

#include <functional>
#include <mutex>
#include <vector>

#include "CHostReference.h"

/// What a host's service providers give, by interface ID; shared by all of them. What is not there is E_NOINTERFACE.
/// Any thread. It references the objects: a test that counts references clears it first.
class CHostServices {
public:
    /// GetHostObject gives this object, as the IUnknown it is given here. Null: S_OK without an object.
    void Set(REFIID interfaceId, IUnknown* object);
    /// GetHostObject fails, or with a success code gives nothing.
    void SetResult(REFIID interfaceId, HRESULT result);
    /// Providers that are made from now on answer a query of their own for this ID with the object of it, too.
    void AnswerDirectly(REFIID interfaceId);
    void Remove(REFIID interfaceId);
    void Clear();

    // For the providers.
    [[nodiscard]] HRESULT Find(REFIID interfaceId, IUnknown** object) const;
    /// Calls `visit` for each object that is to be answered directly; the lock is held.
    void VisitDirect(const std::function<void(REFIID, IUnknown*)>& visit) const;

private:
    struct Entry {
        IID interfaceId;
        CHostReference<IUnknown> object;
        HRESULT result;
        bool isDirect;
    };

    [[nodiscard]] Entry& FindOrAdd(REFIID interfaceId);

    mutable std::mutex m_lock;
    std::vector<Entry> m_entries;
};
