#include "AgentRegistry.h"

#include "CAgentRegistry.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"

namespace {

constexpr HRESULT kInvalidData = static_cast<HRESULT>(0x8007000D);

class AgentRegistryTest : public CLeakCheckedTest {
protected:
    struct Outcome {
        HRESULT result;
        std::wstring text;

        friend bool operator==(const Outcome& left, const Outcome& right) {
            return left.result == right.result && left.text == right.text;
        }
        friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
            return out << std::hex << outcome.result << " '" << testing::PrintToString(outcome.text.substr(0, 80))
                       << "'";
        }
    };

    /// What reading the value makes of a text that held "earlier".
    Outcome Read(const wchar_t* name = L"Value") const {
        std::wstring text(L"earlier");
        const HRESULT result = ReadAgentRegistryString(m_registry.AgentKey(), name, text);
        return {result, text};
    }

    Outcome ReadStored(DWORD type, const std::vector<BYTE>& bytes) const {
        CAgentRegistry::SetBytes(m_registry.AgentKey(), L"Value", type, bytes);
        return Read();
    }

    const CAgentRegistry m_registry;
};

TEST_F(AgentRegistryTest, TheAgentsKeyIsThatOfTheProduct) {
    EXPECT_EQ(AgentKeyPath(), m_registry.AgentKey());
}

TEST_F(AgentRegistryTest, ThePolicyKeyIsThatOfTheProductToo) {
    EXPECT_EQ(PolicyKeyPath(), m_registry.PolicyKey());
}

TEST_F(AgentRegistryTest, ATextIsRead) {
    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(L"C:\\Program Files\\\u00e9\u4e2d")),
              (Outcome{S_OK, L"C:\\Program Files\\\u00e9\u4e2d"}));
}

TEST_F(AgentRegistryTest, AnExpandableTextIsReadAsItIs) {
    EXPECT_EQ(ReadStored(REG_EXPAND_SZ, BytesOf(L"%SystemRoot%\\x")), (Outcome{S_OK, L"%SystemRoot%\\x"}));
}

TEST_F(AgentRegistryTest, AMissingKeyAndAMissingValueAreNotFound) {
    EXPECT_EQ(Read(), (Outcome{static_cast<HRESULT>(0x80070002), L"earlier"}));

    m_registry.SetAgentText(L"Other", L"x");
    EXPECT_EQ(Read(), (Outcome{static_cast<HRESULT>(0x80070002), L"earlier"}));
}

TEST_F(AgentRegistryTest, OtherTypesAreInvalidDataAndLeaveTheOutput) {
    for (const int type : {REG_DWORD, REG_BINARY, REG_MULTI_SZ, REG_QWORD, REG_NONE}) {
        EXPECT_EQ(ReadStored(static_cast<DWORD>(type), {'a', 0, 0, 0}), (Outcome{kInvalidData, L"earlier"})) << type;
    }
}

TEST_F(AgentRegistryTest, AnOddNumberOfBytesIsInvalidDataWithWhatCouldBeRead) {
    EXPECT_EQ(ReadStored(REG_SZ, {'a', 0, 'b', 0, 'c'}), (Outcome{kInvalidData, L"abc"}));
    EXPECT_EQ(ReadStored(REG_SZ, {'a', 0, 0, 0, 'c'}), (Outcome{kInvalidData, L"a"}));
    EXPECT_EQ(ReadStored(REG_SZ, {'a'}), (Outcome{kInvalidData, L"a"}));
}

TEST_F(AgentRegistryTest, ATextWithoutItsZeroIsInvalidDataWithWhatCouldBeRead) {
    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(L"abc", 0)), (Outcome{kInvalidData, L"abc"}));
    EXPECT_EQ(ReadStored(REG_EXPAND_SZ, BytesOf(L"abc", 0)), (Outcome{kInvalidData, L"abc"}));
}

TEST_F(AgentRegistryTest, AnEmptyValueIsAnEmptyText) {
    EXPECT_EQ(ReadStored(REG_SZ, {}), (Outcome{S_OK, L""}));
    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(L"")), (Outcome{S_OK, L""}));
}

TEST_F(AgentRegistryTest, ATextEndsAtItsFirstZero) {
    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(std::wstring(L"ab\0cd", 5))), (Outcome{S_OK, L"ab"}));
    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(L"ab", 3)), (Outcome{S_OK, L"ab"}));
}

TEST_F(AgentRegistryTest, AMegabyteIsReadWhole) {
    const std::wstring text(500'000, L'x');

    EXPECT_EQ(ReadStored(REG_SZ, BytesOf(text)), (Outcome{S_OK, text}));
}

decltype(&RegOpenKeyExW) g_open = nullptr;
REGSAM g_access = 0;
HKEY g_parent = nullptr;
LSTATUS WINAPI NoteOpen(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
    g_parent = parent;
    g_access = access;
    return g_open(parent, path, options, access, key);
}

TEST_F(AgentRegistryTest, TheKeyIsOpenedUnderTheLocalMachineForReadingInTheProcesssOwnView) {
    m_registry.SetAgentText(L"Value", L"x");
    g_open = reinterpret_cast<decltype(g_open)>(*FindImportSlot(GetModuleHandleW(nullptr), "RegOpenKeyExW"));
    const CImportHook hook(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&NoteOpen));

    EXPECT_EQ(Read().result, S_OK);

    EXPECT_EQ(g_parent, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(g_access, static_cast<REGSAM>(KEY_READ));
}

// What the registry answers to the two queries of one read, where the second need not fit the first.
LSTATUS g_firstStatus, g_secondStatus;
DWORD g_secondType;
LSTATUS WINAPI AnswerTwice(HKEY, const wchar_t*, DWORD*, DWORD* type, BYTE* data, DWORD* bytes) {
    if (!data) {
        *type = REG_SZ;
        *bytes = 4;
        return g_firstStatus;
    }
    *type = g_secondType;
    if (g_secondStatus == ERROR_SUCCESS) {
        data[0] = 'z';
        *bytes = 4;
    }
    return g_secondStatus;
}

TEST_F(AgentRegistryTest, AValueThatChangesBetweenTheTwoQueriesFailsCleanly) {
    m_registry.SetAgentText(L"Value", L"x");
    const CImportHook hook(GetModuleHandleW(nullptr), "RegQueryValueExW", AddressOf(&AnswerTwice));
    g_firstStatus = ERROR_SUCCESS;

    g_secondStatus = ERROR_MORE_DATA;
    g_secondType = REG_SZ;
    EXPECT_EQ(Read(), (Outcome{static_cast<HRESULT>(0x800700EA), L"earlier"})) << "it grew";
    g_secondStatus = ERROR_FILE_NOT_FOUND;
    EXPECT_EQ(Read(), (Outcome{static_cast<HRESULT>(0x80070002), L"earlier"})) << "it went";
    g_secondStatus = ERROR_SUCCESS;
    g_secondType = REG_DWORD;
    EXPECT_EQ(Read(), (Outcome{kInvalidData, L"earlier"})) << "it became a number";
}

TEST_F(AgentRegistryTest, MoreDataIsNoFailureOfTheFirstQuery) {
    m_registry.SetAgentText(L"Value", L"x");
    const CImportHook hook(GetModuleHandleW(nullptr), "RegQueryValueExW", AddressOf(&AnswerTwice));
    g_firstStatus = ERROR_MORE_DATA;
    g_secondStatus = ERROR_SUCCESS;
    g_secondType = REG_SZ;

    EXPECT_EQ(Read(), (Outcome{S_OK, L"z"}));
}

TEST_F(AgentRegistryTest, AValueThatCannotBeReadGivesTheRegistrysError) {
    m_registry.SetAgentText(L"Value", L"x");
    const CImportHook hook(GetModuleHandleW(nullptr), "RegQueryValueExW", AddressOf(&AnswerTwice));
    g_firstStatus = ERROR_ACCESS_DENIED;

    EXPECT_EQ(Read(), (Outcome{E_ACCESSDENIED, L"earlier"}));
}

}  // namespace
