#include "CConfigDocumentTest.h"
#include "CImportHook.h"

namespace {

class ConfigContentTest : public CConfigDocumentTest {
protected:
    [[nodiscard]] static HRESULT GetContent(const std::wstring& document, VARIANT* content) {
        return CRMIConfigLoader::GetConfigContent(MakeText(document).Get(), content);
    }
};

TEST_F(ConfigContentTest, TheElementsTextIsGivenAsATextOfTheCallers) {
    VARIANT content{};

    ASSERT_EQ(GetContent(DocumentNaming(L"HKEY_CURRENT_USER\\Software\\X"), &content), S_OK);

    const CVariantValue owner(content);
    ASSERT_EQ(content.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(content.bstrVal, SysStringLen(content.bstrVal)), L"HKEY_CURRENT_USER\\Software\\X");
    EXPECT_EQ(SysStringByteLen(content.bstrVal), 28 * sizeof(wchar_t));
}

TEST_F(ConfigContentTest, AnElementWithoutATextGivesAnEmptyText) {
    VARIANT content{};

    ASSERT_EQ(GetContent(L"<serverConfigRegistry/>", &content), S_OK);

    const CVariantValue owner(content);
    ASSERT_EQ(content.vt, VT_BSTR);
    EXPECT_NE(content.bstrVal, nullptr);
    EXPECT_EQ(SysStringByteLen(content.bstrVal), 0U);
}

TEST_F(ConfigContentTest, OddCharactersComeThrough) {
    VARIANT content{};

    ASSERT_EQ(GetContent(DocumentNaming(L"\u00e9\u4e2d\xD83D\xDE00&#9;%s\\&amp;"), &content), S_OK);

    const CVariantValue owner(content);
    EXPECT_EQ(std::wstring(content.bstrVal, SysStringLen(content.bstrVal)), L"\u00e9\u4e2d\xD83D\xDE00\t%s\\&");
}

TEST_F(ConfigContentTest, WhatTheContentHeldIsCleared) {
    CVariantValue earlier[] = {MakeText(L"earlier"), MakeInt(5), MakeNull(),
                               MakeInterface(Host().MakeProvider().Get())};
    for (CVariantValue& value : earlier) {
        VARIANT content = value.Detach();

        EXPECT_EQ(GetContent(DocumentNaming(L"x"), &content), S_OK);

        const CVariantValue owner(content);
        ASSERT_EQ(content.vt, VT_BSTR);
        EXPECT_EQ(std::wstring(content.bstrVal), L"x");
    }
}

TEST_F(ConfigContentTest, AFailureLeavesTheContent) {
    VARIANT content = MakeText(L"earlier").Detach();
    const CVariantValue owner(content);
    const BSTR before = content.bstrVal;
    for (const wchar_t* const document : {L"<a/>", L"", L"no document"}) {
        EXPECT_EQ(GetContent(document, &content), E_FAIL);

        EXPECT_EQ(content.vt, VT_BSTR);
        EXPECT_EQ(content.bstrVal, before);
        EXPECT_EQ(std::wstring(content.bstrVal), L"earlier");
    }
}

TEST_F(ConfigContentTest, WithoutAnAddressForTheContentNothingIsDone) {
    EXPECT_EQ(GetContent(DocumentNaming(L"x"), nullptr), E_POINTER);
    EXPECT_EQ(GetContent(L"", nullptr), E_POINTER);
}

TEST_F(ConfigContentTest, NeitherTheRegistryNorTheHostIsAsked) {
    VARIANT content{};
    SetLegacyList(L"u|s|c");

    EXPECT_EQ(GetContent(DocumentNaming(L"x"), &content), S_OK);
    const CVariantValue owner(content);
    EXPECT_EQ(GetContent(L"no document", &content), E_FAIL);

    EXPECT_EQ(Host().Record().GetCallTexts(), std::vector<std::string>{});
    EXPECT_EQ(Logged(), Texts{});
}

TEST_F(ConfigContentTest, TheInputMayStandWhereTheContentGoes) {
    VARIANT value = MakeText(DocumentNaming(L"x")).Detach();

    EXPECT_EQ(CRMIConfigLoader::GetConfigContent(value, &value), S_OK);

    const CVariantValue owner(value);
    EXPECT_EQ(std::wstring(value.bstrVal), L"x");
}

decltype(&VariantCopy) g_copyVariant;
VARIANT* g_content = nullptr;
HRESULT WINAPI RefuseTheCopyOfTheContent(VARIANT* target, const VARIANT* source) {
    return target == g_content ? DISP_E_ARRAYISLOCKED : g_copyVariant(target, const_cast<VARIANT*>(source));
}

TEST_F(ConfigContentTest, ACopyThatFailsIsTheResultAndLeavesTheContent) {
    VARIANT content = MakeText(L"earlier").Detach();
    const CVariantValue owner(content);
    g_content = &content;
    g_copyVariant =
        reinterpret_cast<decltype(g_copyVariant)>(*FindImportSlot(GetModuleHandleW(nullptr), "VariantCopy"));
    const CImportHook hook(GetModuleHandleW(nullptr), "VariantCopy",
                           reinterpret_cast<void*>(&RefuseTheCopyOfTheContent));

    EXPECT_EQ(GetContent(DocumentNaming(L"x"), &content), DISP_E_ARRAYISLOCKED);

    EXPECT_EQ(content.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(content.bstrVal), L"earlier");
}

BSTR WINAPI RefuseBytes(const char*, UINT) {
    return nullptr;
}

TEST_F(ConfigContentTest, ATextThatFindsNoMemoryIsAnErrorInTheContent) {
    VARIANT content = MakeText(L"earlier").Detach();
    const CImportHook hook(GetModuleHandleW(nullptr), "SysAllocStringByteLen", AddressOf(&RefuseBytes));

    EXPECT_EQ(GetContent(DocumentNaming(L"x"), &content), S_OK);

    EXPECT_EQ(content.vt, VT_ERROR);
    EXPECT_EQ(content.scode, E_OUTOFMEMORY);
}

}  // namespace
