// Registry keys with values of any name, type and size, some written anew while the key is read.

#include <algorithm>
#include <utility>

#include "CAgentRegistry.h"
#include "CBstr.h"
#include "CLeakCheckedTest.h"
#include "HostileCases.h"
#include "RegistryKeyValues.h"
#include "StoredValue.h"
#include "SystemHandles.h"

namespace {

constexpr char kEmpty[] = "keys that tell nothing";
constexpr char kOne[] = "keys of one value";
constexpr char kSeveral[] = "keys of several values";
constexpr char kRewritten[] = "values written anew meanwhile";
constexpr char kDeleted[] = "values deleted meanwhile";
constexpr char kKeyDeleted[] = "keys deleted meanwhile";

constexpr std::size_t kLongest = 20'000;

/// A value by its name, as a text: "Name=text a", "Name=texts <a><b>", "Name=number 7".
using Told = std::vector<std::wstring>;
using NamedValue = std::pair<std::wstring, StoredValue>;

// ---- the model ------------------------------------------------------------------------------------------

/// The texts up to their zeros. The zeros that close the list begin no further text.
std::wstring ExpectedTexts(const std::vector<BYTE>& bytes) {
    std::wstring texts;
    std::wstring text;
    std::size_t emptyTexts = 0;  // that are such only if another text follows
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto character = static_cast<wchar_t>(bytes[i] | bytes[i + 1] << 8U);
        if (character != L'\0') {
            text += character;
        } else if (text.empty()) {
            ++emptyTexts;
        } else {
            texts += L"<" + text + L">";
            text.clear();
        }
        for (; !text.empty() && emptyTexts > 0; --emptyTexts) {
            texts += L"<>";
        }
    }
    return text.empty() ? texts : texts + L"<" + text + L">";
}

/// Empty for a value that is left out.
std::wstring ExpectedValue(const StoredValue& value) {
    const std::vector<BYTE>& bytes = value.bytes;
    switch (value.type) {
        case 1:
        case 2: {
            std::vector<BYTE> whole(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(bytes.size() % 2));
            return L"text " + TextUpToZero(whole);
        }
        case 7:
            return L"texts " + ExpectedTexts(bytes);
        case 4: {
            if (bytes.size() < 4) {
                return L"";
            }
            std::uint32_t number = 0;
            for (std::size_t i = 4; i > 0; --i) {
                number = number << 8U | std::uint32_t{bytes[i - 1]};
            }
            return L"number " + std::to_wstring(static_cast<std::int32_t>(number));
        }
        default:
            return L"";
    }
}

std::wstring UpperCase(std::wstring name) {
    for (wchar_t& character : name) {
        const bool isLower = (character >= L'a' && character <= L'z') || character == 0xE9;
        character = static_cast<wchar_t>(isLower ? character - 0x20 : character);
    }
    return name;
}

/// The values one after the other; a name that is there already, in whatever case, gets the later value.
Told ExpectedValues(const std::vector<NamedValue>& stored) {
    std::vector<NamedValue> kept;
    for (const NamedValue& value : stored) {
        const auto same = std::find_if(kept.begin(), kept.end(), [&](const NamedValue& earlier) {
            return UpperCase(earlier.first) == UpperCase(value.first);
        });
        if (same == kept.end()) {
            kept.push_back(value);
        } else {
            same->second = value.second;
        }
    }
    Told told;
    for (const auto& [name, value] : kept) {
        const std::wstring text = ExpectedValue(value);
        if (!text.empty()) {
            told.push_back(std::wstring(name).append(L"=").append(text));
        }
    }
    std::sort(told.begin(), told.end());
    return told;
}

// ---- what the product tells -----------------------------------------------------------------------------

std::wstring Describe(const VARIANT& value) {
    if (value.vt == VT_BSTR) {
        return L"text " + std::wstring(ViewBstr(value.bstrVal));
    }
    if (value.vt == VT_I4) {
        return L"number " + std::to_wstring(value.lVal);
    }
    EXPECT_EQ(value.vt, VT_ARRAY | VT_BSTR);
    std::wstring texts = L"texts ";
    for (ULONG i = 0; i < value.parray->rgsabound[0].cElements; ++i) {
        texts += L"<" + std::wstring(ViewBstr(static_cast<BSTR*>(value.parray->pvData)[i])) + L">";
    }
    return texts;
}

struct ReadKey {
    HRESULT result;
    Told told;

    friend bool operator==(const ReadKey& left, const ReadKey& right) {
        return left.result == right.result && left.told == right.told;
    }
    friend std::ostream& operator<<(std::ostream& out, const ReadKey& read) {
        return out << std::hex << read.result << std::dec << " " << testing::PrintToString(read.told);
    }
};

/// Into values that held one, which a failure leaves.
ReadKey Read(const std::wstring& path) {
    RegistryValues values;
    values[L"earlier"].SetText(L"x");
    ReadKey read{ReadRegistryKeyValues(HKEY_LOCAL_MACHINE, path, values), {}};
    for (const auto& [name, value] : values) {
        read.told.push_back(std::wstring(name).append(L"=").append(Describe(value)));
    }
    std::sort(read.told.begin(), read.told.end());
    return read;
}

// ---- the keys -------------------------------------------------------------------------------------------

/// Of characters whose case the model knows.
std::wstring MakeName(CRandom& random) {
    std::wstring name = HostileText(random, L"aAbB\u00e9\u00c9\\ =", 16'000);
    for (wchar_t& character : name) {
        const bool isKnown = character < 0x80 || character == 0xE9 || character == 0xC9 ||
                             (character >= 0x4E00 && character < 0xA000) || (character >= 0xD800 && character < 0xE000);
        character = isKnown ? character : L'\u4e2d';
    }
    return name;
}

std::vector<NamedValue> MakeValues(CRandom& random) {
    std::vector<NamedValue> values(random.OneIn(500) ? random.Below(200) : random.Below(6));
    for (auto& [name, value] : values) {
        name = MakeName(random);
        value = MakeStoredValue(random, kLongest);
    }
    return values;
}

class HostileRegistryKeyTest : public CLeakCheckedTest {
protected:
    void SetUp() override {
        CLeakCheckedTest::SetUp();
        Create();
    }
    void TearDown() override {
        m_key.Reset();
        CLeakCheckedTest::TearDown();
    }

    void Create() {
        m_key.Reset();
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, Path().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  m_key.Receive(), nullptr),
                  ERROR_SUCCESS);
    }
    [[nodiscard]] std::wstring Path() const { return m_registry.AgentKey(); }
    [[nodiscard]] HKEY Key() const { return m_key.Get(); }

private:
    const CAgentRegistry m_registry;
    CRegistryKey m_key;
};

TEST_F(HostileRegistryKeyTest, AnyKeyTellsTheValuesThatTheModelTells) {
    CHostileCases cases({kEmpty, kOne, kSeveral});

    cases.Run([&](CRandom& random) {
        const std::vector<NamedValue> values = MakeValues(random);
        for (const auto& [name, value] : values) {
            Store(Key(), name, value);
        }
        const Told expected = ExpectedValues(values);

        EXPECT_EQ(Read(Path()), (ReadKey{S_OK, expected}));

        for (const auto& [name, value] : values) {
            RegDeleteValueW(Key(), name.c_str());
        }
        return expected.empty() ? kEmpty : expected.size() == 1 ? kOne : kSeveral;
    });
}

// ---- while it is read -----------------------------------------------------------------------------------

/// One value through its life: it is written anew before each question for it, and at last perhaps deleted.
struct Life {
    HKEY key;
    std::wstring path;
    std::vector<StoredValue> versions;
    std::size_t asked;
    const char* end;   // kRewritten: none
    std::size_t told;  // the version that was there at the last question
    bool hasEnded;
};
Life g_life;
decltype(&RegEnumValueW) g_enumValue = nullptr;

LSTATUS WINAPI ChangeAndTell(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                             BYTE* data, DWORD* size) {
    if (index > 0) {
        return g_enumValue(key, index, name, nameLength, reserved, type, data, size);
    }
    if (g_life.asked < g_life.versions.size()) {
        g_life.told = g_life.asked++;
        Store(g_life.key, L"Value", g_life.versions[g_life.told]);
    } else if (g_life.end == kDeleted) {
        g_life.hasEnded = true;
        RegDeleteValueW(g_life.key, L"Value");
    } else if (g_life.end == kKeyDeleted) {
        g_life.hasEnded = true;
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, g_life.path.c_str());
    }
    return g_enumValue(key, index, name, nameLength, reserved, type, data, size);
}

/// The versions grow at a pace that the reader's room sometimes keeps up with and sometimes does not.
std::vector<StoredValue> MakeVersions(CRandom& random) {
    std::vector<StoredValue> versions(random.Below(5));
    std::size_t size = random.Between(0, 6000);
    for (StoredValue& version : versions) {
        version = MakeStoredValue(random, kLongest);
        if (random.OneIn(2)) {
            version.bytes.resize(size, 'g');
        }
        size = random.Between(size, size * 3 + 1);
    }
    return versions;
}

TEST_F(HostileRegistryKeyTest, AKeyThatChangesMeanwhileTellsAValueThatItHad) {
    g_enumValue = reinterpret_cast<decltype(g_enumValue)>(*FindImportSlot(GetModuleHandleW(nullptr), "RegEnumValueW"));
    const CImportHook hook(GetModuleHandleW(nullptr), "RegEnumValueW", AddressOf(&ChangeAndTell));
    static constexpr const char* kEnds[] = {kRewritten, kRewritten, kDeleted, kKeyDeleted};
    CHostileCases cases({kRewritten, kDeleted, kKeyDeleted});

    cases.Run([&](CRandom& random) {
        g_life = {Key(), Path(), MakeVersions(random), 0, random.Pick(kEnds), 0, false};

        const ReadKey read = Read(Path());

        ReadKey expected{S_OK, {}};
        if (g_life.hasEnded && g_life.end == kKeyDeleted) {
            expected = {HRESULT_FROM_WIN32(ERROR_KEY_DELETED), {L"earlier=text x"}};
            Create();
        } else if (!g_life.hasEnded && g_life.asked > 0) {
            expected.told = ExpectedValues({{L"Value", g_life.versions[g_life.told]}});
        }
        EXPECT_EQ(read, expected);

        RegDeleteValueW(Key(), L"Value");
        return g_life.hasEnded ? g_life.end : kRewritten;
    });
}

}  // namespace
