// The configuration loader, asked over and over, leaves nothing behind: neither of MSXML's and COM's, nor of the
// registry's, nor of memory.

#include "CConfigDocumentTest.h"
#include "HostQuantities.h"
#include "ProcessQuantities.h"
#include "WatchedRun.h"

namespace {

class ConfigAccountsTest : public CConfigDocumentTest {
protected:
    void SetUp() override {
        KeepDescriptionOfElements();
        CConfigDocumentTest::SetUp();
        Host().Record().SetKeepsHistory(false);
    }

    /// The system describes its objects to callers of IDispatch from a library of types that it loads once and keeps:
    /// before anything is counted.
    static void KeepDescriptionOfElements() {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        static_cast<void>(Read(MakeInterface(MakeElement(L"<x/>", L"/x").Get(), VT_DISPATCH).Get()));
        CoUninitialize();
    }

    /// @param call whose entries in the log are forgotten behind it
    void ExpectNothingLeftBehind(const std::string& name, const std::function<void()>& call) {
        CAccounts accounts(MakeHostQuantities(Host().Record()));
        accounts.Add(MakeProcessQuantities());
        accounts.Add({MakeMemoryQuantity(kMemoryMarginPerCall * kCalls)});
        ::ExpectNothingLeftBehind(accounts, {name, kCalls,
                                             [&] {
                                                 call();
                                                 Host().Log().Clear();
                                             },
                                             [] {}});
    }

    void ExpectNothingLeftBehindBy(const std::string& name, const CVariantValue& configuration,
                                   const ServerInfo& expected) {
        ExpectNothingLeftBehind("GetServerInfo: " + name, [&] { ASSERT_EQ(Load(configuration), expected); });
    }

    void ExpectContent(const std::string& name, const CVariantValue& configuration, HRESULT expected) {
        ExpectNothingLeftBehind("GetConfigContent: " + name, [&] {
            VARIANT content{};
            ASSERT_EQ(CRMIConfigLoader::GetConfigContent(configuration.Get(), &content), expected);
            const CVariantValue owner(content);
            ASSERT_EQ(content.vt, SUCCEEDED(expected) ? VT_BSTR : VT_EMPTY);
        });
    }
};

TEST_F(ConfigAccountsTest, ServersOfALegacyListLeaveNothingBehind) {
    SetLegacyList(L"rmi://a|certificate");

    ExpectNothingLeftBehindBy("legacy list", MakeEmpty(), {S_OK, L"rmi://a", kUniqueId, L"certificate"});
}

TEST_F(ConfigAccountsTest, ServersOfADocumentsKeyLeaveNothingBehind) {
    SetDocumentServer(L"rmi://b", L"certificate");

    ExpectNothingLeftBehindBy("document's key", MakeText(DocumentNaming(DocumentKey())),
                              {S_OK, L"rmi://b", kUniqueId, L"certificate"});
}

TEST_F(ConfigAccountsTest, ServersThatAreNowhereLeaveNothingBehind) {
    ExpectNothingLeftBehindBy("nowhere", MakeText(DocumentNaming(DocumentKey())), {kNotFound});
}

TEST_F(ConfigAccountsTest, UniqueIdsThatAreRefusedLeaveNothingBehind) {
    SetDocumentServer(L"rmi://b", L"certificate");
    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_ABORT, -1);

    ExpectNothingLeftBehindBy("unique id refused", MakeText(DocumentNaming(DocumentKey())),
                              {kNotFound, L"rmi://b", ServerInfo::kUntouched, L"certificate"});
}

TEST_F(ConfigAccountsTest, ContentsOfDocumentsLeaveNothingBehind) {
    ExpectContent("document", MakeText(DocumentNaming(L"HKEY_CURRENT_USER\\Software\\X")), S_OK);
}

TEST_F(ConfigAccountsTest, ContentsOfElementsLeaveNothingBehind) {
    const Element element = MakeElement(DocumentNaming(L"HKEY_CURRENT_USER\\Software\\X"), L"//serverConfigRegistry");

    ExpectContent("element", MakeInterface(element.Get(), VT_DISPATCH), S_OK);
}

TEST_F(ConfigAccountsTest, WhatIsNoDocumentLeavesNothingBehind) {
    ExpectContent("no document", MakeText(L"<agent><serverConfigRegistry>"), E_FAIL);
}

}  // namespace
