// The two exports of the configuration loader: where the message server is.

#include <algorithm>
#include <iterator>

#include "CConfigDocumentTest.h"
#include "FaultSweep.h"

namespace {

/// Every place that a server may be found in has one: the key that a document names, the policy's, and in some tests
/// the legacy list.
class ConfigFaultsTest : public CConfigDocumentTest {
protected:
    void SetUp() override {
        CConfigDocumentTest::SetUp();
        SetDocumentServer(L"document's URL", L"");
        // Of every type that is read; the certificate's texts are joined.
        CAgentRegistry::SetBytes(DocumentKey(), L"AdapterCertificate", REG_MULTI_SZ, BytesOf(s_twoTexts));
        CAgentRegistry::SetBytes(DocumentKey(), L"Number", REG_DWORD, {1, 0, 0, 0});
        SetPolicyUrlForTheCommonReader(L"policy's URL");
        SetPolicy(L"AdapterCertificate", L"policy's certificate");
        m_document = MakeText(DocumentNaming(DocumentKey()));
    }

    void TearDown() override {
        m_document = CVariantValue();
        CConfigDocumentTest::TearDown();
    }

    /// @param prepare run before each call
    template <typename Prepare>
    void SweepServerInfo(const std::string& operation, const CVariantValue& configuration,
                         const ServerInfo& undisturbed, const Prepare& prepare) {
        prepare();
        ASSERT_EQ(Load(configuration), undisturbed);
        SweepHostAndSystem(operation, Host(), [&](CFaultRound& round) {
            prepare();
            Host().Record().ClearCalls();
            const std::string hostObjects = Host().Record().DescribeLeftovers();
            const ResourceCounts before = CResourceLedger::Get().Count();
            {
                CReceivedText texts[3];

                const FaultOutcome got = round.Run([&] {
                    return CRMIConfigLoader::GetServerInfo(configuration.Get(), texts[0].Receive(), texts[1].Receive(),
                                                           texts[2].Receive());
                });

                ExpectLawfulEnd(round, got, S_OK);
                const ServerInfo info{got.result, texts[0].Get(), texts[1].Get(), texts[2].Get()};
                EXPECT_TRUE(round.HasFired() || info == undisturbed) << round << ": " << info;
                EXPECT_TRUE(got.result != S_OK || IsOneServer(info)) << round << ": " << info;
                EXPECT_TRUE(SUCCEEDED(got.result) || WasTold(round, got)) << round << ": " << got;
            }
            EXPECT_EQ(CResourceLedger::Get().Count(), before) << round;
            EXPECT_EQ(Host().Record().DescribeLeftovers(), hostObjects) << round;
            prepare();
            EXPECT_EQ(Load(configuration), undisturbed) << round << ": the next call";
        });
    }
    void SweepServerInfo(const std::string& operation, const CVariantValue& configuration,
                         const ServerInfo& undisturbed) {
        SweepServerInfo(operation, configuration, undisturbed, [] {});
    }

    CVariantValue m_document;

private:
    /// Where a place fails, another one's server is as good, but it is one place's.
    static bool IsOneServer(const ServerInfo& info) {
        constexpr const wchar_t* kPlaces[] = {L"list's", L"document's", L"policy's"};
        return info.secondValue == kUniqueId &&
               std::any_of(std::begin(kPlaces), std::end(kPlaces), [&](const std::wstring& place) {
                   return info.url == place + L" URL" && info.certificate == place + L" certificate";
               });
    }

    /// A failure is in the host's log, unless the logger was not to be had for the same reason, or memory is missing.
    bool WasTold(const CFaultRound& round, const FaultOutcome& got) {
        return got.IsThrown() || round.GetSource().IsOfMemory() || IsLoggerMissing(round) ||
               Host().Record().CountCalls("IHostLogger::LogError") != 0;
    }
    static bool IsLoggerMissing(const CFaultRound& round) {
        constexpr const char* kFetching[] = {"CLSIDFromString", "CoCreateInstance",     "RegOpenKeyExW",
                                             "IClassFactory",   "IHostServiceProvider", "IHostLogger"};
        const std::vector<std::string> failed = round.NameFailed();
        return round.IsForEver() && !failed.empty() &&
               std::any_of(std::begin(kFetching), std::end(kFetching),
                           [&](const char* part) { return failed.front().find(part) != std::string::npos; });
    }

    static inline const std::wstring s_twoTexts{L"document's\0 certificate\0", 24};
};

TEST_F(ConfigFaultsTest, AServerOfTheList) {
    SetLegacyList(L"list's URL|list's certificate");

    SweepServerInfo("GetServerInfo, list", MakeEmpty(), {S_OK, L"list's URL", kUniqueId, L"list's certificate"});
}

TEST_F(ConfigFaultsTest, AServerOfADocument) {
    SweepServerInfo("GetServerInfo, document", m_document,
                    {S_OK, L"document's URL", kUniqueId, L"document's certificate"});
}

TEST_F(ConfigFaultsTest, AServerOfThePolicy) {
    SweepServerInfo("GetServerInfo, policy", MakeEmpty(), {S_OK, L"policy's URL", kUniqueId, L"policy's certificate"});
}

TEST_F(ConfigFaultsTest, AServerOfTheLastOfAllPlaces) {
    SetLegacyList(L"list's URL|list's certificate");

    // The host refuses the unique id to the first two.
    SweepServerInfo("GetServerInfo, all places", m_document,
                    {S_OK, L"policy's URL", kUniqueId, L"policy's certificate"}, [this] {
                        Host().Record().ClearFaults();
                        Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_FAIL, 2);
                    });
}

TEST_F(ConfigFaultsTest, TheContentOfADocument) {
    SweepHostAndSystem("GetConfigContent", Host(), [&](CFaultRound& round) {
        const ResourceCounts before = CResourceLedger::Get().Count();
        {
            CVariantValue earlier = MakeText(L"earlier");
            VARIANT content = earlier.Detach();

            const FaultOutcome got =
                round.Run([&] { return CRMIConfigLoader::GetConfigContent(m_document.Get(), &content); });

            const CVariantValue owner(content);
            ExpectLawfulEnd(round, got, S_OK);
            const bool isNoText = content.vt == VT_ERROR && content.scode == E_OUTOFMEMORY;
            const std::wstring text = content.vt == VT_BSTR ? content.bstrVal : L"";
            if (got.IsThrown() || FAILED(got.result)) {
                EXPECT_EQ(text, L"earlier") << round;
            } else {
                EXPECT_TRUE(text == DocumentKey() || (round.IsFirstFailed("SysAllocStringByteLen") && isNoText))
                    << round;
            }
        }
        EXPECT_EQ(CResourceLedger::Get().Count(), before) << round;
        EXPECT_EQ(Logged(), Texts{}) << round;
    });
}

}  // namespace
