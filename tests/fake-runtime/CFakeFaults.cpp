#include "CFakeFaults.h"

bool CFakeFaults::Order(std::string_view function, long nth, long times, const FakeFault& fault) {
    const std::size_t place = FindFunction(function);
    if (place == kFunctionCount && function != "*") {
        return false;
    }
    m_orders.push_back(FaultOrder{place, nth - 1, times, fault});
    return true;
}

const FakeFault* CFakeFaults::Take(const FakeFunction& function) noexcept {
    const FakeFault* fault = nullptr;
    for (FaultOrder& order : m_orders) {
        if (!order.IsAbout(function) || !order.CountCall()) {
            continue;
        }
        ++order.fired;
        order.failedFunction = function.name;
        if (!fault) {
            fault = &order.fault;
        }
    }
    return fault;
}

bool CFakeFaults::FaultOrder::IsAbout(const FakeFunction& called) const noexcept {
    if (function == kFunctionCount) {
        return called.isInTable && !called.mustSucceed;
    }
    return function == called.index;
}

bool CFakeFaults::FaultOrder::CountCall() noexcept {
    if (callsBefore > 0) {
        --callsBefore;
        return false;
    }
    if (timesLeft == 0) {
        return false;
    }
    if (timesLeft > 0) {
        --timesLeft;
    }
    return true;
}
