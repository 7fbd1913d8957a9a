// A host from its beginning to its end: what it makes, in which order, and in which order it is given up again.

#include <windows.h>

#include <comdef.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "CHresultException.h"
#include "CHostDay.h"
#include "CItemSender.h"
#include "CSystemInfo.h"
#include "FindServer.h"
#include "Options.h"
#include "Scopes.h"
#include "ServiceObjects.h"
#include "StopSignal.h"
#include "Text.h"

using Microsoft::WRL::ComPtr;

namespace {

constexpr int kFailed = 1;

/// The thread that hands every item over. The first one makes Java belong to it, so it lives as long as items come, and
/// its end is Java's: the message client is disposed then.
std::exception_ptr RunItemThread(const std::function<void()>& sendItems) {
    std::exception_ptr failure;
    std::thread([&] {
        try {
            const CComApartment apartment;
            sendItems();
        } catch (...) {
            failure = std::current_exception();
        }
    }).join();
    return failure;
}

void RunHost(const Options& options) {
    // What the library keeps (the logger, the system information) it keeps to the process's end, when it calls nobody
    // any more.
    const CComApartment apartment;
    const auto systemInfo = MakeComObject<CSystemInfo>();
    const auto sessions = MakeComObject<CSessionCollection>();
    const auto services = MakeComObject<CServiceProvider>(std::vector<ComPtr<IUnknown>>{
        MakeComObject<CLogger>(options.isVerbose), MakeComObject<CActionExecutor>(), systemInfo, sessions});
    const CServiceRegistration serviceRegistration(MakeComObject<CServiceClass>(services));
    const std::shared_ptr<void> stopped = WatchStandardInput();
    int sent = 0;

    const std::exception_ptr failure = RunItemThread([&] {
        // Before the library asks for the machine's unique id, which may be what the server takes for a token.
        systemInfo->Refresh();
        const MessageServer server = FindServer(options.configuration);
        ReportServer(server, systemInfo->GetMachine());
        CItemSender sender(server, *systemInfo.Get());
        // Before the first item: an answer that nobody is registered for would make it fail.
        const CCallbackRegistration callback(server, MakeComObject<CAnswerCallback>());
        CHostDay(options, server, sender, *sessions.Get(), stopped.get()).Run();
        sent = sender.CountSent();
    });
    if (failure) {
        std::rethrow_exception(failure);
    }
    ReportEnd(sent);
    // Given up from here on, in this order: the service class, the host's references, COM.
}

int Fail(const char* why) {
    std::fprintf(stderr, "sample-host: %s\n", why);
    return kFailed;
}

}  // namespace

int main() {
    // Lines end as they are written.
    _setmode(_fileno(stdout), _O_BINARY);
    int exitCode = 0;
    const std::optional<Options> options = ReadOptions(exitCode);
    if (!options) {
        return exitCode;
    }
    try {
        RunHost(*options);
        return 0;
    } catch (const CHresultException& exception) {
        return Fail(ToUtf8(_com_error(exception.GetResult()).ErrorMessage()).c_str());
    } catch (const _com_error& error) {
        return Fail(ToUtf8(error.ErrorMessage()).c_str());
    } catch (const std::exception& exception) {
        return Fail(exception.what());
    }
}
