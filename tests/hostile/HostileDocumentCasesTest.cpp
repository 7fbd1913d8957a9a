// Configuration documents as nobody would write them: what the loader reads is what their author meant, or nothing.

#include "HostileCases.h"
#include "HostileDocument.h"
#include "HostileDocumentFixture.h"
#include "HostileSampleNote.h"
#include "HostileText.h"
#include "HostileVariant.h"

using Microsoft::WRL::ComPtr;

namespace {

class HostileDocumentCasesTest : public CHostileDocumentTest {
protected:
    /// Where the element is found by looking at each node, as the system has parsed them.
    [[nodiscard]] static std::optional<std::wstring> FindInNodes(IXMLDOMNode& node) {
        CBstr name;
        CBstr space;
        DOMNodeType type = NODE_INVALID;
        EXPECT_EQ(node.get_nodeType(&type), S_OK);
        if (type == NODE_ELEMENT) {
            EXPECT_EQ(node.get_nodeName(name.Receive()), S_OK);
            EXPECT_TRUE(SUCCEEDED(node.get_namespaceURI(space.Receive())));
            if (name.GetView() == L"serverConfigRegistry" && space.GetView().empty()) {
                CBstr text;
                EXPECT_EQ(node.get_text(text.Receive()), S_OK);
                return std::wstring(text.GetView());
            }
        }
        ComPtr<IXMLDOMNode> child;
        static_cast<void>(node.get_firstChild(child.GetAddressOf()));
        while (child) {
            if (std::optional<std::wstring> found = FindInNodes(*child.Get())) {
                return found;
            }
            ComPtr<IXMLDOMNode> next;
            static_cast<void>(child->get_nextSibling(next.GetAddressOf()));
            child = next;
        }
        return std::nullopt;
    }

    /// The same for a text; nothing where the system does not take it, or where it has a document type.
    [[nodiscard]] static std::optional<std::wstring> FindByTheSystem(const std::wstring& text) {
        bool isParsed = false;
        const Document document = Load(text, isParsed);
        ComPtr<IXMLDOMDocumentType> type;
        if (!isParsed || document->get_doctype(type.GetAddressOf()) != S_FALSE) {
            return std::nullopt;
        }
        return FindInNodes(*document.Get());
    }
};

TEST_F(HostileDocumentCasesTest, ADocumentSaysWhatItsAuthorMeant) {
    CHostileCases cases({"a path", "an empty path", "no such element"});
    cases.Run([&](CRandom& random) {
        const HostileDocument document = MakeHostileDocument(random);
        const CNoteOfFailure note([&] { return testing::PrintToString(document.text.substr(0, 4000)); });
        const std::optional<std::wstring> path = document.FindPath();

        ExpectContentOfText(document.text, path);

        return !path ? "no such element" : path->empty() ? "an empty path" : "a path";
    });
}

TEST_F(HostileDocumentCasesTest, ABrokenDocumentOrOneWithATypeIsNone) {
    CHostileCases cases({"broken", "with a type"}, 2);
    cases.Run([&](CRandom& random) {
        const HostileDocument document = MakeHostileDocument(random);
        const bool hasType = random.OneIn(4);
        const std::wstring text = hasType ? AddDocumentType(random, document) : BreakDocument(random, document);
        const CNoteOfFailure note([&] { return testing::PrintToString(text.substr(0, 4000)); });

        ExpectContentOfText(text, std::nullopt);

        return hasType ? "with a type" : "broken";
    });
}

TEST_F(HostileDocumentCasesTest, ADocumentWithMisprintsSaysWhatItsNodesSay) {
    CHostileCases cases({"a path", "an empty path", "nothing"}, 4);
    cases.Run([&](CRandom& random) {
        constexpr std::wstring_view kMarkup = L"<>&;'\"/!?[]-=: \\pxmlsCDATA\r\n#0";
        const std::wstring misprinted = NearMiss(random, MakeHostileDocument(random).text, kMarkup);
        const std::wstring text = random.OneIn(2000) ? misprinted : PairSurrogates(misprinted);
        const CNoteOfFailure note([&] { return testing::PrintToString(text.substr(0, 4000)); });
        const std::optional<std::wstring> path = FindByTheSystem(text);

        ExpectContentOfText(text, path);

        return !path ? "nothing" : path->empty() ? "an empty path" : "a path";
    });
}

TEST_F(HostileDocumentCasesTest, AnElementOfADocumentStandsForAllOfIt) {
    CHostileCases cases({"a path", "nothing"}, 4);
    cases.Run([&](CRandom& random) {
        const HostileDocument made = MakeHostileDocument(random);
        const CNoteOfFailure note([&] { return testing::PrintToString(made.text.substr(0, 4000)); });
        bool isParsed = false;
        const Document document = Load(made.text, isParsed);
        EXPECT_TRUE(isParsed);
        ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(document->get_documentElement(root.GetAddressOf()), S_OK);
        ComPtr<IXMLDOMNode> node = root;
        for (std::size_t down = random.Below(3); down > 0; --down) {
            ComPtr<IXMLDOMNode> child;
            static_cast<void>(node->get_firstChild(child.GetAddressOf()));
            if (child) {
                node = child;
            }
        }
        DOMNodeType type = NODE_INVALID;
        EXPECT_EQ(node->get_nodeType(&type), S_OK);
        const std::optional<std::wstring> path = type == NODE_ELEMENT ? made.FindPath() : std::nullopt;

        IUnknown* object = node.Get();
        VARIANT inner{};
        inner.vt = random.OneIn(2) ? VT_UNKNOWN : VT_DISPATCH;
        inner.punkVal = object;
        VARIANT configuration = inner;
        switch (random.Below(3)) {
            case 0:
                configuration.vt |= VT_BYREF;
                configuration.ppunkVal = &object;
                break;
            case 1:
                configuration.vt = VT_BYREF | VT_VARIANT;
                configuration.pvarVal = &inner;
                break;
            default:
                break;
        }
        ExpectContent(configuration, path);

        return path ? "a path" : "nothing";
    });
}

TEST_F(HostileDocumentCasesTest, AnyOtherValueIsNoDocument) {
    CHostileCases cases({"a text", "a reference", "an array", "an object", "another type"});
    cases.Run([&](CRandom& random) {
        const CHostileVariant value(random, References::eFollowed, Surrogates::ePaired);
        const CNoteOfFailure note([&] { return value.Describe(); });

        ExpectContent(value.Get(), std::nullopt);

        const VARTYPE type = value.Get().vt;
        if ((type & VT_BYREF) != 0) {
            return "a reference";
        }
        if ((type & VT_ARRAY) != 0) {
            return "an array";
        }
        const bool isObject = type == VT_UNKNOWN || type == VT_DISPATCH;
        return isObject ? "an object" : type == VT_BSTR ? "a text" : "another type";
    });
}

}  // namespace
