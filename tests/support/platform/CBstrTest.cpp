#include "CBstr.h"

#include <comdef.h>

#include <limits>

#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "RefusedMemory.h"

namespace {

using namespace std::string_view_literals;

class CBstrTest : public CLeakCheckedTest {};

TEST_F(CBstrTest, HoldsATextWithItsZeros) {
    const CBstr text = CBstr::Make(L"a\0b"sv);

    EXPECT_EQ(text.GetView(), L"a\0b"sv);
    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 1);
}

TEST_F(CBstrTest, NullIsAnEmptyText) {
    const CBstr text;

    EXPECT_TRUE(text.GetView().empty());
}

TEST_F(CBstrTest, AnEmptyTextIsNotNull) {
    const CBstr text = CBstr::Make(L"");

    EXPECT_NE(text.Get(), nullptr);
}

TEST_F(CBstrTest, AReceivedTextIsFreed) {
    {
        CBstr text;
        *text.Receive() = SysAllocString(L"from the host");
        EXPECT_EQ(text.GetView(), L"from the host");
    }

    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, 0);
}

TEST_F(CBstrTest, ExhaustedMemoryIsThrownAsAComError) {
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseText));

    try {
        const CBstr text = CBstr::Make(L"text");
        FAIL() << "nothing was thrown";
    } catch (const _com_error& error) {
        EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
    }
}

}  // namespace
