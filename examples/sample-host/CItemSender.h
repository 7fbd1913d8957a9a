#pragma once

#include <functional>
#include <stdexcept>

#include "CRMICommManager.h"
#include "CSystemInfo.h"
#include "FindServer.h"
#include "Report.h"

/// A poll of the desktop has a number alone.
constexpr unsigned char kDesktopPoll = 255;

/// Why the host gives up.
class CannotGoOnException : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Hands items over, one after the other, and reports each. For one thread.
class CItemSender {
public:
    CItemSender(const MessageServer& server, CSystemInfo& systemInfo) noexcept
        : m_server(server), m_systemInfo(systemInfo) {}

    /// The kind of an item, and what the server hears of it.
    struct Kind {
        unsigned char type;
        const char* name;
        const char* method;  ///< null where the server hears nothing
    };
    /// Adds what the server ought to hear besides the connection, which is an argument of every call.
    using AddArguments = std::function<void(Json& arguments, const MachineReading& machine)>;

    HRESULT Send(const Kind& kind, unsigned __int64 id, IUnknown* data, const AddArguments& addArguments);

    [[nodiscard]] int CountSent() const noexcept { return m_count; }

private:
    Json ExpectArguments(const Kind& kind, const AddArguments& addArguments) const;

    const MessageServer& m_server;
    CSystemInfo& m_systemInfo;
    int m_count = 0;
};
