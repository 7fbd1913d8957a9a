#pragma once

#include <thread>

/// Runs `work` on a thread of its own and waits for its end.
template <typename Work>
void RunOnNewThread(const Work& work) {
    std::thread(work).join();
}
