// The three texts and who owns them.

#include "CBstr.h"
#include "CConfigLoaderTest.h"
#include "CVariantValue.h"

namespace {

class ServerInfoOutputsTest : public CConfigLoaderTest {
protected:
    enum class Place { eList, eShortList, eDocument, ePolicy };

    /// Puts URL "u" and certificate "c" into a place, alone.
    void SetServer(Place place) const {
        switch (place) {
            case Place::eList:
                return SetLegacyList(L"u|s|c");
            case Place::eShortList:
                return SetLegacyList(L"u|c");
            case Place::eDocument:
                RegDeleteTreeW(HKEY_LOCAL_MACHINE, CAgentRegistry::BrokerKey().c_str());
                return SetDocumentServer(L"u", L"c");
            case Place::ePolicy:
                RegDeleteTreeW(HKEY_LOCAL_MACHINE, DocumentKey().c_str());
                SetPolicyUrlForTheCommonReader(L"u");
                return SetPolicy(L"AdapterCertificate", L"c");
        }
    }
};

TEST_F(ServerInfoOutputsTest, AnOutputThatIsNullIsPassedOver) {
    const CVariantValue document = MakeText(DocumentNaming(DocumentKey()));
    for (const Place place : {Place::eList, Place::eShortList, Place::eDocument, Place::ePolicy}) {
        SetServer(place);
        const std::wstring second = place == Place::eList ? L"s" : kUniqueId;
        for (unsigned wanted = 0; wanted < 8; ++wanted) {
            CReceivedText texts[3];
            const auto output = [&](unsigned index) {
                return (wanted >> index & 1U) != 0 ? texts[index].Receive() : nullptr;
            };
            const auto expected = [&](unsigned index, const std::wstring& text) {
                return (wanted >> index & 1U) != 0 ? text : ServerInfo::kUntouched;
            };

            EXPECT_EQ(CRMIConfigLoader::GetServerInfo(document.Get(), output(0), output(1), output(2)), S_OK);

            EXPECT_EQ(texts[0].Get(), expected(0, L"u")) << static_cast<int>(place) << " " << wanted;
            EXPECT_EQ(texts[1].Get(), expected(1, second)) << static_cast<int>(place) << " " << wanted;
            EXPECT_EQ(texts[2].Get(), expected(2, L"c")) << static_cast<int>(place) << " " << wanted;
        }
    }
}

TEST_F(ServerInfoOutputsTest, WithoutAnOutputForItTheHostsSystemInformationIsNotFetched) {
    Host().Services().SetResult(ISystemInfo::kId, E_FAIL);
    for (const Place place : {Place::eShortList, Place::eDocument, Place::ePolicy}) {
        SetServer(place);
        Host().Record().ClearCalls();
        CReceivedText url;

        EXPECT_EQ(CRMIConfigLoader::GetServerInfo(MakeText(DocumentNaming(DocumentKey())).Get(), url.Receive(), nullptr,
                                                  nullptr),
                  S_OK);

        EXPECT_EQ(url.Get(), L"u");
        EXPECT_EQ(Host().Record().CountCalls("Services: GetHostObject(IHostLogger)"), 1);
        EXPECT_EQ(Host().Record().CountCalls("Services: GetHostObject(ISystemInfo)"), 0);
    }
}

TEST_F(ServerInfoOutputsTest, WhatTheCallerHadThereIsNeitherReadNorFreed) {
    auto* const invalid = reinterpret_cast<wchar_t*>(0xDEAD'BEE0);
    const CVariantValue document = MakeText(DocumentNaming(DocumentKey()));
    for (const Place place : {Place::eList, Place::eShortList, Place::eDocument, Place::ePolicy}) {
        SetServer(place);
        wchar_t* texts[3] = {invalid, invalid, invalid};

        ASSERT_EQ(CRMIConfigLoader::GetServerInfo(document.Get(), &texts[0], &texts[1], &texts[2]), S_OK);

        for (wchar_t* const text : texts) {
            ASSERT_NE(text, invalid);
            SysFreeString(text);
        }
    }
}

TEST_F(ServerInfoOutputsTest, ATextThatTheCallerHadThereIsStillHisToFree) {
    const CVariantValue document = MakeText(DocumentNaming(DocumentKey()));
    for (const Place place : {Place::eList, Place::eShortList, Place::eDocument, Place::ePolicy}) {
        SetServer(place);
        const CBstr mine[3] = {CBstr::Make(L"my URL"), CBstr::Make(L"my second"), CBstr::Make(L"my certificate")};
        wchar_t* texts[3] = {mine[0].Get(), mine[1].Get(), mine[2].Get()};

        ASSERT_EQ(CRMIConfigLoader::GetServerInfo(document.Get(), &texts[0], &texts[1], &texts[2]), S_OK);

        EXPECT_EQ(mine[0].GetView(), L"my URL");
        EXPECT_EQ(mine[1].GetView(), L"my second");
        EXPECT_EQ(mine[2].GetView(), L"my certificate");
        for (wchar_t* const text : texts) {
            SysFreeString(text);
        }
    }
}

TEST_F(ServerInfoOutputsTest, AnOutputWithoutAValueKeepsWhatTheCallerHadThere) {
    wchar_t mine[] = L"mine";
    wchar_t* certificate = mine;
    CReceivedText url;
    CReceivedText secondValue;
    SetLegacyList(L"u");

    EXPECT_EQ(CRMIConfigLoader::GetServerInfo(MakeEmpty().Get(), url.Receive(), secondValue.Receive(), &certificate),
              S_OK);

    EXPECT_EQ(certificate, mine);
}

TEST_F(ServerInfoOutputsTest, NothingIsWrittenWhereNothingIsFound) {
    wchar_t mine[] = L"mine";
    wchar_t* texts[3] = {mine, mine, mine};

    EXPECT_EQ(CRMIConfigLoader::GetServerInfo(MakeEmpty().Get(), &texts[0], &texts[1], &texts[2]), kNotFound);

    for (const wchar_t* const text : texts) {
        EXPECT_EQ(text, mine);
    }
}

TEST_F(ServerInfoOutputsTest, ALaterPlaceReplacesWhatAnEarlierOneWrote) {
    SetLegacyList(L"list's URL|list's certificate");
    SetDocumentServer(L"document's URL", L"document's certificate");
    SetPolicy(L"MessageServerURL", L"policy's URL");
    SetPolicy(L"AdapterCertificate", L"policy's certificate");

    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_FAIL, 2);
    EXPECT_EQ(Load(DocumentNaming(DocumentKey())),
              (ServerInfo{S_OK, L"policy's URL", kUniqueId, L"policy's certificate"}));

    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_FAIL, 3);
    EXPECT_EQ(Load(DocumentNaming(DocumentKey())),
              (ServerInfo{E_FAIL, L"policy's URL", ServerInfo::kUntouched, L"policy's certificate"}));
    EXPECT_EQ(Logged(), (Texts{NotLoaded(E_FAIL), NotLoaded(E_FAIL), LegacyNotLoaded(E_FAIL)}));
}

TEST_F(ServerInfoOutputsTest, WhatAnEarlierPlaceWroteStaysWhereTheLaterOneHasNothing) {
    SetLegacyList(L"list's URL|list's certificate");
    Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_FAIL);

    EXPECT_EQ(Load(), (ServerInfo{kNotFound, L"list's URL", ServerInfo::kUntouched, L"list's certificate"}));
}

TEST_F(ServerInfoOutputsTest, AMegabyteOfTextComesWhole) {
    const std::wstring url(500'000, L'u');
    const std::wstring certificate(500'000, L'c');

    SetLegacyList(url + L"|" + certificate);
    EXPECT_EQ(Load(), (ServerInfo{S_OK, url, kUniqueId, certificate}));

    SetServer(Place::eDocument);
    SetDocumentServer(url, certificate);
    EXPECT_EQ(Load(DocumentNaming(DocumentKey())), (ServerInfo{S_OK, url, kUniqueId, certificate}));
}

TEST_F(ServerInfoOutputsTest, TheHostsOwnTextIsHandedOnWithItsZeros) {
    SystemData system;
    system.machineUniqueId = std::wstring(L"a\0b", 3);
    SetSystem(system);
    SetLegacyList(L"u");

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"u", std::wstring(L"a\0b", 3)}));
}

TEST_F(ServerInfoOutputsTest, WithoutALogTheResultsAreTheSame) {
    const auto loadAll = [&] {
        std::vector<ServerInfo> loaded;
        for (const Place place : {Place::eList, Place::eShortList, Place::eDocument, Place::ePolicy}) {
            SetServer(place);
            loaded.push_back(Load(DocumentNaming(DocumentKey())));
        }
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, Registry().PolicyKey().c_str());
        loaded.push_back(Load(DocumentNaming(DocumentKey())));
        return loaded;
    };
    const std::vector<ServerInfo> withLog = loadAll();
    ASSERT_EQ(withLog.back(), ServerInfo{kNotFound});
    Host().Log().Clear();

    Host().Services().SetResult(IHostLogger::kId, E_ACCESSDENIED);
    EXPECT_EQ(loadAll(), withLog) << "it is refused";
    Host().Services().Set(IHostLogger::kId, nullptr);
    EXPECT_EQ(loadAll(), withLog) << "it is null";

    EXPECT_EQ(Logged(), Texts{});
}

TEST_F(ServerInfoOutputsTest, WithoutAHostAFullListIsReadAll) {
    SetServer(Place::eList);
    Unregister();

    EXPECT_EQ(Load(), (ServerInfo{S_OK, L"u", L"s", L"c"}));
}

TEST_F(ServerInfoOutputsTest, WithoutAHostAMissingUniqueIdIsTheServiceClassNotBeingRegistered) {
    SetServer(Place::ePolicy);
    Unregister();

    EXPECT_EQ(Load(), (ServerInfo{REGDB_E_CLASSNOTREG, L"u", ServerInfo::kUntouched, L"c"}));
}

}  // namespace
