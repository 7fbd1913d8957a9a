#include "CCallbackRegistry.h"

#include <utility>

#include "CConversionBuffer.h"

CCallbackRegistry::~CCallbackRegistry() {
    while (!m_callbacks.empty()) {
        // Out of the map before its callbacks are released: what they do then finds the map whole.
        const auto removed = m_callbacks.extract(m_callbacks.begin());
    }
}

void CCallbackRegistry::Register(const ServerConfig& server, IDataDumpCallback* callback) {
    if (!callback) {
        return;
    }
    const auto found = m_callbacks.find(server);
    if (found != m_callbacks.end()) {
        found->second.emplace(callback);
        return;
    }
    Callbacks first;
    first.emplace(callback);
    m_callbacks.emplace(server, std::move(first));
}

void CCallbackRegistry::Unregister(const ServerConfig& server, IDataDumpCallback* callback) {
    const auto found = m_callbacks.find(server);
    if (found == m_callbacks.end()) {
        return;
    }
    const auto registered = found->second.find(callback);
    if (registered == found->second.end()) {
        return;
    }
    // Released at the end, out of the registry: the last release runs the host's code.
    const auto removed = found->second.extract(registered);
    if (found->second.empty()) {
        m_callbacks.erase(found);
    }
}

HRESULT CCallbackRegistry::CallCallback(const ServerConfig& server, DataType type, const wchar_t* text) {
    const ServerConfig* const found = FindServer(server);
    if (!found) {
        return E_FAIL;
    }
    const ServerConfig told = *found;  // a copy: the entry may go while its callbacks run
    CallbackPointer callback = FindNext(told, nullptr);
    while (callback) {
        const CWideCopy copy(text);
        static_cast<void>(callback->OnDataDump(type, copy.Get()));
        // Let go before the next one is looked up: a last release runs the host's code, which may unregister that one.
        const IDataDumpCallback* const previous = callback.Get();
        callback.Reset();
        callback = FindNext(told, previous);
    }
    return S_OK;
}

/// The key under which the callbacks for `server` are; null when nobody is to be told.
const ServerConfig* CCallbackRegistry::FindServer(const ServerConfig& server) const {
    const auto found = m_callbacks.find(server);
    if (found != m_callbacks.end()) {
        return &found->first;
    }
    // Kept: a host that registered once hears what is reported under other texts, too.
    return m_callbacks.size() == 1 ? &m_callbacks.begin()->first : nullptr;
}

/// The callback behind `previous` in the order of pointers; looked up afresh, as the one before may have changed the
/// set, or the map.
CCallbackRegistry::CallbackPointer CCallbackRegistry::FindNext(const ServerConfig& server,
                                                               const IDataDumpCallback* previous) const {
    const auto found = m_callbacks.find(server);
    if (found == m_callbacks.end()) {
        return {};
    }
    const auto next = found->second.upper_bound(previous);
    return next == found->second.end() ? CallbackPointer() : *next;
}
