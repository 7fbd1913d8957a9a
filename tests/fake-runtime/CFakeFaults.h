#pragma once

#include <jni.h>

#include <string_view>
#include <vector>

#include "FakeFunction.h"
#include "IFakeRuntime.h"

/// How a call is to fail.
struct FakeFault {
    FakeFaultMode mode;
    jint errorCode;
};

/// The orders to fail.
class CFakeFaults {
public:
    /// See IFakeRuntime::Fail. False when there is no function of this name.
    [[nodiscard]] bool Order(std::string_view function, long nth, long times, const FakeFault& fault);
    void Clear() noexcept { m_orders.clear(); }

    /// Counts a call against every order. The fault of the first order whose turn it is; null when there is none.
    [[nodiscard]] const FakeFault* Take(const FakeFunction& function) noexcept;

    [[nodiscard]] long GetFired() const noexcept { return m_orders.empty() ? 0 : m_orders.back().fired; }
    [[nodiscard]] const char* GetFailedFunction() const noexcept {
        return m_orders.empty() ? nullptr : m_orders.back().failedFunction;
    }

private:
    struct FaultOrder {
        std::size_t function;  // kFunctionCount for every one that may fail
        long callsBefore;
        long timesLeft;  // negative for ever
        FakeFault fault;
        long fired = 0;
        const char* failedFunction = nullptr;

        [[nodiscard]] bool IsAbout(const FakeFunction& called) const noexcept;
        [[nodiscard]] bool CountCall() noexcept;
    };

    std::vector<FaultOrder> m_orders;
};
