// The kinds of VARIANT that a host may hand a configuration in.

#include <array>
#include <cstring>

#include "CConfigDocumentTest.h"

namespace {

class ConfigurationKindsTest : public CConfigDocumentTest {
protected:
    // The system describes its objects to callers of IDispatch from a library of types that it loads once and keeps.
    void SetUp() override {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        {
            const Document document = MakeDocument(m_document);
            const Element element = MakeElement(m_document, L"/agent");
            static_cast<void>(Read(MakeInterface(document.Get(), VT_DISPATCH).Get()));
            static_cast<void>(Read(MakeInterface(element.Get(), VT_DISPATCH).Get()));
        }
        CoUninitialize();
        CConfigDocumentTest::SetUp();
    }

    using Bytes = std::array<BYTE, sizeof(VARIANT)>;

    static Bytes BytesOfVariant(const VARIANT& value) {
        Bytes bytes{};
        std::memcpy(bytes.data(), &value, sizeof value);
        return bytes;
    }

    /// What both functions make of the value, which has to stay as it is, byte by byte.
    static void ExpectRead(const VARIANT& value, const ReadPath& expected, const char* what) {
        const Bytes before = BytesOfVariant(value);

        EXPECT_EQ(Read(value), expected) << what;
        EXPECT_EQ(BytesOfVariant(value), before) << what;

        VARIANT content{};
        EXPECT_EQ(CRMIConfigLoader::GetConfigContent(value, &content), expected.result) << what;
        EXPECT_EQ(content.vt, expected.result == S_OK ? VT_BSTR : VT_EMPTY) << what;
        EXPECT_EQ(BytesOfVariant(value), before) << what;
        VariantClear(&content);
    }

    /// The same for a value that means no document: the loader then goes on to the policy's key.
    static void ExpectNothing(const VARIANT& value, const char* what) {
        ExpectRead(value, {E_FAIL}, what);
        EXPECT_EQ(CRMIConfigLoader::GetServerInfo(value, nullptr, nullptr, nullptr), kNotFound) << what;
    }

    static VARIANT RefersTo(VARTYPE type, void* target) {
        VARIANT value{};
        value.vt = static_cast<VARTYPE>(type | VT_BYREF);
        value.byref = target;
        return value;
    }

    const std::wstring m_document = DocumentNaming(L"x\\y");
    const ReadPath m_found{S_OK, L"x\\y"};
};

TEST_F(ConfigurationKindsTest, ATextIsADocument) {
    const CVariantValue text = MakeText(m_document);

    ExpectRead(text.Get(), m_found, "VT_BSTR");

    EXPECT_EQ(std::wstring(text.Get().bstrVal), m_document);
}

TEST_F(ConfigurationKindsTest, AReferenceToATextIsADocument) {
    CBstr text = CBstr::Make(m_document);
    BSTR target = text.Get();

    ExpectRead(RefersTo(VT_BSTR, &target), m_found, "VT_BSTR | VT_BYREF");

    EXPECT_EQ(target, text.Get());
    EXPECT_EQ(text.GetView(), m_document);
}

TEST_F(ConfigurationKindsTest, AReferenceToAValueIsWhatThatIs) {
    VARIANT text = MakeText(m_document).Detach();
    const CVariantValue owner(text);
    const Bytes before = BytesOfVariant(text);

    ExpectRead(RefersTo(VT_VARIANT, &text), m_found, "VT_VARIANT | VT_BYREF");

    EXPECT_EQ(BytesOfVariant(text), before);
    EXPECT_EQ(std::wstring(text.bstrVal), m_document);
}

TEST_F(ConfigurationKindsTest, AnElementsWholeDocumentIsSearched) {
    const std::wstring text = L"<a><b><c/></b><serverConfigRegistry>x\\y</serverConfigRegistry></a>";
    for (const wchar_t* const path : {L"/a", L"//c", L"//serverConfigRegistry"}) {
        const Element element = MakeElement(text, path);
        const CVariantValue unknown = MakeInterface(element.Get());
        const CVariantValue dispatch = MakeInterface(element.Get(), VT_DISPATCH);

        ExpectRead(unknown.Get(), m_found, "VT_UNKNOWN");
        ExpectRead(dispatch.Get(), m_found, "VT_DISPATCH");

        IUnknown* target = element.Get();
        ExpectRead(RefersTo(VT_UNKNOWN, &target), m_found, "VT_UNKNOWN | VT_BYREF");
        ExpectRead(RefersTo(VT_DISPATCH, &target), m_found, "VT_DISPATCH | VT_BYREF");
        EXPECT_EQ(target, element.Get());

        VARIANT inner = unknown.Get();
        ExpectRead(RefersTo(VT_VARIANT, &inner), m_found, "VT_VARIANT | VT_BYREF");
    }
}

TEST_F(ConfigurationKindsTest, AnElementsReferencesAreAsManyAsBefore) {
    const Element element = MakeElement(m_document, L"/agent");
    const CVariantValue unknown = MakeInterface(element.Get());
    const CVariantValue dispatch = MakeInterface(element.Get(), VT_DISPATCH);
    const auto count = [&] {
        element->AddRef();
        return element->Release();
    };
    const ULONG before = count();

    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(Read(unknown.Get()), m_found);
        ASSERT_EQ(Read(dispatch.Get()), m_found);
    }

    EXPECT_EQ(count(), before);
}

TEST_F(ConfigurationKindsTest, AnElementWithoutTheOneThatCountsFails) {
    const Element element = MakeElement(L"<a><b/></a>", L"/a");

    ExpectNothing(MakeInterface(element.Get()).Get(), "VT_UNKNOWN");
}

TEST_F(ConfigurationKindsTest, OtherObjectsAreNoElement) {
    const Document document = MakeDocument(m_document);
    Microsoft::WRL::ComPtr<IXMLDOMNode> text;
    ASSERT_EQ(document->selectSingleNode(CBstr::Make(L"//serverConfigRegistry/text()").Get(), text.GetAddressOf()),
              S_OK);
    const CHostReference<IHostServiceProvider> provider = Host().MakeProvider();

    ExpectNothing(MakeInterface(document.Get()).Get(), "the document");
    ExpectNothing(MakeInterface(document.Get(), VT_DISPATCH).Get(), "the document, VT_DISPATCH");
    ExpectNothing(MakeInterface(text.Get()).Get(), "a text node");
    ExpectNothing(MakeInterface(provider.Get()).Get(), "an object of the host's");
}

TEST_F(ConfigurationKindsTest, AnObjectThatRefusesTheElementFailsAsOneWithoutIt) {
    const CHostReference<ISystemInfo> object = MakeSystemInfo(Host().ShareRecord(), {});
    Host().Record().RefuseQuery("System", IID_IXMLDOMElement, -1);

    ExpectRead(MakeInterface(object.Get()).Get(), {E_FAIL}, "VT_UNKNOWN");
}

TEST_F(ConfigurationKindsTest, NullObjectsAndTextsAreNoDocument) {
    ExpectNothing(MakeInterface(nullptr).Get(), "VT_UNKNOWN");
    ExpectNothing(MakeInterface(nullptr, VT_DISPATCH).Get(), "VT_DISPATCH");
    ExpectNothing(MakeNullText().Get(), "VT_BSTR");

    void* null = nullptr;
    ExpectNothing(RefersTo(VT_BSTR, &null), "VT_BSTR | VT_BYREF");
    ExpectNothing(RefersTo(VT_UNKNOWN, &null), "VT_UNKNOWN | VT_BYREF");
    ExpectNothing(RefersTo(VT_DISPATCH, &null), "VT_DISPATCH | VT_BYREF");
}

TEST_F(ConfigurationKindsTest, ReferencesToNothingAreNoDocument) {
    for (const int type : std::vector<int>{VT_I2,
                                           VT_I4,
                                           VT_R8,
                                           VT_CY,
                                           VT_DATE,
                                           VT_BSTR,
                                           VT_DISPATCH,
                                           VT_ERROR,
                                           VT_BOOL,
                                           VT_VARIANT,
                                           VT_UNKNOWN,
                                           VT_DECIMAL,
                                           VT_I1,
                                           VT_UI1,
                                           VT_UI8,
                                           VT_RECORD,
                                           VT_ARRAY | VT_BSTR,
                                           VT_ARRAY | VT_VARIANT,
                                           VT_EMPTY,
                                           VT_NULL}) {
        ExpectNothing(RefersTo(static_cast<VARTYPE>(type), nullptr),
                      (std::to_string(type) + " | VT_BYREF, null").c_str());
    }
}

TEST_F(ConfigurationKindsTest, ValuesThatAreNoDocumentAreNone) {
    ExpectNothing(MakeEmpty().Get(), "VT_EMPTY");
    ExpectNothing(MakeNull().Get(), "VT_NULL");
    ExpectNothing(MakeShort(5).Get(), "VT_I2");
    ExpectNothing(MakeInt(-5).Get(), "VT_I4");
    ExpectNothing(MakeInt64(5).Get(), "VT_I8");
    ExpectNothing(MakeDouble(0.5).Get(), "VT_R8");
    ExpectNothing(MakeDate(1.5).Get(), "VT_DATE");
    ExpectNothing(MakeBool(true).Get(), "VT_BOOL");
    ExpectNothing(MakeError(E_FAIL).Get(), "VT_ERROR");
    ExpectNothing(MakeText(L"text").Get(), "VT_BSTR");
    ExpectNothing(MakeScalar(VT_RECORD, 0).Get(), "VT_RECORD");
    ExpectNothing(MakeScalar(0x0777, 0xDEAD'BEEF).Get(), "no type at all");
    ExpectNothing(MakeScalar(VT_VOID, 0).Get(), "VT_VOID");
    ExpectNothing(MakeScalar(VT_VARIANT, 0).Get(), "VT_VARIANT");

    LONG number = 5;
    ExpectNothing(RefersTo(VT_I4, &number), "VT_I4 | VT_BYREF");
    EXPECT_EQ(number, 5);
}

TEST_F(ConfigurationKindsTest, ArraysAreNoDocument) {
    for (const VARTYPE type : {VT_BSTR, VT_UI1, VT_VARIANT, VT_UNKNOWN}) {
        VARIANT array{};
        array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        array.parray = SafeArrayCreateVector(type, 0, 2);
        const CVariantValue owner(array);
        ExpectNothing(array, "VT_ARRAY");

        SAFEARRAY* target = array.parray;
        ExpectNothing(RefersTo(static_cast<VARTYPE>(VT_ARRAY | type), &target), "VT_ARRAY | VT_BYREF");
        EXPECT_EQ(target, array.parray);
    }

    VARIANT null{};
    null.vt = VT_ARRAY | VT_BSTR;
    ExpectNothing(null, "VT_ARRAY, null");
}

}  // namespace
