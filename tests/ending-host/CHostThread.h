#pragma once

#include <windows.h>

#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <utility>

/// A thread of the host's that does its work, says so, and lives on until it is told to end; one that is not told so,
/// to the end of the process.
class CHostThread {
public:
    /// Returns when the work is done.
    explicit CHostThread(std::function<void()> work) {
        std::promise<void> done;
        std::future<void> isDone = done.get_future();
        m_thread = std::thread([work = std::move(work), mayEnd = m_mayEnd->get_future(), keepsPromise = m_mayEnd,
                                done = std::move(done)]() mutable {
            work();
            done.set_value();
            mayEnd.wait();
        });
        isDone.wait();
    }
    ~CHostThread() {
        if (m_thread.joinable()) {
            m_thread.detach();
        }
    }

    CHostThread(const CHostThread&) = delete;
    CHostThread& operator=(const CHostThread&) = delete;

    /// Lets the thread end and waits for that.
    void End() {
        m_mayEnd->set_value();
        m_thread.join();
    }

private:
    std::shared_ptr<std::promise<void>> m_mayEnd = std::make_shared<std::promise<void>>();
    std::thread m_thread;
};
