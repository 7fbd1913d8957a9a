#include "SystemFunctions.h"

#include <objbase.h>
#include <oleauto.h>
#include <shlwapi.h>

#include <cwchar>

namespace {

// Each different from what any other kind of dependency says.
constexpr DWORD kLastError = ERROR_GEN_FAILURE;
constexpr LSTATUS kStatus = ERROR_LOCK_VIOLATION;
constexpr HRESULT kResult = DISP_E_EXCEPTION;

// Why functions have no failure.
constexpr char kAsks[] = "tells something that is always there";
constexpr char kGivesBack[] = "gives something back: a failure would leave nothing to be done";
constexpr char kLock[] = "enters or leaves a lock that was made; exhausted memory has no way out of it";
constexpr char kArgumentsAlone[] = "fails for bad arguments alone, and these are good by what was done before";
constexpr char kUnwinding[] = "throws, unwinds or describes exceptions";
constexpr char kOfBoost[] = "of Boost.Thread, in parts that thread_specific_ptr does not use";
constexpr char kOfTheRuntime[] = "of the C++ runtime and the thread support library, in parts that no path leads to";

/// Stands in for one function. `Key` makes a class of its own of each: functions of one type need a place each for what
/// they stand in for.
template <typename Key, typename Result, typename... Parameters>
struct ReplacedFunction {
    using Function = Result(WINAPI*)(Parameters...);

    static inline SystemFunction s_row{};
    static inline void* s_original = nullptr;
    static inline Result s_failure{};
    static inline DWORD s_lastError = ERROR_SUCCESS;

    static Result WINAPI Call(Parameters... parameters) {
        if (!IsSystemCallToFail(s_row)) {
            return reinterpret_cast<Function>(s_original)(parameters...);
        }
        if (s_lastError != ERROR_SUCCESS) {
            SetLastError(s_lastError);
        }
        return s_failure;
    }
};

/// The function returns `failure`, and sets its last error if it has one.
template <typename Key, typename Result, typename... Parameters>
SystemFunction Fails(SystemGroup group, const char* name, Result(WINAPI*)(Parameters...), Result failure,
                     HRESULT result, DWORD lastError = ERROR_SUCCESS, SystemFailure leaves = SystemFailure::eResult) {
    using Replaced = ReplacedFunction<Key, Result, Parameters...>;
    Replaced::s_row = {
        name, group, nullptr, result, leaves, reinterpret_cast<void*>(&Replaced::Call), &Replaced::s_original};
    Replaced::s_failure = failure;
    Replaced::s_lastError = lastError;
    return Replaced::s_row;
}

template <typename Key, typename... Parameters>
SystemFunction FailsWithStatus(const char* name, LSTATUS(WINAPI* function)(Parameters...)) {
    return Fails<Key>(SystemGroup::eSystem, name, function, kStatus, HRESULT_FROM_WIN32(kStatus));
}

template <typename Key, typename... Parameters>
SystemFunction FailsWithResult(const char* name, HRESULT(WINAPI* function)(Parameters...),
                               SystemFailure leaves = SystemFailure::eResult) {
    return Fails<Key>(SystemGroup::eSystem, name, function, kResult, kResult, ERROR_SUCCESS, leaves);
}

template <typename Key, typename Result, typename... Parameters>
SystemFunction FailsWithLastError(const char* name, Result(WINAPI* function)(Parameters...), Result failure,
                                  SystemFailure leaves = SystemFailure::eResult) {
    return Fails<Key>(SystemGroup::eSystem, name, function, failure, HRESULT_FROM_WIN32(kLastError), kLastError,
                      leaves);
}

template <typename Key, typename Result, typename... Parameters>
SystemFunction FindsNoMemory(SystemGroup group, const char* name, Result(WINAPI* function)(Parameters...),
                             Result failure) {
    return Fails<Key>(group, name, function, failure, E_OUTOFMEMORY, ERROR_SUCCESS, SystemFailure::eException);
}

/// TlsSetValue fails for indexes of the product's own. Boost's is below that, so that a thread which has storage for
/// the one has it for the other. The product stores the address of its index, Boost that of an object.
struct ReplacedTlsSetValue {
    static inline SystemFunction s_row{};
    static inline void* s_original = nullptr;

    static BOOL WINAPI Call(DWORD index, void* value) {
        const bool isProducts = value && *static_cast<const DWORD*>(value) == index;
        if (isProducts && IsSystemCallToFail(s_row)) {
            return FALSE;
        }
        return reinterpret_cast<decltype(&TlsSetValue)>(s_original)(index, value);
    }
};

SystemFunction StoresNothing() {
    using Replaced = ReplacedTlsSetValue;
    Replaced::s_row = {"TlsSetValue",        SystemGroup::eSystem,      nullptr,
                       E_OUTOFMEMORY,        SystemFailure::eException, reinterpret_cast<void*>(&Replaced::Call),
                       &Replaced::s_original};
    return Replaced::s_row;
}

SystemFunction HasNoFailure(const char* name, const char* why) {
    return {name, SystemGroup::eNone, why};
}

std::vector<SystemFunction> MakeSystemFunctions() {
    constexpr auto kThrown = SystemFailure::eException;
    return {
        // Memory.
        FindsNoMemory<struct HeapAllocKey, void*>(SystemGroup::eHeap, "HeapAlloc", &HeapAlloc, nullptr),
        FindsNoMemory<struct SysAllocStringLenKey, BSTR>(SystemGroup::eComMemory, "SysAllocStringLen",
                                                         &SysAllocStringLen, nullptr),
        FindsNoMemory<struct SysAllocStringByteLenKey, BSTR>(SystemGroup::eComMemory, "SysAllocStringByteLen",
                                                             &SysAllocStringByteLen, nullptr),
        FindsNoMemory<struct SafeArrayCreateVectorKey, SAFEARRAY*>(SystemGroup::eComMemory, "SafeArrayCreateVector",
                                                                   &SafeArrayCreateVector, nullptr),
        FindsNoMemory<struct StringFromCLSIDKey, HRESULT>(SystemGroup::eComMemory, "StringFromCLSID", &StringFromCLSID,
                                                          E_OUTOFMEMORY),
        FindsNoMemory<struct VariantCopyKey, HRESULT>(SystemGroup::eComMemory, "VariantCopy", &VariantCopy,
                                                      E_OUTOFMEMORY),

        // The registry.
        FailsWithStatus<struct RegOpenKeyExWKey>("RegOpenKeyExW", &RegOpenKeyExW),
        FailsWithStatus<struct RegCreateKeyExWKey>("RegCreateKeyExW", &RegCreateKeyExW),
        FailsWithStatus<struct RegQueryValueExWKey>("RegQueryValueExW", &RegQueryValueExW),
        FailsWithStatus<struct RegEnumValueWKey>("RegEnumValueW", &RegEnumValueW),
        FailsWithStatus<struct RegSetValueExWKey>("RegSetValueExW", &RegSetValueExW),
        HasNoFailure("RegCloseKey", kGivesBack),

        // Files and libraries.
        FailsWithLastError<struct FindFirstFileWKey, HANDLE>("FindFirstFileW", &FindFirstFileW, INVALID_HANDLE_VALUE),
        FailsWithLastError<struct FindNextFileWKey, BOOL>("FindNextFileW", &FindNextFileW, FALSE),
        FailsWithLastError<struct GetFullPathNameWKey, DWORD>("GetFullPathNameW", &GetFullPathNameW, 0),
        FailsWithLastError<struct PathCombineWKey, LPWSTR>("PathCombineW", &PathCombineW, nullptr),
        FailsWithLastError<struct SetDllDirectoryWKey, BOOL>("SetDllDirectoryW", &SetDllDirectoryW, FALSE),
        FailsWithLastError<struct LoadLibraryWKey, HMODULE>("LoadLibraryW", &LoadLibraryW, nullptr),
        FailsWithLastError<struct GetProcAddressKey, FARPROC>("GetProcAddress", &GetProcAddress, nullptr),
        FailsWithLastError<struct GetModuleHandleExWKey, BOOL>("GetModuleHandleExW", &GetModuleHandleExW, FALSE),
        HasNoFailure("FindClose", kGivesBack),
        HasNoFailure("FreeLibrary", kGivesBack),

        // Locks and threads.
        FailsWithLastError<struct InitializeCriticalSectionKey, BOOL>(
            "InitializeCriticalSectionAndSpinCount", &InitializeCriticalSectionAndSpinCount, FALSE, kThrown),
        FailsWithLastError<struct TlsAllocKey, DWORD>("TlsAlloc", &TlsAlloc, TLS_OUT_OF_INDEXES, kThrown),
        StoresNothing(),
        FailsWithLastError<struct FlsAllocKey, DWORD>("FlsAlloc", &FlsAlloc, FLS_OUT_OF_INDEXES),
        FailsWithLastError<struct FlsSetValueKey, BOOL>("FlsSetValue", &FlsSetValue, FALSE),
        FindsNoMemory<struct CreateEventAKey, HANDLE>(SystemGroup::eSystem, "CreateEventA", &CreateEventA, nullptr),
        HasNoFailure("DeleteCriticalSection", kGivesBack),
        HasNoFailure("EnterCriticalSection", kLock),
        HasNoFailure("LeaveCriticalSection", kLock),
        HasNoFailure("FlsFree", kGivesBack),
        HasNoFailure("TlsFree", kGivesBack),
        HasNoFailure("CloseHandle", kGivesBack),
        HasNoFailure("GetCurrentThreadId", kAsks),
        HasNoFailure("IsThreadAFiber", kAsks),
        HasNoFailure("RtlDllShutdownInProgress", kAsks),
        HasNoFailure("TlsGetValue", kArgumentsAlone),

        // COM.
        FailsWithResult<struct CLSIDFromProgIDKey>("CLSIDFromProgID", &CLSIDFromProgID),
        FailsWithResult<struct CLSIDFromStringKey>("CLSIDFromString", &CLSIDFromString),
        FailsWithResult<struct CoCreateInstanceKey>("CoCreateInstance", &CoCreateInstance),
        FailsWithResult<struct VariantChangeTypeKey>("VariantChangeType", &VariantChangeType),
        FailsWithResult<struct VarUdateFromDateKey>("VarUdateFromDate", &VarUdateFromDate),
        FailsWithResult<struct SafeArrayGetLBoundKey>("SafeArrayGetLBound", &SafeArrayGetLBound, kThrown),
        FailsWithResult<struct SafeArrayGetUBoundKey>("SafeArrayGetUBound", &SafeArrayGetUBound, kThrown),
        FailsWithResult<struct SafeArrayAccessDataKey>("SafeArrayAccessData", &SafeArrayAccessData),
        HasNoFailure("CoTaskMemFree", kGivesBack),
        HasNoFailure("SafeArrayDestroy", kGivesBack),
        HasNoFailure("SafeArrayUnaccessData", kGivesBack),
        HasNoFailure("SysFreeString", kGivesBack),
        HasNoFailure("VariantClear", kGivesBack),
        HasNoFailure("SafeArrayGetDim", kAsks),
        HasNoFailure("SafeArrayGetElemsize", kAsks),
        HasNoFailure("SysStringByteLen", kAsks),
        HasNoFailure("SysStringLen", kAsks),

        // Texts and times.
        FailsWithLastError<struct FormatMessageWKey, DWORD>("FormatMessageW", &FormatMessageW, 0),
        FailsWithLastError<struct MultiByteToWideCharKey, int>("MultiByteToWideChar", &MultiByteToWideChar, 0, kThrown),
        FailsWithLastError<struct WideCharToMultiByteKey, int>("WideCharToMultiByte", &WideCharToMultiByte, 0, kThrown),
        FailsWithLastError<struct VariantTimeToSystemTimeKey, INT>("VariantTimeToSystemTime", &VariantTimeToSystemTime,
                                                                   FALSE),
        FailsWithLastError<struct SystemTimeToFileTimeKey, BOOL>("SystemTimeToFileTime", &SystemTimeToFileTime, FALSE),
        HasNoFailure("_vscwprintf", kArgumentsAlone),
        Fails<struct WcsftimeKey, size_t>(SystemGroup::eSystem, "wcsftime", &std::wcsftime, 0, E_FAIL),
        HasNoFailure("vswprintf_s", kArgumentsAlone),
        HasNoFailure("wcscat_s", kArgumentsAlone),
        HasNoFailure("wcscpy_s", kArgumentsAlone),
        HasNoFailure("CompareStringOrdinal", kArgumentsAlone),
        HasNoFailure("StrToIntW", "takes any text for a number"),
        HasNoFailure("LocalFree", kGivesBack),

        // The process.
        HasNoFailure("GetCommandLineW", kAsks),
        HasNoFailure("GetLastError", kAsks),
        HasNoFailure("GetProcessHeap", kAsks),
        HasNoFailure("HeapFree", kGivesBack),

        // What comes with exceptions, with Boost.Thread and with the runtime.
        HasNoFailure("RaiseException", kUnwinding),
        HasNoFailure("RtlCaptureContext", kUnwinding),
        HasNoFailure("RtlLookupFunctionEntry", kUnwinding),
        HasNoFailure("RtlUnwindEx", kUnwinding),
        HasNoFailure("RtlVirtualUnwind", kUnwinding),
        HasNoFailure("__C_specific_handler", kUnwinding),
        HasNoFailure("CreateWaitableTimerA", kOfBoost),
        HasNoFailure("GetLogicalProcessorInformation", kOfBoost),
        HasNoFailure("GetModuleHandleA", kOfBoost),
        HasNoFailure("GetTickCount64", kOfBoost),
        HasNoFailure("OpenEventA", kOfBoost),
        HasNoFailure("ReleaseSemaphore", kOfBoost),
        HasNoFailure("ResumeThread", kOfBoost),
        HasNoFailure("SetEvent", kOfBoost),
        HasNoFailure("SetWaitableTimer", kOfBoost),
        HasNoFailure("Sleep", kOfBoost),
        HasNoFailure("WaitForMultipleObjectsEx", kOfBoost),
        HasNoFailure("WaitForSingleObjectEx", kOfBoost),
        HasNoFailure("AddVectoredExceptionHandler", kOfTheRuntime),
        HasNoFailure("CreateSemaphoreA", kOfTheRuntime),
        HasNoFailure("DuplicateHandle", kOfTheRuntime),
        HasNoFailure("FormatMessageA", kOfTheRuntime),
        HasNoFailure("GetCurrentProcess", kOfTheRuntime),
        HasNoFailure("GetCurrentProcessId", kOfTheRuntime),
        HasNoFailure("GetCurrentThread", kOfTheRuntime),
        HasNoFailure("GetHandleInformation", kOfTheRuntime),
        HasNoFailure("GetModuleHandleW", kOfTheRuntime),
        HasNoFailure("GetProcessAffinityMask", kOfTheRuntime),
        HasNoFailure("GetSystemInfo", kOfTheRuntime),
        HasNoFailure("GetSystemTimeAsFileTime", kOfTheRuntime),
        HasNoFailure("GetThreadContext", kOfTheRuntime),
        HasNoFailure("GetThreadPriority", kOfTheRuntime),
        HasNoFailure("InitializeCriticalSection", kOfTheRuntime),
        HasNoFailure("IsDBCSLeadByteEx", kOfTheRuntime),
        HasNoFailure("IsDebuggerPresent", kOfTheRuntime),
        HasNoFailure("OpenProcess", kOfTheRuntime),
        HasNoFailure("OutputDebugStringA", kOfTheRuntime),
        HasNoFailure("QueryPerformanceCounter", kOfTheRuntime),
        HasNoFailure("QueryPerformanceFrequency", kOfTheRuntime),
        HasNoFailure("RemoveVectoredExceptionHandler", kOfTheRuntime),
        HasNoFailure("ResetEvent", kOfTheRuntime),
        HasNoFailure("SetLastError", kOfTheRuntime),
        HasNoFailure("SetProcessAffinityMask", kOfTheRuntime),
        HasNoFailure("SetThreadContext", kOfTheRuntime),
        HasNoFailure("SetThreadPriority", kOfTheRuntime),
        HasNoFailure("SuspendThread", kOfTheRuntime),
        HasNoFailure("TryEnterCriticalSection", kOfTheRuntime),
        HasNoFailure("VirtualProtect", kOfTheRuntime),
        HasNoFailure("VirtualQuery", kOfTheRuntime),
        HasNoFailure("WaitForMultipleObjects", kOfTheRuntime),
        HasNoFailure("WaitForSingleObject", kOfTheRuntime),
    };
}

}  // namespace

const std::vector<SystemFunction>& SystemFunctions() {
    static const std::vector<SystemFunction> functions = MakeSystemFunctions();
    return functions;
}
