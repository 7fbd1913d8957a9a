#include <new>

#include "CAllocationFault.h"
#include "CCallbackRegistry.h"
#include "CHresultException.h"
#include "CImportHook.h"
#include "CallbackRegistryFixture.h"
#include "RefusedMemory.h"

namespace {

/// Texts that do not fit into a string object itself, so that each copy needs memory.
ServerConfig MakeLongServer(wchar_t filler) {
    return {std::wstring(100, filler), std::wstring(100, filler), std::wstring(100, filler)};
}

/// With what is in the registry already, and what must be heard then.
class CCallbackRegistryMemoryTest : public CCallbackRegistryFixture {
protected:
    /// Registers the callback with each of the allocations failing in its turn, calling `check` after each failure,
    /// and then once without.
    template <typename Check>
    void RegisterInScarcity(const ServerConfig& server, std::size_t index, const Check& check) {
        long failures = 0;
        while (!TryRegister(server, index, failures + 1)) {
            ++failures;
            EXPECT_EQ(References(index), 0) << failures;
            check();
        }
        EXPECT_GT(failures, 0);
        EXPECT_EQ(References(index), 1);
    }

private:
    bool TryRegister(const ServerConfig& server, std::size_t index, long nth) {
        const CAllocationFault fault(nth);
        try {
            Register(server, index);
            EXPECT_FALSE(fault.HasFired()) << "a failure that nobody hears of";
            return true;
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(fault.HasFired());
            return false;
        }
    }
};

TEST_F(CCallbackRegistryMemoryTest, AFirstRegistrationThatFailsLeavesNoServer) {
    RegisterInScarcity(MakeLongServer(L'a'), 0, [&] { EXPECT_EQ(Call(MakeLongServer(L'a')), E_FAIL); });

    EXPECT_EQ(Call(MakeLongServer(L'a')), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryMemoryTest, ARegistrationThatFailsLeavesTheServersOtherCallbacks) {
    Register(MakeLongServer(L'a'), 1);

    RegisterInScarcity(MakeLongServer(L'a'), 0, [&] {
        EXPECT_EQ(Call(MakeLongServer(L'a')), S_OK);
        EXPECT_EQ(TakeHeard(), Heard{1});
    });

    EXPECT_EQ(Call(MakeLongServer(L'a')), S_OK);
    EXPECT_EQ(TakeHeard(), (Heard{0, 1}));
}

TEST_F(CCallbackRegistryMemoryTest, ARegistrationThatFailsLeavesTheOnlyServerTheOnlyOne) {
    Register(MakeLongServer(L'a'), 1);

    RegisterInScarcity(MakeLongServer(L'b'), 0, [&] {
        EXPECT_EQ(Call(MakeLongServer(L'b')), S_OK);
        EXPECT_EQ(TakeHeard(), Heard{1});
    });

    EXPECT_EQ(Call(MakeLongServer(L'b')), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

TEST_F(CCallbackRegistryMemoryTest, ATextThatCannotBeCopiedThrowsAndReachesNobody) {
    Register(kServer, 0);
    HRESULT result = S_OK;
    {
        const std::wstring text(128, L'x');
        const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseMemory));
        try {
            static_cast<void>(Call(kServer, text.c_str()));
        } catch (const CHresultException& failure) {
            result = failure.GetResult();
        }
    }

    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_EQ(TakeHeard(), Heard{});
    EXPECT_EQ(References(0), 1);
    EXPECT_EQ(Call(kServer), S_OK);
    EXPECT_EQ(TakeHeard(), Heard{0});
}

}  // namespace
