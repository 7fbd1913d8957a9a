#include "StopSignal.h"

#include <string>
#include <system_error>
#include <thread>

namespace {

constexpr char kStop[] = "stop";

/// Straight from the system: a thread that waits inside the C runtime holds that stream's lock, on which the process's
/// end would wait.
void ReadUntilStop(const std::shared_ptr<void>& stopped) {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    std::string line;
    char next = '\0';
    DWORD size = 0;
    while (ReadFile(input, &next, 1, &size, nullptr) && size == 1) {
        if (next == '\n') {
            if (line == kStop) {
                break;
            }
            line.clear();
        } else if (next != '\r') {
            line += next;
        }
    }
    SetEvent(stopped.get());
}

}  // namespace

std::shared_ptr<void> WatchStandardInput() {
    std::shared_ptr<void> stopped(CreateEventW(nullptr, TRUE, FALSE, nullptr), HandleCloser());
    if (!stopped) {
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    // Nobody waits for it: nothing wakes it where no line ever comes. It ends with the process, and never calls the
    // library.
    std::thread(ReadUntilStop, stopped).detach();
    return stopped;
}
