// Legacy lists of any text, in either of their places, for hosts that give a unique id and for hosts that do not.

#include "CConfigLoaderTest.h"
#include "HostileCases.h"
#include "StoredValue.h"
#include "SystemHandles.h"

namespace {

constexpr char kUrlAlone[] = "a URL alone";
constexpr char kTwoFields[] = "URL and certificate";
constexpr char kThreeFields[] = "URL, second value and certificate";
constexpr char kMoreFields[] = "more fields";
constexpr char kNoId[] = "lists that need the host's id and do not get it";
constexpr char kNoList[] = "no list";

using Texts = std::vector<std::wstring>;

// ---- the model ------------------------------------------------------------------------------------------

enum class Place { eNodeManager, ePolicy, eNone };

struct Input {
    Place place;
    bool isFirstPlaceDamaged;  // where the list is in the second one, or nowhere
    std::wstring stored;       // may hold zeros
    bool wantsUrl;
    bool wantsSecond;
    bool wantsCertificate;
    bool isIdRefused;
};

Texts FieldsOf(const std::wstring& stored) {
    Texts fields(1);
    for (const wchar_t character : stored) {
        if (character == L'\0') {
            break;
        }
        if (character == L'|') {
            fields.emplace_back();
        } else {
            fields.back() += character;
        }
    }
    return fields;
}

const char* OutcomeOf(const Input& input) {
    const std::size_t fields = FieldsOf(input.stored).size();
    if (input.place == Place::eNone) {
        return kNoList;
    }
    if (fields < 3 && input.wantsSecond && input.isIdRefused) {
        return kNoId;
    }
    return fields == 1 ? kUrlAlone : fields == 2 ? kTwoFields : fields == 3 ? kThreeFields : kMoreFields;
}

/// What the host receives of its three texts, but for the result.
void ExpectOutputs(const Input& input, ServerInfo& info) {
    const Texts fields = FieldsOf(input.stored);
    if (input.wantsUrl) {
        info.url = fields.front();
    }
    if (fields.size() >= 2 && input.wantsCertificate) {
        info.certificate = fields.back();
    }
    if (!input.wantsSecond) {
        return;
    }
    if (fields.size() >= 3) {
        info.secondValue = fields[1];
    } else if (!input.isIdRefused) {
        info.secondValue = L"unique-7";
    }
}

// ---- the lists ------------------------------------------------------------------------------------------

constexpr std::wstring_view kFavourites(L"||||||:/%s\n\0", 12);

std::wstring MakeList(CRandom& random) {
    switch (random.Below(4)) {
        case 0:
            return NearMiss(random, L"rmi://server:4711/Name|second|certificate", kFavourites);
        case 1:
            return HostileText(random, kFavourites, 30'000);
        default: {
            std::wstring list;
            for (std::size_t bars = random.Below(5); bars > 0; --bars) {
                list += HostileText(random, L"%:/ ", 200) + L"|";
            }
            return list + HostileText(random, L"%:/ ", 30'000);
        }
    }
}

Input MakeInput(CRandom& random) {
    const Place place = random.OneIn(50) ? Place::eNone : random.OneIn(4) ? Place::ePolicy : Place::eNodeManager;
    return {place,           random.OneIn(2), MakeList(random), !random.OneIn(10), !random.OneIn(10), !random.OneIn(10),
            random.OneIn(50)};
}

class HostileLegacyListTest : public CConfigLoaderTest {
protected:
    void SetUp() override {
        CConfigLoaderTest::SetUp();
        Host().Record().SetKeepsHistory(false);
        Open(CAgentRegistry::NodeManagerKey(), m_nodeManager);
    }
    void TearDown() override {
        m_nodeManager.Reset();
        CConfigLoaderTest::TearDown();
    }

    /// Lays the list down where the input has it. The policy's key is there only for a list.
    void Prepare(const Input& input) {
        static const StoredValue kDamagedList{REG_SZ, {'x', 0, 0}};
        const StoredValue list{REG_SZ, BytesOf(input.stored)};
        if (input.place == Place::eNodeManager) {
            Store(m_nodeManager.Get(), kNodeManagerValue, list);
        } else if (input.isFirstPlaceDamaged) {
            Store(m_nodeManager.Get(), kNodeManagerValue, kDamagedList);
        }
        if (input.place == Place::ePolicy) {
            CRegistryKey policy;
            Open(Registry().PolicyKey(), policy);
            Store(policy.Get(), L"MessageServerURL", list);
        }
        if (input.isIdRefused) {
            Host().Record().Fail("ISystemInfo::get_machineUniqueId", 1, E_ACCESSDENIED);
        }
    }

    void Undo(const Input& input) {
        if (input.place == Place::eNodeManager || input.isFirstPlaceDamaged) {
            RegDeleteValueW(m_nodeManager.Get(), kNodeManagerValue);
        }
        if (input.place == Place::ePolicy) {
            RegDeleteTreeW(HKEY_LOCAL_MACHINE, Registry().PolicyKey().c_str());
        }
        Host().Record().ClearFaults();
        Host().Log().Clear();
    }

    [[nodiscard]] static ServerInfo Ask(const Input& input) {
        CReceivedText url;
        CReceivedText secondValue;
        CReceivedText certificate;
        const HRESULT result = CRMIConfigLoader::GetServerInfo(
            VARIANT{}, input.wantsUrl ? url.Receive() : nullptr, input.wantsSecond ? secondValue.Receive() : nullptr,
            input.wantsCertificate ? certificate.Receive() : nullptr);
        return {result, url.Get(), secondValue.Get(), certificate.Get()};
    }

    /// What the model expects beside the outputs: the result and the log.
    static Texts ExpectedLog(const Input& input, const char* outcome, ServerInfo& info) {
        if (outcome == kNoList) {
            info.result = kNotFound;
            return {NoList(kNotFound), NoKey(kNotFound), LegacyNotLoaded(kNotFound)};
        }
        if (outcome != kNoId) {
            info.result = S_OK;
            return {UsingServer(FieldsOf(input.stored).front())};
        }
        // The policy is asked as it is after every failure: its key is not there, or holds the list and no certificate.
        info.result = input.place == Place::ePolicy ? E_FAIL : kNotFound;
        return {input.place == Place::ePolicy ? NoCertificate() : NoKey(kNotFound), LegacyNotLoaded(info.result)};
    }

private:
    static constexpr wchar_t kNodeManagerValue[] = L"Kelbrin Server URL";

    static void Open(const std::wstring& path, CRegistryKey& key) {
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  key.Receive(), nullptr),
                  ERROR_SUCCESS);
    }

    CRegistryKey m_nodeManager;
};

TEST_F(HostileLegacyListTest, AnyListIsTakenApartAsTheModelDoesIt) {
    CHostileCases cases({kUrlAlone, kTwoFields, kThreeFields, kMoreFields, kNoId, kNoList});

    cases.Run([&](CRandom& random) {
        const Input input = MakeInput(random);
        const char* const outcome = OutcomeOf(input);
        ServerInfo expected{};
        if (outcome != kNoList) {
            ExpectOutputs(input, expected);
        }
        const Texts log = ExpectedLog(input, outcome, expected);
        Prepare(input);

        EXPECT_EQ(Ask(input), expected) << testing::PrintToString(input.stored);
        EXPECT_EQ(Logged(), log) << testing::PrintToString(input.stored);

        Undo(input);
        return outcome;
    });
}

}  // namespace
