#include "CResourceLedger.h"

#include <objbase.h>

#include <atomic>
#include <cstring>
#include <ostream>
#include <tuple>

#include "CImportHook.h"

namespace {

std::atomic<long> g_criticalSections{0};
std::atomic<long> g_locksHeld{0};
std::atomic<long> g_registryKeys{0};
std::atomic<long> g_libraries{0};
std::atomic<long> g_searches{0};
std::atomic<long> g_heapBlocks{0};
std::atomic<long> g_comBlocks{0};

// The hooks call on through these, which hold the system's functions: the imports of the same names are what was
// replaced.
decltype(&InitializeCriticalSectionAndSpinCount) g_initializeCriticalSection;
decltype(&DeleteCriticalSection) g_deleteCriticalSection;
decltype(&EnterCriticalSection) g_enterCriticalSection;
decltype(&LeaveCriticalSection) g_leaveCriticalSection;
decltype(&RegOpenKeyExW) g_regOpenKey;
decltype(&RegCreateKeyExW) g_regCreateKey;
decltype(&RegCloseKey) g_regCloseKey;
decltype(&LoadLibraryW) g_loadLibrary;
decltype(&FreeLibrary) g_freeLibrary;
decltype(&FindFirstFileW) g_findFirstFile;
decltype(&FindClose) g_findClose;
decltype(&HeapAlloc) g_heapAlloc;
decltype(&HeapFree) g_heapFree;

BOOL WINAPI CountInitialize(CRITICAL_SECTION* section, DWORD spinCount) {
    const BOOL done = g_initializeCriticalSection(section, spinCount);
    g_criticalSections += done ? 1 : 0;
    return done;
}

void WINAPI CountDelete(CRITICAL_SECTION* section) {
    --g_criticalSections;
    g_deleteCriticalSection(section);
}

void WINAPI CountEnter(CRITICAL_SECTION* section) {
    g_enterCriticalSection(section);
    ++g_locksHeld;
}

void WINAPI CountLeave(CRITICAL_SECTION* section) {
    --g_locksHeld;
    g_leaveCriticalSection(section);
}

LSTATUS WINAPI CountOpenKey(HKEY parent, const wchar_t* path, DWORD options, REGSAM access, HKEY* key) {
    const LSTATUS status = g_regOpenKey(parent, path, options, access, key);
    g_registryKeys += status == ERROR_SUCCESS ? 1 : 0;
    return status;
}

LSTATUS WINAPI CountCreateKey(HKEY parent, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                              REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition) {
    const LSTATUS status =
        g_regCreateKey(parent, path, reserved, keyClass, options, access, security, key, disposition);
    g_registryKeys += status == ERROR_SUCCESS ? 1 : 0;
    return status;
}

LSTATUS WINAPI CountCloseKey(HKEY key) {
    --g_registryKeys;
    return g_regCloseKey(key);
}

HMODULE WINAPI CountLoadLibrary(const wchar_t* path) {
    const HMODULE module = g_loadLibrary(path);
    g_libraries += module ? 1 : 0;
    return module;
}

BOOL WINAPI CountFreeLibrary(HMODULE module) {
    --g_libraries;
    return g_freeLibrary(module);
}

HANDLE WINAPI CountFindFirst(const wchar_t* pattern, WIN32_FIND_DATAW* match) {
    const HANDLE search = g_findFirstFile(pattern, match);
    g_searches += search != INVALID_HANDLE_VALUE ? 1 : 0;
    return search;
}

BOOL WINAPI CountFindClose(HANDLE search) {
    --g_searches;
    return g_findClose(search);
}

void* WINAPI CountHeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes) {
    void* const block = g_heapAlloc(heap, flags, bytes);
    g_heapBlocks += block ? 1 : 0;
    return block;
}

BOOL WINAPI CountHeapFree(HANDLE heap, DWORD flags, void* block) {
    g_heapBlocks -= block ? 1 : 0;
    return g_heapFree(heap, flags, block);
}

/// Hooks a function that this program may not import at all, and keeps what was there in `original`.
template <typename Function>
void Hook(const char* name, Function& original, Function replacement) {
    if (void** const slot = FindImportSlot(GetModuleHandleW(nullptr), name)) {
        original = reinterpret_cast<Function>(*slot);
        static_cast<void>(new CImportHook(GetModuleHandleW(nullptr), name, reinterpret_cast<void*>(replacement)));
    }
}

/// COM's allocation spy (IMallocSpy, Windows documentation): counts blocks, changes nothing.
class CMallocSpy : public IMallocSpy {
public:
    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
        const bool known = IsEqualGUID(interfaceId, IID_IMallocSpy) || IsEqualGUID(interfaceId, IID_IUnknown);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }

    STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T bytes) override { return bytes; }
    STDMETHODIMP_(void*) PostAlloc(void* block) override {
        g_comBlocks += block ? 1 : 0;
        return block;
    }
    STDMETHODIMP_(void*) PreFree(void* block, BOOL isSpied) override {
        g_comBlocks -= block && isSpied ? 1 : 0;
        return block;
    }
    STDMETHODIMP_(void) PostFree(BOOL) override {}
    STDMETHODIMP_(SIZE_T) PreRealloc(void* block, SIZE_T bytes, void** newBlock, BOOL) override {
        *newBlock = block;
        return bytes;
    }
    STDMETHODIMP_(void*) PostRealloc(void* block, BOOL) override { return block; }
    STDMETHODIMP_(void*) PreGetSize(void* block, BOOL) override { return block; }
    STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T bytes, BOOL) override { return bytes; }
    STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL) override { return block; }
    STDMETHODIMP_(int) PostDidAlloc(void*, BOOL, int allocated) override { return allocated; }
    STDMETHODIMP_(void) PreHeapMinimize() override {}
    STDMETHODIMP_(void) PostHeapMinimize() override {}
};

auto Fields(const ResourceCounts& c) {
    return std::tie(c.criticalSections, c.locksHeld, c.registryKeys, c.libraries, c.searches, c.heapBlocks,
                    c.comBlocks);
}

}  // namespace

bool operator==(const ResourceCounts& left, const ResourceCounts& right) {
    return Fields(left) == Fields(right);
}

std::ostream& operator<<(std::ostream& out, const ResourceCounts& counts) {
    return out << counts.criticalSections << " critical sections, " << counts.locksHeld << " locks held, "
               << counts.registryKeys << " registry keys, " << counts.libraries << " libraries, " << counts.searches
               << " searches, " << counts.heapBlocks << " heap blocks, " << counts.comBlocks << " COM blocks";
}

CResourceLedger& CResourceLedger::Get() {
    static CResourceLedger ledger;
    return ledger;
}

CResourceLedger::CResourceLedger() {
    Hook("InitializeCriticalSectionAndSpinCount", g_initializeCriticalSection, &CountInitialize);
    Hook("DeleteCriticalSection", g_deleteCriticalSection, &CountDelete);
    Hook("EnterCriticalSection", g_enterCriticalSection, &CountEnter);
    Hook("LeaveCriticalSection", g_leaveCriticalSection, &CountLeave);
    Hook("RegOpenKeyExW", g_regOpenKey, &CountOpenKey);
    Hook("RegCreateKeyExW", g_regCreateKey, &CountCreateKey);
    Hook("RegCloseKey", g_regCloseKey, &CountCloseKey);
    Hook("LoadLibraryW", g_loadLibrary, &CountLoadLibrary);
    Hook("FreeLibrary", g_freeLibrary, &CountFreeLibrary);
    Hook("FindFirstFileW", g_findFirstFile, &CountFindFirst);
    Hook("FindClose", g_findClose, &CountFindClose);
    Hook("HeapAlloc", g_heapAlloc, &CountHeapAlloc);
    Hook("HeapFree", g_heapFree, &CountHeapFree);
    CoRegisterMallocSpy(new CMallocSpy);
}

ResourceCounts CResourceLedger::Count() const {
    return {g_criticalSections, g_locksHeld, g_registryKeys, g_libraries, g_searches, g_heapBlocks, g_comBlocks};
}
