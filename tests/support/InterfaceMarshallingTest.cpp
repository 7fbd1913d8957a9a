#include "InterfaceMarshalling.h"

#include <objbase.h>

#include <string>
#include <vector>

#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "SystemHandles.h"

namespace {

// No interface of anybody's: made for these tests.
constexpr IID kTestInterface = {0x7B1F0C52, 0x3D0A, 0x4C1B, {0x9A, 0x41, 0x52, 0xE6, 0x0D, 0x77, 0xC3, 0x10}};
constexpr wchar_t kInterfaceKey[] = L"Interface\\{7B1F0C52-3D0A-4C1B-9A41-52E60D77C310}";
constexpr wchar_t kMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

HRESULT WINAPI RefuseText(REFCLSID, LPOLESTR*) {
    return E_OUTOFMEMORY;
}
LSTATUS WINAPI RefuseToWrite(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI RefuseToOpen(HKEY, const wchar_t*, DWORD, REGSAM, HKEY*) {
    return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI RefuseToCreate(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM, SECURITY_ATTRIBUTES*, HKEY*,
                              DWORD*) {
    return ERROR_ACCESS_DENIED;
}

std::vector<REGSAM> g_accesses;
decltype(&RegOpenKeyExW) g_openKey;
LSTATUS WINAPI NoteAccess(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
    g_accesses.push_back(access);
    return g_openKey(parent, path, options, access, key);
}

class InterfaceMarshallingTest : public CLeakCheckedTest {
protected:
    InterfaceMarshallingTest() { RegDeleteTreeW(HKEY_CLASSES_ROOT, kInterfaceKey); }
    ~InterfaceMarshallingTest() override { RegDeleteTreeW(HKEY_CLASSES_ROOT, kInterfaceKey); }

    static std::wstring KeyPath(const wchar_t* name) { return std::wstring(kInterfaceKey) + L"\\" + name; }

    static void MakeKey(const std::wstring& path, DWORD options = REG_OPTION_NON_VOLATILE) {
        CRegistryKey key;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr,
                                  key.Receive(), nullptr),
                  ERROR_SUCCESS);
    }

    static void SetDefault(const wchar_t* name, DWORD type, const std::vector<BYTE>& data) {
        MakeKey(KeyPath(name));
        ASSERT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, KeyPath(name).c_str(), nullptr, type, data.data(),
                                  static_cast<DWORD>(data.size())),
                  ERROR_SUCCESS);
    }

    /// The key's default value as it is stored, its type in front: "1:..." for a REG_SZ; "missing" without one.
    static std::wstring DefaultOf(const wchar_t* name) {
        DWORD type = 0;
        wchar_t text[200] = {};
        DWORD size = sizeof(text);
        const LSTATUS status = RegGetValueW(HKEY_CLASSES_ROOT, KeyPath(name).c_str(), nullptr,
                                            RRF_RT_ANY | RRF_NOEXPAND, &type, text, &size);
        return status == ERROR_SUCCESS ? std::to_wstring(type) + L":" + text : L"missing";
    }

    const std::wstring m_registered = L"1:" + std::wstring(kMarshaller);
};

TEST_F(InterfaceMarshallingTest, WritesTheAutomationMarshallerUnderBothKeys) {
    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);

    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), m_registered);
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), m_registered);
}

TEST_F(InterfaceMarshallingTest, ComFindsTheMarshaller) {
    ASSERT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);

    CLSID marshaller = CLSID_NULL;
    const HRESULT found = CoGetPSClsid(kTestInterface, &marshaller);
    CoUninitialize();

    EXPECT_EQ(found, S_OK);
    CLSID expected = CLSID_NULL;
    ASSERT_EQ(CLSIDFromString(kMarshaller, &expected), S_OK);
    EXPECT_TRUE(IsEqualGUID(marshaller, expected));
}

TEST_F(InterfaceMarshallingTest, StoresTheClosingZero) {
    ASSERT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);

    DWORD type = 0;
    DWORD size = 0;
    CRegistryKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, KeyPath(L"ProxyStubClsid32").c_str(), 0, KEY_READ, key.Receive()),
              ERROR_SUCCESS);
    ASSERT_EQ(RegQueryValueExW(key.Get(), nullptr, nullptr, &type, nullptr, &size), ERROR_SUCCESS);

    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(size, (38 + 1) * 2U);
}

TEST_F(InterfaceMarshallingTest, ASecondRunChangesNothing) {
    ASSERT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
    const CImportHook hook(GetModuleHandleW(nullptr), "RegSetValueExW", AddressOf(&RefuseToWrite));

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), m_registered);
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), m_registered);
}

TEST_F(InterfaceMarshallingTest, AnExistingMarshallerIsLeftAlone) {
    SetDefault(L"ProxyStubClsid", REG_SZ, {'x', 0, 0, 0});
    SetDefault(L"ProxyStubClsid32", REG_SZ, {0, 0});

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);

    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), L"1:x");
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), L"1:");
}

TEST_F(InterfaceMarshallingTest, AnExistingValueOfAnotherTypeIsLeftAlone) {
    SetDefault(L"ProxyStubClsid", REG_DWORD, {'7', 0, 0, 0});
    SetDefault(L"ProxyStubClsid32", REG_BINARY, {});

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);

    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), L"4:7");
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), L"3:");
}

TEST_F(InterfaceMarshallingTest, KeysWithoutADefaultValueGetIt) {
    MakeKey(KeyPath(L"ProxyStubClsid"));
    MakeKey(KeyPath(L"ProxyStubClsid32"));

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);

    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), m_registered);
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), m_registered);
}

TEST_F(InterfaceMarshallingTest, OpensItsKeysForReadingAndWriting) {
    g_accesses.clear();
    g_openKey = reinterpret_cast<decltype(g_openKey)>(*FindImportSlot(GetModuleHandleW(nullptr), "RegOpenKeyExW"));
    {
        const CImportHook hook(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&NoteAccess));
        ASSERT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
    }

    EXPECT_EQ(g_accesses, (std::vector<REGSAM>{0x2001F, 0x2001F}));
}

TEST_F(InterfaceMarshallingTest, AnIdThatHasNoTextIsASuccessThatRegistersNothing) {
    const CImportHook hook(GetModuleHandleW(nullptr), "StringFromCLSID", AddressOf(&RefuseText));

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), L"missing");
}

TEST_F(InterfaceMarshallingTest, AKeyThatCannotBeHadGivesTheThreadsLastError) {
    const CImportHook open(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&RefuseToOpen));
    const CImportHook create(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(&RefuseToCreate));
    SetLastError(ERROR_INVALID_DATA);

    // Not 0x80070005, which is what the registry functions themselves return here.
    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), static_cast<HRESULT>(0x8007000D));
}

TEST_F(InterfaceMarshallingTest, AKeyThatCannotBeHadWithoutALastErrorIsASuccess) {
    const CImportHook open(GetModuleHandleW(nullptr), "RegOpenKeyExW", AddressOf(&RefuseToOpen));
    const CImportHook create(GetModuleHandleW(nullptr), "RegCreateKeyExW", AddressOf(&RefuseToCreate));
    SetLastError(ERROR_SUCCESS);

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK);
}

TEST_F(InterfaceMarshallingTest, ARegistryThatRefusesNewKeysGivesTheThreadsLastErrorAndWritesNothing) {
    // A real refusal: no lasting key can be made under a volatile one.
    MakeKey(kInterfaceKey, REG_OPTION_VOLATILE);
    SetLastError(ERROR_NOT_READY);

    EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), static_cast<HRESULT>(0x80070015));
    EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), L"missing");
}

LSTATUS g_queryStatus;
LSTATUS WINAPI AnswerQuery(HKEY, const wchar_t*, DWORD*, DWORD*, BYTE*, DWORD*) {
    return g_queryStatus;
}

TEST_F(InterfaceMarshallingTest, OnlyTheAnswersThatNameNothingFoundLeadToAWrite) {
    struct Case {
        LSTATUS status;
        const wchar_t* stored;
    };
    const Case cases[] = {
        {ERROR_ACCESS_DENIED, L"missing"}, {ERROR_MORE_DATA, L"missing"}, {ERROR_NOT_FOUND, m_registered.c_str()}};
    for (const Case& c : cases) {
        g_queryStatus = c.status;
        {
            const CImportHook hook(GetModuleHandleW(nullptr), "RegQueryValueExW", AddressOf(&AnswerQuery));
            EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), S_OK) << c.status;
        }
        EXPECT_EQ(DefaultOf(L"ProxyStubClsid"), c.stored) << c.status;
        EXPECT_EQ(DefaultOf(L"ProxyStubClsid32"), c.stored) << c.status;
    }
}

TEST_F(InterfaceMarshallingTest, AFailedWriteGivesItsErrorAndEndsTheRegistration) {
    MakeKey(KeyPath(L"ProxyStubClsid"));
    {
        const CImportHook hook(GetModuleHandleW(nullptr), "RegSetValueExW", AddressOf(&RefuseToWrite));
        SetLastError(ERROR_INVALID_DATA);

        EXPECT_EQ(RegisterInterfaceMarshalling(kTestInterface), E_ACCESSDENIED);
    }

    CRegistryKey key;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, KeyPath(L"ProxyStubClsid32").c_str(), 0, KEY_READ, key.Receive()),
              ERROR_FILE_NOT_FOUND);
}

}  // namespace
