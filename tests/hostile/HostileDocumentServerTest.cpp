// Which server the loader comes to by a hostile document: the one whose key it names, or the policy's.

#include "CConfigDocumentTest.h"
#include "HostileCases.h"
#include "HostileDocument.h"
#include "HostileSampleNote.h"

namespace {

class HostileDocumentServerTest : public CConfigDocumentTest {
protected:
    static constexpr HRESULT kOpenText = static_cast<HRESULT>(0x8007000D);

    void SetUp() override {
        CConfigDocumentTest::SetUp();
        Host().Record().SetKeepsHistory(false);
        SetPolicyUrlForTheCommonReader(L"rmi://policy");
        SetPolicy(L"AdapterCertificate", L"policy's");
        SetDocumentServer(L"rmi://document", L"document's");
        CAgentRegistry::SetBytes(KeyWithoutUrl(), L"AdapterCertificate", REG_SZ, BytesOf(L"nobody's"));
    }

    [[nodiscard]] std::wstring KeyWithoutUrl() const { return Registry().AgentKey() + L"\\No URL"; }
    [[nodiscard]] std::wstring NoKeyAtAll() const { return Registry().AgentKey() + L"\\Nowhere"; }
};

TEST_F(HostileDocumentServerTest, TheKeyThatADocumentNamesGoesBeforeThePolicys) {
    constexpr std::uint64_t kShare = 20;  // each case reads the registry a dozen times
    CHostileCases cases({"the document's key", "a key that is not there", "a key without a URL", "no key"}, kShare);
    cases.Run([&](CRandom& random) {
        const std::wstring keys[] = {DocumentKey(), NoKeyAtAll(), KeyWithoutUrl()};
        const std::size_t choice = random.Below(3);
        const std::wstring root = random.OneIn(2) ? L"HKEY_LOCAL_MACHINE\\" : L"";
        const HostileDocument document = MakeHostileDocumentNaming(random, root + keys[choice]);
        const bool isBroken = random.OneIn(5);
        const std::wstring text = isBroken ? BreakDocument(random, document) : document.text;
        const bool namesKey = !isBroken && document.FindPath();
        const CNoteOfFailure note([&] { return testing::PrintToString(text.substr(0, 4000)); });
        Host().Log().Clear();

        const ServerInfo loaded = Load(text);

        if (namesKey && choice == 0) {
            EXPECT_EQ(loaded, (ServerInfo{S_OK, L"rmi://document", kUniqueId, L"document's"}));
        } else {
            EXPECT_EQ(loaded, (ServerInfo{S_OK, L"rmi://policy", kUniqueId, L"policy's"}));
        }
        Texts expected = {NoList(kOpenText)};
        if (namesKey && choice == 1) {
            expected.insert(expected.end(), {NoKey(kNotFound), NotLoaded(kNotFound)});
        } else if (namesKey && choice == 2) {
            expected.insert(expected.end(), {NoUrl(), NotLoaded(E_FAIL)});
        }
        EXPECT_EQ(Logged(), expected);

        constexpr const char* kOutcomes[] = {"the document's key", "a key that is not there", "a key without a URL"};
        return namesKey ? kOutcomes[choice] : "no key";
    });
}

}  // namespace
