#include "RuntimeLibrary.h"

#include "CHresultException.h"
#include "CImportHook.h"
#include "CJavaVM.h"
#include "CFakeJvmTest.h"
#include "TestPaths.h"

namespace {

// How a runtime library is found, loaded and kept; the machine itself is not the matter here.
class RuntimeLibraryTest : public CLeakCheckedTest {
protected:
    RuntimeLibraryTest() { s_loads = {}; }

    struct Load {
        std::wstring path;
        std::wstring dllDirectory;
    };

    static HMODULE WINAPI NoteLoad(const wchar_t* path) {
        wchar_t directory[MAX_PATH] = L"";
        GetDllDirectoryW(MAX_PATH, directory);
        s_loads.push_back({path, directory});
        SetLastError(s_loadError);
        return nullptr;
    }

    static BOOL WINAPI RefuseToPin(DWORD, const wchar_t*, HMODULE*) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }

    static long CreateOn(const wchar_t* runtime) { return CJavaVM(runtime).CreateJavaVM({"-Xrs"}); }

    static inline std::vector<Load> s_loads;
    static inline DWORD s_loadError = ERROR_SUCCESS;
};

TEST_F(RuntimeLibraryTest, TheLibraryLoadsByItsPathWithTheBinDirectorySearched) {
    const CImportHook hook(GetModuleHandleW(nullptr), "LoadLibraryW", AddressOf(&NoteLoad));
    s_loadError = ERROR_MOD_NOT_FOUND;

    EXPECT_EQ(CreateOn(L"C:\\java here\\"), static_cast<long>(0x8007007E));

    ASSERT_EQ(s_loads.size(), 1U);
    EXPECT_EQ(s_loads[0].path, L"C:\\java here\\bin\\server\\jvm.dll");
    EXPECT_EQ(s_loads[0].dllDirectory, L"C:\\java here\\bin");
}

TEST_F(RuntimeLibraryTest, ALoadThatFailsWithoutALastErrorReturnsZeroWithNoMachine) {
    const CImportHook hook(GetModuleHandleW(nullptr), "LoadLibraryW", AddressOf(&NoteLoad));
    s_loadError = ERROR_SUCCESS;
    CJavaVM vm(L"C:\\java\\");

    EXPECT_EQ(vm.CreateJavaVM({}), 0);
    EXPECT_EQ(vm.GetEnv(), nullptr);
    EXPECT_EQ(vm.AttachCurrentThread(), JNI_ERR);

    EXPECT_EQ(vm.CreateJavaVM({}), 0);
    EXPECT_EQ(s_loads.size(), 2U) << "no machine was made, so the next call tries again";
}

TEST_F(RuntimeLibraryTest, ANegativeLastErrorIsReturnedAsItIs) {
    const CImportHook hook(GetModuleHandleW(nullptr), "LoadLibraryW", AddressOf(&NoteLoad));
    s_loadError = static_cast<DWORD>(E_ACCESSDENIED);

    EXPECT_EQ(CreateOn(L"C:\\java\\"), E_ACCESSDENIED);
}

TEST_F(RuntimeLibraryTest, AShareIsAnAbsolutePath) {
    const CImportHook hook(GetModuleHandleW(nullptr), "LoadLibraryW", AddressOf(&NoteLoad));
    s_loadError = ERROR_BAD_NETPATH;

    EXPECT_EQ(CreateOn(L"\\\\server\\share\\java\\"), static_cast<long>(0x80070035));
    EXPECT_EQ(s_loads.size(), 1U);
}

TEST_F(RuntimeLibraryTest, ARelativeDirectoryIsNotTried) {
    const CImportHook hook(GetModuleHandleW(nullptr), "LoadLibraryW", AddressOf(&NoteLoad));

    for (const wchar_t* const relative : {L"", L"java\\", L"\\java\\", L"C:java\\", L"..\\java\\"}) {
        EXPECT_EQ(CreateOn(relative), static_cast<long>(0x8007007E)) << relative;
    }
    EXPECT_TRUE(s_loads.empty());
}

TEST_F(RuntimeLibraryTest, ALibraryThatIsNoJavaRuntimeIsAProcedureNotFound) {
    EXPECT_EQ(CreateOn(TestPaths::kNotJavaRuntime), static_cast<long>(0x8007007F));
}

TEST_F(RuntimeLibraryTest, AFileThatIsNoLibraryIsABadImage) {
    EXPECT_EQ(CreateOn(TestPaths::kDamagedRuntime), static_cast<long>(0x800700C1));
}

TEST_F(RuntimeLibraryTest, ALibraryThatCannotBePinnedStartsNoMachine) {
    const CImportHook hook(GetModuleHandleW(nullptr), "GetModuleHandleExW", AddressOf(&RefuseToPin));
    CJavaVM vm(TestPaths::kFakeRuntime);

    EXPECT_EQ(vm.CreateJavaVM({}), static_cast<long>(0x80070008));
    EXPECT_EQ(vm.GetEnv(), nullptr);
}

}  // namespace
