#include "HostText.h"

#include <objbase.h>

#include <msxml2.h>

#include "HostKitFixture.h"

namespace {

// DOMDocument of MSXML 6, which the compiler's headers do not have.
constexpr CLSID kXmlDocument = {0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};

class HostTextTest : public CHostKitTest {};

TEST_F(HostTextTest, WideTextBecomesUtf8) {
    EXPECT_EQ(ToUtf8(L"gr\u00FC\u00DFe"),
              "gr\xC3\xBC\xC3\x9F"
              "e");
    EXPECT_EQ(ToUtf8({}), "");
    EXPECT_EQ(DescribeText(nullptr), "null");
}

TEST_F(HostTextTest, AnXmlNodeIsShownAsItsText) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        CHostReference<IXMLDOMDocument> document;
        CHostReference<IXMLDOMElement> element;
        CHostReference<IXMLDOMNode> added;
        ASSERT_EQ(CoCreateInstance(kXmlDocument, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                                   reinterpret_cast<void**>(document.Receive())),
                  S_OK);
        ASSERT_EQ(document->createElement(CBstr::Make(L"restart").Get(), element.Receive()), S_OK);
        ASSERT_EQ(document->appendChild(element.Get(), added.Receive()), S_OK);

        EXPECT_EQ(DescribeValue(MakeInterface(element.Get(), VT_DISPATCH).Get()), "DISPATCH <restart/>");
        EXPECT_EQ(DescribeValue(MakeInterface(element.Get()).Get()), "UNKNOWN <restart/>");
    }
    CoUninitialize();
}

TEST_F(HostTextTest, OtherObjectsAreNotLookedInto) {
    const auto box = MakePropertyBox(m_record, {});

    EXPECT_EQ(DescribeValue(MakeInterface(box.Get()).Get()), "UNKNOWN object");
    EXPECT_EQ(DescribeValue(MakeInterface(nullptr, VT_DISPATCH).Get()), "DISPATCH null");
    EXPECT_EQ(DescribeValue(MakeScalar(VT_CY, 1).Get()), "type 6");
}

}  // namespace
