#include "CItemSender.h"

#include <chrono>

#include "ExpectedCall.h"

HRESULT CItemSender::Send(const Kind& kind, unsigned __int64 id, IUnknown* data, const AddArguments& addArguments) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begun = Clock::now();
    // Whatever it returns, the host goes on: 0x800713AB, for one, means that the server is away for the moment.
    const HRESULT result = CRMICommManager::GetInstance().DumpData<IUnknown>(
        m_server.url.c_str(), m_server.authToken.c_str(), m_server.certificate.c_str(), id, kind.type, data);
    const std::chrono::duration<double, std::milli> taken = Clock::now() - begun;

    ReportSent(
        {++m_count, kind.type, kind.name, kind.method, result, taken.count(), ExpectArguments(kind, addArguments)});
    return result;
}

/// After the item: the library had the machine read anew for it.
Json CItemSender::ExpectArguments(const Kind& kind, const AddArguments& addArguments) const {
    Json arguments = Json::object();
    if (kind.method) {
        const MachineReading& machine = m_systemInfo.GetMachine();
        arguments["connection"] = ExpectedConnection(machine, m_server.authToken);
        addArguments(arguments, machine);
    }
    return arguments;
}
