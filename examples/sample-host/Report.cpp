#include "Report.h"

#include <cstdio>

#include "FindServer.h"
#include "Readings.h"
#include "Text.h"

namespace {

void Print(const Json& line) {
    constexpr bool kAsciiOnly = true;
    // In one call: lines of several threads do not mix.
    const std::string text = line.dump(-1, ' ', kAsciiOnly) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

/// A line that memory does not suffice for is lost, and that is all: a log entry must not end the item it is about.
template <typename MakeLine>
HRESULT PrintInsideCall(const MakeLine& makeLine) noexcept {
    try {
        Print(makeLine());
    } catch (const std::exception&) {
        return S_OK;
    }
    return S_OK;
}

std::string OrEmpty(const wchar_t* text) {
    return text ? ToUtf8(text) : std::string();
}

std::string FormatResult(HRESULT result) {
    char text[16] = "";
    std::snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(result));
    return text;
}

}  // namespace

void ReportServer(const MessageServer& server, const MachineReading& machine) {
    Print({{"event", "server"},
           {"url", ToUtf8(server.url)},
           {"secondValue", ToUtf8(server.authToken)},
           {"certificate", ToUtf8(server.certificate)},
           {"machineUniqueId", ToUtf8(machine.id)}});
}

void ReportSent(const SentItem& item) {
    Print({{"event", "sent"},
           {"number", item.number},
           {"type", item.type},
           {"name", item.name},
           {"method", item.method ? Json(item.method) : Json()},
           {"result", FormatResult(item.result)},
           {"milliseconds", item.milliseconds},
           {"arguments", item.arguments}});
}

void ReportEnd(int itemsSent) {
    Print({{"event", "end"}, {"sent", itemsSent}});
}

HRESULT ReportAnswer(ULONG type, const wchar_t* text) noexcept {
    return PrintInsideCall([&] { return Json{{"event", "answer"}, {"type", type}, {"text", OrEmpty(text)}}; });
}

HRESULT ReportAction(const wchar_t* text) noexcept {
    return PrintInsideCall([&] { return Json{{"event", "action"}, {"text", OrEmpty(text)}}; });
}

HRESULT ReportLog(const char* level, const wchar_t* text) noexcept {
    return PrintInsideCall([&] { return Json{{"event", "log"}, {"level", level}, {"text", OrEmpty(text)}}; });
}
