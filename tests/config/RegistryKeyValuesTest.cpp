#include "RegistryKeyValues.h"

#include "CAgentRegistry.h"
#include "CBstr.h"
#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "SystemHandles.h"

namespace {

using Texts = std::vector<std::wstring>;

constexpr HRESULT kNotFound = static_cast<HRESULT>(0x80070002);

std::wstring Describe(const VARIANT& value) {
    switch (value.vt) {
        case VT_BSTR:
            return L"text '" + std::wstring(ViewBstr(value.bstrVal)) + L"'";
        case VT_I4:
            return L"number " + std::to_wstring(value.lVal);
        case VT_ARRAY | VT_BSTR: {
            std::wstring texts(L"texts");
            for (ULONG i = 0; i < value.parray->rgsabound[0].cElements; ++i) {
                texts += L" '" + std::wstring(ViewBstr(static_cast<BSTR*>(value.parray->pvData)[i])) + L"'";
            }
            return texts;
        }
        default:
            return L"type " + std::to_wstring(value.vt);
    }
}

class RegistryKeyValuesTest : public CLeakCheckedTest {
protected:
    struct Case {
        const char* what;
        DWORD type;
        std::vector<BYTE> bytes;
        std::wstring expected;
    };

    [[nodiscard]] std::wstring Key() const { return m_registry.AgentKey(); }
    void Set(const wchar_t* name, DWORD type, const std::vector<BYTE>& bytes) const {
        CAgentRegistry::SetBytes(Key(), name, type, bytes);
    }

    /// The values by their names; on failure those that were there before, which is one.
    struct Outcome {
        HRESULT result;
        Texts values;

        friend bool operator==(const Outcome& left, const Outcome& right) {
            return left.result == right.result && left.values == right.values;
        }
        friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
            return out << std::hex << outcome.result << std::dec << " " << outcome.values.size() << ": "
                       << (outcome.values.empty() ? "" : testing::PrintToString(outcome.values[0].substr(0, 100)));
        }
    };
    [[nodiscard]] Outcome Read() const {
        RegistryValues values;
        values[L"earlier"].SetText(L"x");
        const HRESULT result = ReadRegistryKeyValues(HKEY_LOCAL_MACHINE, Key(), values);
        Outcome outcome{result, {}};
        for (const auto& [name, value] : values) {
            outcome.values.push_back(name + L"=" + Describe(value));
        }
        return outcome;
    }
    [[nodiscard]] static Texts Untouched() { return {L"earlier=text 'x'"}; }

    /// Each value alone under the key; nothing expected: it is left out.
    void ExpectEach(const std::vector<Case>& cases) const {
        for (const Case& c : cases) {
            Set(L"Value", c.type, c.bytes);
            const Texts expected = c.expected.empty() ? Texts{} : Texts{L"Value=" + c.expected};
            EXPECT_EQ(Read(), (Outcome{S_OK, expected})) << c.what;
        }
    }

    const CAgentRegistry m_registry;
};

std::vector<BYTE> Raw(const std::wstring& characters) {
    return BytesOf(characters, 0);
}

TEST_F(RegistryKeyValuesTest, EachTypeHasItsKindOfVariant) {
    ExpectEach({
        {"a text", REG_SZ, BytesOf(L"abc"), L"text 'abc'"},
        {"an expandable text", REG_EXPAND_SZ, BytesOf(L"%SystemRoot%\\x"), L"text '%SystemRoot%\\x'"},
        {"a number", REG_DWORD, {1, 2, 0, 0}, L"number 513"},
        {"a number above the signed ones", REG_DWORD, {0xFE, 0xFF, 0xFF, 0xFF}, L"number -2"},
        {"texts", REG_MULTI_SZ, Raw(std::wstring(L"a\0bc\0\0", 6)), L"texts 'a' 'bc'"},
    });
}

TEST_F(RegistryKeyValuesTest, ValuesOfOtherTypesAreLeftOut) {
    ExpectEach({
        {"bytes", REG_BINARY, BytesOf(L"abc"), L""},
        {"a long number", REG_QWORD, {1, 2, 3, 4, 5, 6, 7, 8}, L""},
        {"nothing", REG_NONE, {}, L""},
        {"nothing with bytes", REG_NONE, BytesOf(L"abc"), L""},
        {"a link", REG_LINK, BytesOf(L"abc"), L""},
        {"a number in another order", REG_DWORD_BIG_ENDIAN, {0, 0, 0, 1}, L""},
        {"a type that does not exist", 0x1234, BytesOf(L"abc"), L""},
        {"a number of three bytes", REG_DWORD, {1, 2, 3}, L""},
        {"a number of none", REG_DWORD, {}, L""},
    });
}

TEST_F(RegistryKeyValuesTest, ANumberOfMoreBytesIsItsFirstFour) {
    ExpectEach({{"eight", REG_DWORD, {1, 0, 0, 0, 9, 9, 9, 9}, L"number 1"}});
}

TEST_F(RegistryKeyValuesTest, ADamagedTextIsWhatCanBeReadOfIt) {
    ExpectEach({
        {"no bytes", REG_SZ, {}, L"text ''"},
        {"a zero", REG_SZ, BytesOf(L""), L"text ''"},
        {"one byte", REG_SZ, {'a'}, L"text ''"},
        {"an odd number", REG_SZ, {'a', 0, 'b', 0, 'c'}, L"text 'ab'"},
        {"without its zero", REG_SZ, Raw(L"abc"), L"text 'abc'"},
        {"expandable, without its zero", REG_EXPAND_SZ, Raw(L"abc"), L"text 'abc'"},
        {"with more behind its zero", REG_SZ, Raw(std::wstring(L"ab\0cd\0", 6)), L"text 'ab'"},
    });
}

TEST_F(RegistryKeyValuesTest, TextsEndAtTheirZerosAndTheListAtItsLastText) {
    ExpectEach({
        {"no bytes", REG_MULTI_SZ, {}, L"texts"},
        {"one byte", REG_MULTI_SZ, {'a'}, L"texts"},
        {"one zero", REG_MULTI_SZ, Raw(std::wstring(1, L'\0')), L"texts"},
        {"zeros", REG_MULTI_SZ, Raw(std::wstring(5, L'\0')), L"texts"},
        {"an empty text between", REG_MULTI_SZ, Raw(std::wstring(L"a\0\0b\0\0", 6)), L"texts 'a' '' 'b'"},
        {"an empty text first", REG_MULTI_SZ, Raw(std::wstring(L"\0a\0\0", 4)), L"texts '' 'a'"},
        {"more closing zeros", REG_MULTI_SZ, Raw(std::wstring(L"a\0b\0\0\0\0\0", 8)), L"texts 'a' 'b'"},
        {"one closing zero", REG_MULTI_SZ, Raw(std::wstring(L"a\0b\0", 4)), L"texts 'a' 'b'"},
        {"no closing zero", REG_MULTI_SZ, Raw(std::wstring(L"a\0b", 3)), L"texts 'a' 'b'"},
        {"one open text", REG_MULTI_SZ, Raw(L"abc"), L"texts 'abc'"},
        {"an odd number", REG_MULTI_SZ, {'a', 0, 0, 0, 'b'}, L"texts 'a'"},
    });
}

TEST_F(RegistryKeyValuesTest, TenThousandTextsAreAllThere) {
    std::wstring joined;
    std::wstring expected(L"texts");
    for (int i = 0; i < 10'000; ++i) {
        joined += std::to_wstring(i) + L'\0';
        expected += L" '" + std::to_wstring(i) + L"'";
    }

    ExpectEach({{"texts", REG_MULTI_SZ, BytesOf(joined), expected}});
}

TEST_F(RegistryKeyValuesTest, SizesAroundTheFirstRoomAndAMegabyteAreReadWhole) {
    for (const std::size_t characters : {2046U, 2047U, 2048U, 2049U, 4095U, 4096U, 500'000U}) {
        const std::wstring text(characters, L'x');
        ExpectEach({{"a text", REG_SZ, BytesOf(text), L"text '" + text + L"'"},
                    {"texts", REG_MULTI_SZ, BytesOf(text, 2), L"texts '" + text + L"'"}});
    }
}

TEST_F(RegistryKeyValuesTest, GreatAndSmallValuesDoNotMix) {
    const std::wstring great(10'000, L'g');
    Set(L"a", REG_SZ, BytesOf(great));
    Set(L"b", REG_SZ, BytesOf(L"small"));
    Set(L"c", REG_MULTI_SZ, {});
    Set(L"d", REG_BINARY, BytesOf(great));
    Set(L"e", REG_SZ, {});
    Set(L"f", REG_DWORD, {7, 0, 0, 0});

    EXPECT_EQ(
        Read(),
        (Outcome{S_OK, {L"a=text '" + great + L"'", L"b=text 'small'", L"c=texts", L"e=text ''", L"f=number 7"}}));
}

TEST_F(RegistryKeyValuesTest, TenThousandValuesAreAllThere) {
    CRegistryKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, Key().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Receive(),
                              nullptr),
              ERROR_SUCCESS);
    Texts expected;
    for (int i = 10'000; i < 20'000; ++i) {
        const std::wstring name = std::to_wstring(i);
        const std::vector<BYTE> bytes = BytesOf(L"of " + name);
        ASSERT_EQ(RegSetValueExW(key.Get(), name.c_str(), 0, REG_SZ, bytes.data(), static_cast<DWORD>(bytes.size())),
                  ERROR_SUCCESS);
        std::wstring value = name;
        expected.push_back(value.append(L"=text 'of ").append(name).append(L"'"));
    }

    EXPECT_EQ(Read(), (Outcome{S_OK, expected}));
}

TEST_F(RegistryKeyValuesTest, OddNamesAreNames) {
    const std::wstring longest(16'383, L'n');
    for (const std::wstring& name :
         {std::wstring(), std::wstring(L"a\\b"), std::wstring(L" = "), std::wstring(L"\u00e9\u4e2d\n"), longest}) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, Key().c_str());
        Set(name.c_str(), REG_SZ, BytesOf(L"x"));

        EXPECT_EQ(Read(), (Outcome{S_OK, {name + L"=text 'x'"}})) << testing::PrintToString(name.substr(0, 20));
    }
}

TEST_F(RegistryKeyValuesTest, NamesAreFoundInAnyCase) {
    Set(L"AdapterCertificate\u00e9", REG_SZ, BytesOf(L"x"));
    RegistryValues values;

    ASSERT_EQ(ReadRegistryKeyValues(HKEY_LOCAL_MACHINE, Key(), values), S_OK);

    EXPECT_EQ(values.count(L"AdapterCertificate\u00e9"), 1U);
    EXPECT_EQ(values.count(L"ADAPTERCERTIFICATE\u00c9"), 1U);
    EXPECT_EQ(values.count(L"adaptercertificate\u00e9"), 1U);
    EXPECT_EQ(values.count(L"AdapterCertificate"), 0U);
    EXPECT_EQ(values.count(L"AdapterCertificate\u00e9 "), 0U);
}

TEST_F(RegistryKeyValuesTest, SubkeysAreNoValues) {
    Set(L"Value", REG_SZ, BytesOf(L"x"));
    CAgentRegistry::SetBytes(Key() + L"\\Below", L"Other", REG_SZ, BytesOf(L"y"));

    EXPECT_EQ(Read(), (Outcome{S_OK, {L"Value=text 'x'"}}));
}

TEST_F(RegistryKeyValuesTest, AKeyWithoutValuesHasNone) {
    CAgentRegistry::SetBytes(Key() + L"\\Below", L"Other", REG_SZ, BytesOf(L"y"));

    EXPECT_EQ(Read(), (Outcome{S_OK, {}}));
}

TEST_F(RegistryKeyValuesTest, AKeyThatIsNotThereIsTheRegistrysErrorAndTouchesNothing) {
    EXPECT_EQ(Read(), (Outcome{kNotFound, Untouched()}));
}

TEST_F(RegistryKeyValuesTest, APathThatBeginsWithABackslashDoesNotOpen) {
    Set(L"Value", REG_SZ, BytesOf(L"x"));
    RegistryValues values;

    EXPECT_TRUE(FAILED(ReadRegistryKeyValues(HKEY_LOCAL_MACHINE, L"\\" + Key(), values)));

    EXPECT_EQ(values.size(), 0U);
}

TEST_F(RegistryKeyValuesTest, TheKeysOfPerformanceDataEndInAResult) {
    for (HKEY const root : {HKEY_PERFORMANCE_DATA, HKEY_PERFORMANCE_TEXT, HKEY_PERFORMANCE_NLSTEXT}) {
        RegistryValues values;

        EXPECT_TRUE(FAILED(ReadRegistryKeyValues(root, Key(), values)));

        EXPECT_EQ(values.size(), 0U);
    }
}

// What happens to the key while it is read.
decltype(&RegEnumValueW) g_enumValue;
std::wstring g_key;
long g_calls;

/// At the second value the key is deleted.
LSTATUS WINAPI DeleteAtTheSecond(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                                 BYTE* data, DWORD* size) {
    if (index == 1) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, g_key.c_str());
    }
    return g_enumValue(key, index, name, nameLength, reserved, type, data, size);
}

/// Before each of its first reads the value grows by far more than there was room for.
LSTATUS WINAPI GrowEachTime(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                            BYTE* data, DWORD* size) {
    if (++g_calls <= 4) {
        const std::wstring text(static_cast<std::size_t>(g_calls * g_calls) * 20'000, L'g');
        CAgentRegistry::SetBytes(g_key, L"Value", REG_SZ, BytesOf(text));
    }
    return g_enumValue(key, index, name, nameLength, reserved, type, data, size);
}

/// There is always more data, and no word of how much, until there is room for a megabyte.
LSTATUS WINAPI TellNoSize(HKEY, DWORD index, wchar_t* name, DWORD* nameLength, DWORD*, DWORD* type, BYTE* data,
                          DWORD* size) {
    ++g_calls;
    if (index == 1) {
        return ERROR_NO_MORE_ITEMS;
    }
    if (*size < 1'000'000) {
        *size = 0;
        return ERROR_MORE_DATA;
    }
    name[0] = L'V';
    *nameLength = 1;
    *type = REG_SZ;
    data[0] = 'x';
    data[1] = 0;
    *size = 2;
    return ERROR_SUCCESS;
}

LSTATUS WINAPI DenyTheSecond(HKEY key, DWORD index, wchar_t* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                             BYTE* data, DWORD* size) {
    return index == 1 ? ERROR_ACCESS_DENIED : g_enumValue(key, index, name, nameLength, reserved, type, data, size);
}

class RegistryKeyChangesTest : public RegistryKeyValuesTest {
protected:
    /// Reads the key through `hook`.
    [[nodiscard]] Outcome ReadThrough(decltype(&RegEnumValueW) hook) const {
        g_enumValue = reinterpret_cast<decltype(g_enumValue)>(*FindImportSlot(GetModuleHandleW(nullptr), kFunction));
        g_key = Key();
        g_calls = 0;
        const CImportHook hooked(GetModuleHandleW(nullptr), kFunction, AddressOf(hook));
        return Read();
    }

private:
    static constexpr char kFunction[] = "RegEnumValueW";
};

TEST_F(RegistryKeyChangesTest, AKeyThatIsDeletedMeanwhileIsTheRegistrysError) {
    Set(L"a", REG_SZ, BytesOf(L"x"));
    Set(L"b", REG_SZ, BytesOf(L"y"));

    EXPECT_EQ(ReadThrough(&DeleteAtTheSecond), (Outcome{HRESULT_FROM_WIN32(ERROR_KEY_DELETED), Untouched()}));
}

TEST_F(RegistryKeyChangesTest, AValueThatGrowsMeanwhileIsReadWhole) {
    Set(L"Value", REG_SZ, BytesOf(L"x"));

    EXPECT_EQ(ReadThrough(&GrowEachTime), (Outcome{S_OK, {L"Value=text '" + std::wstring(320'000, L'g') + L"'"}}));
}

TEST_F(RegistryKeyChangesTest, AValueWhoseSizeIsNotToldGetsTwiceTheRoomEachTime) {
    Set(L"Value", REG_SZ, BytesOf(L"x"));

    EXPECT_EQ(ReadThrough(&TellNoSize), (Outcome{S_OK, {L"V=text 'x'"}}));

    EXPECT_EQ(g_calls, 10) << "8 times too little, once enough, and the end";
}

TEST_F(RegistryKeyChangesTest, AValueThatIsDeniedFailsTheWholeKey) {
    Set(L"a", REG_SZ, BytesOf(L"x"));
    Set(L"b", REG_SZ, BytesOf(L"y"));

    EXPECT_EQ(ReadThrough(&DenyTheSecond), (Outcome{E_ACCESSDENIED, Untouched()}));
}

}  // namespace
