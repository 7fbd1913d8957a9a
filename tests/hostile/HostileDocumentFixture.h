#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <msxml2.h>
#include <objbase.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <optional>
#include <string>

#include "CBstr.h"
#include "CLeakCheckedTest.h"
#include "CRMIConfigLoader.h"

/// Fixture for many documents, with the system's MSXML.
class CHostileDocumentTest : public CLeakCheckedTest {
protected:
    using Document = Microsoft::WRL::ComPtr<IXMLDOMDocument>;

    void SetUp() override {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        DescribeNodes();
        CoUninitialize();
        CLeakCheckedTest::SetUp();
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    }
    void TearDown() override {
        CoUninitialize();
        CLeakCheckedTest::TearDown();
    }

    /// A document as a host would make it itself.
    [[nodiscard]] static Document Load(const std::wstring& text, bool& isParsed) {
        CLSID classId;
        Document document;
        VARIANT_BOOL parsed = VARIANT_FALSE;
        EXPECT_EQ(CLSIDFromProgID(L"MSXML2.DOMDocument.6.0", &classId), S_OK);
        EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                   reinterpret_cast<void**>(document.GetAddressOf())),
                  S_OK);
        isParsed = SUCCEEDED(document->loadXML(CBstr::Make(text).Get(), &parsed)) && parsed == VARIANT_TRUE;
        return document;
    }

    /// What GetConfigContent comes to, as it has to: the path of the text, in place of what stood there, or E_FAIL, and
    /// what stood there. The configuration stays as it was.
    static void ExpectContent(const VARIANT& configuration, const std::optional<std::wstring>& path) {
        const VARIANT before = configuration;
        VARIANT content{};
        content.vt = VT_BSTR;
        content.bstrVal = CBstr::Make(L"earlier").Detach();
        const BSTR earlier = content.bstrVal;

        EXPECT_EQ(CRMIConfigLoader::GetConfigContent(configuration, &content), path ? S_OK : E_FAIL);

        EXPECT_EQ(content.vt, VT_BSTR);
        EXPECT_EQ(std::wstring(ViewBstr(content.bstrVal)), path.value_or(L"earlier"));
        EXPECT_TRUE(path || content.bstrVal == earlier);
        VariantClear(&content);
        EXPECT_EQ(configuration.vt, before.vt);
        EXPECT_EQ(configuration.byref, before.byref);
    }

    static void ExpectContentOfText(const std::wstring& text, const std::optional<std::wstring>& path) {
        const CBstr owner = CBstr::Make(text);
        VARIANT configuration{};
        configuration.vt = VT_BSTR;
        configuration.bstrVal = owner.Get();
        ExpectContent(configuration, path);
        EXPECT_EQ(owner.GetView(), text);
    }

private:
    /// The system describes its objects to callers of IDispatch from a library of types, of which it loads each kind's
    /// part once and keeps it.
    static void DescribeNodes() {
        bool isParsed = false;
        const Document document = Load(L"<a>b<c/><!--d--><?e?><![CDATA[f]]></a>", isParsed);
        Microsoft::WRL::ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(document->get_documentElement(root.GetAddressOf()), S_OK);
        Describe(document.Get());
        Describe(root.Get());
        Microsoft::WRL::ComPtr<IXMLDOMNode> node;
        EXPECT_EQ(root->get_firstChild(node.GetAddressOf()), S_OK);
        while (node) {
            Describe(node.Get());
            Microsoft::WRL::ComPtr<IXMLDOMNode> next;
            static_cast<void>(node->get_nextSibling(next.GetAddressOf()));
            node = next;
        }
    }
    static void Describe(IDispatch* object) {
        VARIANT value{};
        value.vt = VT_DISPATCH;
        value.pdispVal = object;
        VARIANT text{};
        static_cast<void>(VariantChangeType(&text, &value, 0, VT_BSTR));
        VariantClear(&text);
    }
};
