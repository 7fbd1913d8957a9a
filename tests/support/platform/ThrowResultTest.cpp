#include "ThrowResult.h"

#include "CLeakCheckedTest.h"

namespace {

class ThrowResultTest : public CLeakCheckedTest {};

HRESULT ThrownBy(void (*thrower)()) {
    try {
        thrower();
    } catch (const CHresultException& exception) {
        return exception.GetResult();
    }
    return S_FALSE;
}

TEST_F(ThrowResultTest, APositiveLastErrorBecomesAWin32Result) {
    SetLastError(ERROR_INVALID_DATA);

    EXPECT_EQ(LastErrorResult(), static_cast<HRESULT>(0x8007000D));
}

TEST_F(ThrowResultTest, OnlyTheLowSixteenBitsOfALastErrorAreKept) {
    SetLastError(0x00120005);

    EXPECT_EQ(LastErrorResult(), static_cast<HRESULT>(0x80070005));
}

TEST_F(ThrowResultTest, ALastErrorOfZeroStaysZero) {
    SetLastError(ERROR_SUCCESS);

    EXPECT_EQ(LastErrorResult(), S_OK);
}

TEST_F(ThrowResultTest, ANegativeLastErrorStaysAsItIs) {
    SetLastError(static_cast<DWORD>(E_OUTOFMEMORY));

    EXPECT_EQ(LastErrorResult(), E_OUTOFMEMORY);
}

TEST_F(ThrowResultTest, ThrowResultCarriesTheResult) {
    EXPECT_EQ(ThrownBy([] { ThrowResult(E_INVALIDARG); }), E_INVALIDARG);
}

TEST_F(ThrowResultTest, ThrowLastErrorCarriesTheLastError) {
    SetLastError(ERROR_ACCESS_DENIED);

    EXPECT_EQ(ThrownBy([] { ThrowLastError(); }), static_cast<HRESULT>(0x80070005));
}

}  // namespace
