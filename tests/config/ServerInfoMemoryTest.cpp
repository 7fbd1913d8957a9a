// Where memory runs out, or a call of the host's fails: what becomes of the outputs. That each such call leaves nothing
// behind is proved in tests/faults.

#include <comdef.h>

#include "CConfigDocumentTest.h"
#include "CHostFaults.h"
#include "CImportHook.h"

namespace {

// One of the functions that this program takes memory with refuses its n-th call.
long g_callsToRefusal = 0;

bool IsRefused() noexcept {
    return g_callsToRefusal != 0 && --g_callsToRefusal == 0;
}

decltype(&SysAllocStringLen) g_allocText;
BSTR WINAPI RefuseText(const OLECHAR* text, UINT length) {
    return IsRefused() ? nullptr : g_allocText(text, length);
}
decltype(&VariantCopy) g_copyVariant;
HRESULT WINAPI RefuseCopy(VARIANT* target, const VARIANT* source) {
    return IsRefused() ? E_OUTOFMEMORY : g_copyVariant(target, const_cast<VARIANT*>(source));
}

class ServerInfoMemoryTest : public CConfigDocumentTest {
protected:
    void SetUp() override {
        CConfigDocumentTest::SetUp();
        SetLegacyList(L"list's URL|list's certificate");
        SetPolicy(L"MessageServerURL", L"policy's URL");
        SetPolicy(L"AdapterCertificate", L"policy's certificate");
        m_document = MakeText(DocumentNaming(DocumentKey()));
    }

    void TearDown() override {
        m_document = CVariantValue();
        CConfigDocumentTest::TearDown();
    }

    CVariantValue m_document;
};

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

TEST_F(ServerInfoMemoryTest, WhereOneCallOfTheHostsFailsAnotherPlaceHasTheServer) {
    for (const HRESULT failure : {E_ACCESSDENIED, kTextless}) {
        CHostFaults faults(Host(), failure);

        const FaultRoundCounts counts = FailEachCall(faults, [&](CFaultRound& round) {
            ServerInfo info{E_UNEXPECTED};
            EXPECT_FALSE(round.Run([&] { return (info = Load(m_document)).result; }).IsThrown()) << round;

            EXPECT_TRUE(round.IsForEver() || (info.result == S_OK && info.secondValue == kUniqueId)) << round << info;
            EXPECT_TRUE(round.HasFired() || info.url == L"list's URL") << round << info;
        });

        EXPECT_GT(counts.once, 5);
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
