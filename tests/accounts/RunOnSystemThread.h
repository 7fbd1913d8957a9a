#pragma once

#include <windows.h>

#include <stdexcept>

/// Runs `work`, which must not throw, on a thread of the system's own making, and waits for its end. The C++ library's
/// threads are not for accounts: where two of them first meet at its own lock, it makes an event that it keeps.
template <typename Work>
void RunOnSystemThread(const Work& work) {
    const auto run = [](void* argument) -> DWORD {
        (*static_cast<const Work*>(argument))();
        return 0;
    };
    HANDLE const thread = CreateThread(nullptr, 0, run, const_cast<Work*>(&work), 0, nullptr);
    if (!thread) {
        throw std::runtime_error("the system makes no thread");
    }
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
