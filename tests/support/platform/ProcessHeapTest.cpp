#include "ProcessHeap.h"

#include <limits>

#include "CHresultException.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "RefusedMemory.h"

namespace {

class ProcessHeapTest : public CLeakCheckedTest {};

TEST_F(ProcessHeapTest, AnArrayIsFilledWithZeros) {
    CHeapArray<int> array(1000);
    int sum = 0;
    for (std::size_t i = 0; i < 1000; ++i) {
        sum |= array[i];
    }

    EXPECT_EQ(sum, 0);
}

TEST_F(ProcessHeapTest, AnArrayLiesInTheProcessHeap) {
    const CHeapArray<wchar_t> array(5);

    EXPECT_TRUE(HeapValidate(GetProcessHeap(), 0, array.Get()));
    EXPECT_EQ(HeapSize(GetProcessHeap(), 0, array.Get()), 5 * sizeof(wchar_t));
}

TEST_F(ProcessHeapTest, ASizeBeyondTheAddressSpaceIsOutOfMemory) {
    try {
        const CHeapArray<long long> array(std::numeric_limits<std::size_t>::max() / 4);
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), E_OUTOFMEMORY);
    }
}

TEST_F(ProcessHeapTest, ExhaustedMemoryIsThrownAsOutOfMemory) {
    const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));

    try {
        const CHeapArray<int> array(1);
        FAIL() << "nothing was thrown";
    } catch (const CHresultException& exception) {
        EXPECT_EQ(exception.GetResult(), E_OUTOFMEMORY);
    }
}

}  // namespace
