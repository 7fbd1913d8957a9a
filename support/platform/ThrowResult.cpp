#include "ThrowResult.h"

HRESULT LastErrorResult() noexcept {
    const auto code = static_cast<LONG>(GetLastError());
    return HRESULT_FROM_WIN32(code);
}

void ThrowResult(HRESULT result) {
    throw CHresultException(result);
}

void ThrowLastError() {
    ThrowResult(LastErrorResult());
}
