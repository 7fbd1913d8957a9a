#include "RuntimeLibrary.h"

#include "ThrowResult.h"

namespace {

constexpr char kCreateJavaVM[] = "JNI_CreateJavaVM";

/// Sets the process's DLL search directory and resets it at the end of the scope.
class CDllDirectoryScope {
public:
    explicit CDllDirectoryScope(const std::wstring& directory) noexcept { SetDllDirectoryW(directory.c_str()); }
    ~CDllDirectoryScope() { SetDllDirectoryW(nullptr); }

    CDllDirectoryScope(const CDllDirectoryScope&) = delete;
    CDllDirectoryScope& operator=(const CDllDirectoryScope&) = delete;
};

/// "C:\..." or "\\server\...".
bool IsAbsolute(const std::wstring& path) noexcept {
    const bool hasDrive = path.length() > 2 && path[1] == L':' && path[2] == L'\\';
    const bool isShare = path.compare(0, 2, L"\\\\") == 0;
    return hasDrive || isShare;
}

}  // namespace

HRESULT LoadRuntimeLibrary(const std::wstring& binDirectory, const std::wstring& libraryPath, CModule& library) {
    if (!IsAbsolute(libraryPath)) {
        return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
    }
    const CDllDirectoryScope searchDirectory(binDirectory);
    library.Reset(LoadLibraryW(libraryPath.c_str()));
    return library ? S_OK : LastErrorResult();
}

CreateJavaVMFunction FindCreateJavaVM(const CModule& library) noexcept {
    return reinterpret_cast<CreateJavaVMFunction>(
        reinterpret_cast<void*>(GetProcAddress(library.Get(), kCreateJavaVM)));
}

bool PinRuntimeLibrary(CreateJavaVMFunction function) noexcept {
    HMODULE pinned = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<const wchar_t*>(function), &pinned) != FALSE;
}
