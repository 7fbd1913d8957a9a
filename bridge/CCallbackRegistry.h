#pragma once

#include <windows.h>

#include <wrl/client.h>

#include <functional>
#include <map>
#include <set>

#include "DataType.h"
#include "IDataDumpCallback.h"
#include "ServerConfig.h"

/// Who is told what the message server answers: sets of callbacks under the server that they were registered for. The
/// owner's lock guards it. Callbacks, their destructors too, may come back in on the same thread and change it: it is
/// consistent whenever one is called or released.
class CCallbackRegistry {
public:
    CCallbackRegistry() = default;
    ~CCallbackRegistry();

    CCallbackRegistry(const CCallbackRegistry&) = delete;
    CCallbackRegistry& operator=(const CCallbackRegistry&) = delete;

    /// References `callback` once however often it is registered under one server; null changes nothing.
    /// Throws std::bad_alloc, nothing being changed then.
    void Register(const ServerConfig& server, IDataDumpCallback* callback);

    /// What is not registered changes nothing.
    void Unregister(const ServerConfig& server, IDataDumpCallback* callback);

    /// Tells the callbacks of `server`; where it has none and there is one server only, those of that one. They are
    /// called in the order of their pointers, each with a copy of `text` of its own and referenced while it runs. Of
    /// those that are registered meanwhile, the ones further on in that order hear it too; of those that are
    /// unregistered meanwhile none does.
    /// @return S_OK; E_FAIL when nobody is told
    [[nodiscard]] HRESULT CallCallback(const ServerConfig& server, DataType type, const wchar_t* text);

private:
    using CallbackPointer = Microsoft::WRL::ComPtr<IDataDumpCallback>;

    struct PointerOrder {
        using is_transparent = void;  // NOLINT(readability-identifier-naming): the library's name
        bool operator()(const CallbackPointer& left, const CallbackPointer& right) const noexcept {
            return std::less<>()(left.Get(), right.Get());
        }
        bool operator()(const CallbackPointer& left, const IDataDumpCallback* right) const noexcept {
            return std::less<>()(static_cast<const IDataDumpCallback*>(left.Get()), right);
        }
        bool operator()(const IDataDumpCallback* left, const CallbackPointer& right) const noexcept {
            return std::less<>()(left, static_cast<const IDataDumpCallback*>(right.Get()));
        }
    };
    using Callbacks = std::set<CallbackPointer, PointerOrder>;

    [[nodiscard]] const ServerConfig* FindServer(const ServerConfig& server) const;
    [[nodiscard]] CallbackPointer FindNext(const ServerConfig& server, const IDataDumpCallback* previous) const;

    std::map<ServerConfig, Callbacks> m_callbacks;  // no set in it is empty
};
