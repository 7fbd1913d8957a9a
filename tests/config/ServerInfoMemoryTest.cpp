// Memory that runs out, and calls of the host's that fail, at every place where they can.

#include <comdef.h>

#include <new>

#include "CAllocationFault.h"
#include "CConfigDocumentTest.h"
#include "CHresultException.h"
#include "CImportHook.h"

namespace {

// One of the functions that this program takes memory with refuses its n-th call.
long g_callsToRefusal = 0;
bool g_hasRefused = false;

bool IsRefused() noexcept {
    if (g_callsToRefusal == 0 || --g_callsToRefusal != 0) {
        return false;
    }
    g_hasRefused = true;
    return true;
}

decltype(&SysAllocStringLen) g_allocText;
BSTR WINAPI RefuseText(const OLECHAR* text, UINT length) {
    return IsRefused() ? nullptr : g_allocText(text, length);
}
decltype(&SafeArrayCreateVector) g_createArray;
SAFEARRAY* WINAPI RefuseArray(VARTYPE type, LONG lowerBound, ULONG count) {
    return IsRefused() ? nullptr : g_createArray(type, lowerBound, count);
}
decltype(&HeapAlloc) g_allocBlock;
void* WINAPI RefuseBlock(HANDLE heap, DWORD flags, SIZE_T bytes) {
    return IsRefused() ? nullptr : g_allocBlock(heap, flags, bytes);
}
decltype(&VariantCopy) g_copyVariant;
HRESULT WINAPI RefuseCopy(VARIANT* target, const VARIANT* source) {
    return IsRefused() ? E_OUTOFMEMORY : g_copyVariant(target, const_cast<VARIANT*>(source));
}

class ServerInfoMemoryTest : public CConfigDocumentTest {
protected:
    static constexpr long kMostRounds = 2'000;

    void SetUp() override {
        CConfigDocumentTest::SetUp();
        // A list that fails late, a document's key with texts of every kind, and a policy's key that does it.
        SetLegacyList(L"list's URL|list's certificate");
        SetDocumentServer(L"document's URL", L"");
        CAgentRegistry::SetBytes(DocumentKey(), L"AdapterCertificate", REG_MULTI_SZ, BytesOf(m_twoTexts));
        CAgentRegistry::SetBytes(DocumentKey(), L"Number", REG_DWORD, {1, 0, 0, 0});
        SetPolicy(L"MessageServerURL", L"policy's URL");
        SetPolicy(L"AdapterCertificate", L"policy's certificate");
        m_document = MakeText(DocumentNaming(DocumentKey()));
    }

    void TearDown() override {
        m_document = CVariantValue();
        CConfigDocumentTest::TearDown();
    }

    /// What a call that goes by way of all places comes to: the unique id is refused to the first two of them.
    [[nodiscard]] static ServerInfo Complete() { return {S_OK, L"policy's URL", kUniqueId, L"policy's certificate"}; }
    void RefuseTheUniqueIdTwice() {
        Host().Record().ClearFaults();
        Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_ABORT, 2);
    }

    /// Calls the loader with the 1st, 2nd, 3rd ... taking of memory refused, until a round runs without a refusal.
    /// @param loadRefused makes the call of one round, by LoadRefused; whether something was refused
    /// @return how many rounds had a refusal
    template <typename LoadOnce>
    long RefuseEach(const LoadOnce& loadRefused) {
        long round = 1;
        RefuseTheUniqueIdTwice();
        while (round < kMostRounds && loadRefused(round)) {
            RefuseTheUniqueIdTwice();
            EXPECT_EQ(Load(m_document), Complete()) << round << ": the next call is as any other";
            RefuseTheUniqueIdTwice();
            ++round;
        }
        EXPECT_LT(round, kMostRounds) << "it never comes to its end";
        return round - 1;
    }

    /// One call, from which exhausted memory may leave as an exception; whatever else it comes to has to be a result
    /// of the host's, or the whole answer.
    void LoadRefused(long round) {
        HRESULT result = E_UNEXPECTED;
        bool hasId = false;
        try {
            const ServerInfo info = Load(m_document);
            result = info.result;
            hasId = info.secondValue == kUniqueId;
        } catch (const _com_error& failure) {
            result = failure.Error();
        } catch (const CHresultException& failure) {
            result = failure.GetResult();
        } catch (const std::bad_alloc&) {
            result = E_OUTOFMEMORY;
        }
        EXPECT_TRUE(result == E_OUTOFMEMORY || result == E_ABORT || (result == S_OK && hasId))
            << round << ": " << std::hex << result;
    }

    template <typename Function>
    long RefuseEachCallOf(const char* name, Function& original, Function replacement) {
        return RefuseEach([&](long round) {
            original = reinterpret_cast<Function>(*FindImportSlot(GetModuleHandleW(nullptr), name));
            const CImportHook hook(GetModuleHandleW(nullptr), name, reinterpret_cast<void*>(replacement));
            g_callsToRefusal = round;
            g_hasRefused = false;
            LoadRefused(round);
            g_callsToRefusal = 0;
            return g_hasRefused;
        });
    }

    CVariantValue m_document;

private:
    const std::wstring m_twoTexts{L"one\0two\0", 8};
};

TEST_F(ServerInfoMemoryTest, ATextThatFindsNoMemoryLeavesNothingBehind) {
    EXPECT_GT(RefuseEachCallOf("SysAllocStringLen", g_allocText, &RefuseText), 10);
}

TEST_F(ServerInfoMemoryTest, AnArrayThatFindsNoMemoryLeavesNothingBehind) {
    EXPECT_EQ(RefuseEachCallOf("SafeArrayCreateVector", g_createArray, &RefuseArray), 1);
}

TEST_F(ServerInfoMemoryTest, ABlockThatFindsNoMemoryLeavesNothingBehind) {
    EXPECT_GT(RefuseEachCallOf("HeapAlloc", g_allocBlock, &RefuseBlock), 3);
}

TEST_F(ServerInfoMemoryTest, AnAllocationThatFailsLeavesNothingBehind) {
    EXPECT_GT(RefuseEach([&](long round) {
                  const CAllocationFault fault(round);
                  LoadRefused(round);
                  return fault.HasFired();
              }),
              10);
}

BSTR WINAPI RefuseEveryText(const OLECHAR*, UINT) {
    return nullptr;
}

TEST_F(ServerInfoMemoryTest, AnOutputThatFindsNoMemoryIsThrownAsComsError) {
    SetLegacyList(L"u|s|c");
    CReceivedText texts[3];
    Host().Services().SetResult(IHostLogger::kId, E_FAIL);
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseEveryText));

    HRESULT thrown = S_OK;
    try {
        static_cast<void>(CRMIConfigLoader::GetServerInfo(m_document.Get(), texts[0].Receive(), texts[1].Receive(),
                                                          texts[2].Receive()));
    } catch (const _com_error& failure) {
        thrown = failure.Error();
    }

    EXPECT_EQ(thrown, E_OUTOFMEMORY);
    EXPECT_EQ(texts[0].Get(), ServerInfo::kUntouched);
}

TEST_F(ServerInfoMemoryTest, WhatWasWrittenBeforeTheMemoryRanOutIsTheCallers) {
    SetLegacyList(L"u|s|c");
    CReceivedText texts[3];
    Host().Services().SetResult(IHostLogger::kId, E_FAIL);
    g_allocText =
        reinterpret_cast<decltype(g_allocText)>(*FindImportSlot(GetModuleHandleW(nullptr), "SysAllocStringLen"));
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringLen", AddressOf(&RefuseText));

    g_callsToRefusal = 2;
    EXPECT_THROW(static_cast<void>(CRMIConfigLoader::GetServerInfo(m_document.Get(), texts[0].Receive(),
                                                                   texts[1].Receive(), texts[2].Receive())),
                 _com_error);
    g_callsToRefusal = 0;

    EXPECT_EQ(texts[0].Get(), L"u");
    EXPECT_EQ(texts[1].Get(), ServerInfo::kUntouched);
    EXPECT_EQ(texts[2].Get(), ServerInfo::kUntouched);
}

TEST_F(ServerInfoMemoryTest, EachCallOfTheHostsMayFail) {
    for (const HRESULT failure : {E_ACCESSDENIED, kTextless}) {
        for (long nth = 1;; ++nth) {
            Host().Record().ClearFaults();
            Host().Record().Fail("*", nth, failure);
            const long before = Host().Record().CountFiredFaults();

            const ServerInfo info = Load(m_document);

            if (Host().Record().CountFiredFaults() == before) {
                EXPECT_EQ(info, (ServerInfo{S_OK, L"list's URL", kUniqueId, L"list's certificate"}));
                EXPECT_GT(nth, 5);
                break;
            }
            EXPECT_EQ(info.result, S_OK) << nth << ": another place has it, too";
            EXPECT_TRUE(info.secondValue == kUniqueId) << nth << info;
        }
    }
}

TEST_F(ServerInfoMemoryTest, ADocumentThatCannotBeCopiedIsNone) {
    g_copyVariant =
        reinterpret_cast<decltype(g_copyVariant)>(*FindImportSlot(GetModuleHandleW(nullptr), "VariantCopy"));
    const CImportHook hook(GetModuleHandleW(nullptr), "VariantCopy", reinterpret_cast<void*>(&RefuseCopy));

    g_callsToRefusal = 1;
    EXPECT_EQ(Read(m_document.Get()), ReadPath{E_FAIL}) << "as an object it is none";

    const Element element = MakeElement(DocumentNaming(L"x"), L"/agent");
    VARIANT unknown{};
    unknown.vt = VT_UNKNOWN;
    unknown.punkVal = element.Get();
    g_callsToRefusal = 2;
    EXPECT_EQ(Read(unknown), ReadPath{E_FAIL}) << "as a text it is none";
    g_callsToRefusal = 0;
    EXPECT_EQ(Read(unknown), (ReadPath{S_OK, L"x"}));
}

}  // namespace
