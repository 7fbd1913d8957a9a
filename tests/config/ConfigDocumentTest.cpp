// Which text a configuration document has for the loader, with the system's own MSXML.

#include "ConfigDocument.h"

#include "CConfigDocumentTest.h"

namespace {

class ConfigDocumentTest : public CConfigDocumentTest {};

struct Case {
    const char* what;
    std::wstring document;
    ReadPath expected;
};

void ExpectAll(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(ReadText(c.document), c.expected) << c.what;
    }
}

TEST_F(ConfigDocumentTest, TheElementsTextIsReadWhereverItIs) {
    ExpectAll({
        {"a child", L"<a><serverConfigRegistry>x\\y</serverConfigRegistry></a>", {S_OK, L"x\\y"}},
        {"deep", L"<a><b/><b><c><serverConfigRegistry>x</serverConfigRegistry></c></b></a>", {S_OK, L"x"}},
        {"the document's own", L"<serverConfigRegistry>x</serverConfigRegistry>", {S_OK, L"x"}},
        {"with attributes", L"<a><serverConfigRegistry b='c'>x</serverConfigRegistry></a>", {S_OK, L"x"}},
        {"behind a comment",
         L"<!-- <serverConfigRegistry/> --><a><serverConfigRegistry>x</serverConfigRegistry></a>",
         {S_OK, L"x"}},
        {"with a declaration",
         L"<?xml version=\"1.0\"?><a><serverConfigRegistry>x</serverConfigRegistry></a>",
         {S_OK, L"x"}},
    });
}

TEST_F(ConfigDocumentTest, OfSeveralTheFirstInTheDocumentsOrderIsRead) {
    ExpectAll({
        {"side by side",
         L"<a><serverConfigRegistry>x</serverConfigRegistry><serverConfigRegistry>y</serverConfigRegistry></a>",
         {S_OK, L"x"}},
        {"deeper first",
         L"<a><b><c><serverConfigRegistry>x</serverConfigRegistry></c></b>"
         L"<serverConfigRegistry>y</serverConfigRegistry></a>",
         {S_OK, L"x"}},
        {"one in the other, all text",
         L"<serverConfigRegistry>x<serverConfigRegistry>y</serverConfigRegistry></serverConfigRegistry>",
         {S_OK, L"xy"}},
        {"the first is empty",
         L"<a><serverConfigRegistry/><serverConfigRegistry>y</serverConfigRegistry></a>",
         {S_OK, L""}},
    });
}

TEST_F(ConfigDocumentTest, TheTextIsAllTextInTheElement) {
    ExpectAll({
        {"with children", L"<serverConfigRegistry>a<b>c<d>e</d></b>f</serverConfigRegistry>", {S_OK, L"acef"}},
        {"attributes only", L"<a><serverConfigRegistry path='x'/></a>", {S_OK, L""}},
        {"empty", L"<a><serverConfigRegistry></serverConfigRegistry></a>", {S_OK, L""}},
        {"a comment", L"<serverConfigRegistry>x<!-- y -->z</serverConfigRegistry>", {S_OK, L"xz"}},
        {"a comment alone", L"<serverConfigRegistry><!-- y --></serverConfigRegistry>", {S_OK, L""}},
        {"CDATA", L"<serverConfigRegistry><![CDATA[a<b>&c;]]></serverConfigRegistry>", {S_OK, L"a<b>&c;"}},
        {"CDATA between", L"<serverConfigRegistry>x<![CDATA[<]]>y</serverConfigRegistry>", {S_OK, L"x<y"}},
        {"references",
         L"<serverConfigRegistry>&lt;&amp;&gt;&#x4E2D;&#233;</serverConfigRegistry>",
         {S_OK, L"<&>\u4e2d\u00e9"}},
        {"other scripts",
         L"<serverConfigRegistry>\u00e9\u4e2d\xD83D\xDE00</serverConfigRegistry>",
         {S_OK, L"\u00e9\u4e2d\xD83D\xDE00"}},
        {"an instruction", L"<serverConfigRegistry>x<?y z?></serverConfigRegistry>", {S_OK, L"x"}},
    });
}

TEST_F(ConfigDocumentTest, ADocumentWithoutTheElementFails) {
    ExpectAll({
        {"none", L"<a><b/></a>", {E_FAIL}},
        {"another case", L"<a><ServerConfigRegistry>x</ServerConfigRegistry></a>", {E_FAIL}},
        {"longer", L"<a><serverConfigRegistryPath>x</serverConfigRegistryPath></a>", {E_FAIL}},
        {"an attribute", L"<a serverConfigRegistry='x'/>", {E_FAIL}},
        {"a text", L"<a>serverConfigRegistry</a>", {E_FAIL}},
        {"an instruction", L"<a><?serverConfigRegistry x?></a>", {E_FAIL}},
    });
}

TEST_F(ConfigDocumentTest, AnElementOfANamespaceIsAnother) {
    ExpectAll({
        {"prefixed", L"<a xmlns:p='u'><p:serverConfigRegistry>x</p:serverConfigRegistry></a>", {E_FAIL}},
        {"by default", L"<a xmlns='u'><serverConfigRegistry>x</serverConfigRegistry></a>", {E_FAIL}},
        {"beside one of none",
         L"<a xmlns:p='u'><p:serverConfigRegistry>x</p:serverConfigRegistry>"
         L"<serverConfigRegistry>y</serverConfigRegistry></a>",
         {S_OK, L"y"}},
        {"with attributes of one",
         L"<a xmlns:p='u'><serverConfigRegistry p:b='c'>x</serverConfigRegistry></a>",
         {S_OK, L"x"}},
        {"inside of one", L"<a xmlns='u'><serverConfigRegistry xmlns=''>x</serverConfigRegistry></a>", {S_OK, L"x"}},
    });
}

TEST_F(ConfigDocumentTest, WhatIsNoDocumentFails) {
    ExpectAll({
        {"nothing", L"", {E_FAIL}},
        {"blanks", L"  \r\n", {E_FAIL}},
        {"a text", L"serverConfigRegistry", {E_FAIL}},
        {"a path", L"HKEY_LOCAL_MACHINE\\Software", {E_FAIL}},
        {"not closed", L"<a><serverConfigRegistry>x</serverConfigRegistry>", {E_FAIL}},
        {"closed wrongly", L"<a><serverConfigRegistry>x</a></serverConfigRegistry>", {E_FAIL}},
        {"two roots", L"<serverConfigRegistry>x</serverConfigRegistry><b/>", {E_FAIL}},
        {"an unknown entity", L"<serverConfigRegistry>&x;</serverConfigRegistry>", {E_FAIL}},
        {"a control character", L"<serverConfigRegistry>\x01</serverConfigRegistry>", {E_FAIL}},
        {"half a pair", L"<serverConfigRegistry>\xD83D</serverConfigRegistry>", {E_FAIL}},
        {"a declaration not at the start",
         L" <?xml version='1.0'?><serverConfigRegistry>x</serverConfigRegistry>",
         {E_FAIL}},
    });
}

TEST_F(ConfigDocumentTest, TheDeclarationsEncodingIsNotThatOfAText) {
    for (const std::wstring encoding : {L"UTF-16", L"UTF-8", L"utf-8"}) {
        EXPECT_EQ(ReadText(L"<?xml version=\"1.0\" encoding=\"" + encoding +
                           L"\"?><serverConfigRegistry>\u00e9\u4e2d</serverConfigRegistry>"),
                  (ReadPath{S_OK, L"\u00e9\u4e2d"}))
            << testing::PrintToString(encoding);
    }
}

TEST_F(ConfigDocumentTest, TenMegabytesAreReadWhole) {
    std::wstring document(L"<agent>");
    while (document.size() < 5'000'000) {
        document += L"<setting name='x'>some value</setting>";
    }
    document += L"<serverConfigRegistry>x</serverConfigRegistry></agent>";

    EXPECT_EQ(ReadText(document), (ReadPath{S_OK, L"x"}));
}

TEST_F(ConfigDocumentTest, ATextOfAMegabyteIsReadWhole) {
    const std::wstring path(500'000, L'p');

    EXPECT_EQ(ReadText(DocumentNaming(path)), (ReadPath{S_OK, path}));
}

TEST_F(ConfigDocumentTest, AHundredThousandLevelsDoNotCrash) {
    constexpr int kLevels = 100'000;
    std::wstring opened;
    std::wstring closed;
    for (int i = 0; i < kLevels; ++i) {
        opened += L"<a>";
        closed += L"</a>";
    }

    // Refused, or read: the system's parser has a limit of its own or none.
    const ReadPath read = ReadText(opened + DocumentNaming(L"x") + closed);
    EXPECT_TRUE(read == (ReadPath{E_FAIL}) || read == (ReadPath{S_OK, L"x"})) << read;
    EXPECT_EQ(ReadText(opened), (ReadPath{E_FAIL})) << "not closed";
    EXPECT_EQ(ReadText(DocumentNaming(L"x")), (ReadPath{S_OK, L"x"})) << "and the next is read";
}

}  // namespace
