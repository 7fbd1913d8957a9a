// Texts of the registry that are damaged, of another type, gone, or written anew while they are read.

#include <functional>
#include <ostream>

#include "AgentRegistry.h"
#include "CAgentRegistry.h"
#include "CLeakCheckedTest.h"
#include "HostileCases.h"
#include "StoredValue.h"
#include "SystemHandles.h"

namespace {

constexpr char kRead[] = "read";
constexpr char kDamaged[] = "damaged";
constexpr char kOtherType[] = "of another type";
constexpr char kGone[] = "not there";
constexpr char kKeyGone[] = "without their key";
constexpr char kGrown[] = "grown meanwhile";

constexpr std::size_t kLongest = 40'000;

struct ReadText {
    HRESULT result;
    std::wstring text;

    friend bool operator==(const ReadText& left, const ReadText& right) {
        return left.result == right.result && left.text == right.text;
    }
    friend std::ostream& operator<<(std::ostream& out, const ReadText& read) {
        return out << std::hex << read.result << std::dec << " " << testing::PrintToString(read.text);
    }
};

// ---- the model ------------------------------------------------------------------------------------------

/// What may become of a value between the question for its size and the one for its text.
enum class Change { eNone, eRewritten, eDeleted, eKeyDeleted };

struct Input {
    bool hasKey;
    bool hasValue;
    StoredValue stored;
    Change change;
    StoredValue rewritten;
};

struct Expected {
    ReadText read;
    const char* outcome;
};

bool IsText(const StoredValue& value) {
    return value.type == 1 || value.type == 2;
}

/// Whole characters, the last of them a zero, or nothing at all.
bool IsClosed(const std::vector<BYTE>& bytes) {
    const std::size_t size = bytes.size();
    return size == 0 || (size % 2 == 0 && bytes[size - 2] == 0 && bytes[size - 1] == 0);
}

/// Of a reading whose output held "earlier".
Expected ExpectedText(const Input& input) {
    constexpr auto kNotFoundResult = static_cast<HRESULT>(0x80070002);
    constexpr auto kInvalidDataResult = static_cast<HRESULT>(0x8007000D);
    constexpr auto kMoreDataResult = static_cast<HRESULT>(0x800700EA);
    constexpr auto kKeyDeletedResult = static_cast<HRESULT>(0x800703FA);
    if (!input.hasKey || !input.hasValue) {
        return {{kNotFoundResult, L"earlier"}, kGone};
    }
    if (!IsText(input.stored)) {
        return {{kInvalidDataResult, L"earlier"}, kOtherType};
    }
    if (input.change == Change::eDeleted) {
        return {{kNotFoundResult, L"earlier"}, kGone};
    }
    if (input.change == Change::eKeyDeleted) {
        return {{kKeyDeletedResult, L"earlier"}, kKeyGone};
    }
    const StoredValue& last = input.change == Change::eRewritten ? input.rewritten : input.stored;
    if (last.bytes.size() > input.stored.bytes.size()) {
        return {{kMoreDataResult, L"earlier"}, kGrown};
    }
    if (!IsText(last)) {
        return {{kInvalidDataResult, L"earlier"}, kOtherType};
    }
    const std::wstring text = TextUpToZero(last.bytes);
    return IsClosed(last.bytes) ? Expected{{S_OK, text}, kRead} : Expected{{kInvalidDataResult, text}, kDamaged};
}

// ---- the values -----------------------------------------------------------------------------------------

Input MakeInput(CRandom& random) {
    static constexpr Change kChanges[] = {Change::eRewritten, Change::eRewritten, Change::eDeleted,
                                          Change::eKeyDeleted};
    return {!random.OneIn(50), !random.OneIn(50), MakeStoredValue(random, kLongest),
            random.OneIn(4) ? random.Pick(kChanges) : Change::eNone, MakeStoredValue(random, kLongest)};
}

decltype(&RegQueryValueExW) g_query = nullptr;
std::function<void()> g_afterTheSize;

/// As the system does, and then what happens between the two questions.
LSTATUS WINAPI QueryAndChange(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* bytes) {
    const LSTATUS status = g_query(key, name, reserved, type, data, bytes);
    if (!data) {
        g_afterTheSize();
    }
    return status;
}

class HostileRegistryTextTest : public CLeakCheckedTest {
protected:
    void SetUp() override {
        CLeakCheckedTest::SetUp();
        g_query = reinterpret_cast<decltype(g_query)>(*FindImportSlot(GetModuleHandleW(nullptr), "RegQueryValueExW"));
        Create();
    }
    void TearDown() override {
        m_key.Reset();
        CLeakCheckedTest::TearDown();
    }

    /// Lays the value down, reads it, and leaves the key as it was.
    ReadText Read(const Input& input, const std::wstring& name) {
        if (input.hasValue) {
            Store(m_key.Get(), name, input.stored);
        }
        g_afterTheSize = [&] { Apply(input, name); };
        ReadText read{S_OK, L"earlier"};
        const std::wstring key = m_registry.AgentKey() + (input.hasKey ? L"" : L"\\missing");
        read.result = ReadAgentRegistryString(key, name.c_str(), read.text);
        if (input.change == Change::eKeyDeleted) {
            Create();
        }
        RegDeleteValueW(m_key.Get(), name.c_str());
        return read;
    }

private:
    void Create() {
        m_key.Reset();
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, m_registry.AgentKey().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                  nullptr, m_key.Receive(), nullptr),
                  ERROR_SUCCESS);
    }

    void Apply(const Input& input, const std::wstring& name) const {
        switch (input.change) {
            case Change::eRewritten:
                Store(m_key.Get(), name, input.rewritten);
                break;
            case Change::eDeleted:
                RegDeleteValueW(m_key.Get(), name.c_str());
                break;
            case Change::eKeyDeleted:
                RegDeleteTreeW(HKEY_LOCAL_MACHINE, m_registry.AgentKey().c_str());
                break;
            case Change::eNone:
                break;
        }
    }

    const CAgentRegistry m_registry;
    CRegistryKey m_key;
};

TEST_F(HostileRegistryTextTest, AnyValueIsReadAsTheModelReadsIt) {
    const CImportHook hook(GetModuleHandleW(nullptr), "RegQueryValueExW", AddressOf(&QueryAndChange));
    CHostileCases cases({kRead, kDamaged, kOtherType, kGone, kKeyGone, kGrown});

    cases.Run([&](CRandom& random) {
        const Input input = MakeInput(random);
        const std::wstring name = HostileText(random, L"\\ .%", 16'000);
        const Expected expected = ExpectedText(input);

        EXPECT_EQ(Read(input, name), expected.read)
            << "stored with type " << input.stored.type << ": " << testing::PrintToString(input.stored.bytes)
            << "\nthen " << static_cast<int>(input.change) << ", type " << input.rewritten.type << ": "
            << testing::PrintToString(input.rewritten.bytes);

        return expected.outcome;
    });
}

}  // namespace
