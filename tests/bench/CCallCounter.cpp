#include "CCallCounter.h"

#include <oleauto.h>

#include <cstdlib>

#include "FakeFunctionNames.h"

namespace {

long g_locks = 0;
long g_allocations = 0;
long g_heapBlocks = 0;
long g_texts = 0;

// What stood in the places of the hooks: the system's functions, or another account's hooks.
decltype(&EnterCriticalSection) g_enterCriticalSection;
decltype(&std::malloc) g_malloc;
decltype(&HeapAlloc) g_heapAlloc;
decltype(&SysAllocStringLen) g_sysAllocStringLen;

void WINAPI CountEnter(CRITICAL_SECTION* section) {
    ++g_locks;
    g_enterCriticalSection(section);
}

// C++'s `new` of this program comes through it; the library itself never calls it.
void* CountMalloc(std::size_t bytes) {
    ++g_allocations;
    return g_malloc(bytes);
}

void* WINAPI CountHeapAlloc(HANDLE heap, DWORD flags, SIZE_T bytes) {
    ++g_heapBlocks;
    return g_heapAlloc(heap, flags, bytes);
}

BSTR WINAPI CountText(const OLECHAR* characters, UINT count) {
    ++g_texts;
    return g_sysAllocStringLen(characters, count);
}

/// Remembers what is there before the hook, which then stands in the same place.
template <typename Function>
void* Replace(const char* name, Function& original, Function replacement) {
    if (void** const slot = FindImportSlot(GetModuleHandleW(nullptr), name)) {
        original = reinterpret_cast<Function>(*slot);
    }
    return reinterpret_cast<void*>(replacement);
}

}  // namespace

CCallCounter::CCallCounter(IFakeRuntime& fake)
    : m_fake(fake),
      m_locks(GetModuleHandleW(nullptr), "EnterCriticalSection",
              Replace("EnterCriticalSection", g_enterCriticalSection, &CountEnter)),
      m_allocations(GetModuleHandleW(nullptr), "malloc", Replace("malloc", g_malloc, &CountMalloc)),
      m_heapBlocks(GetModuleHandleW(nullptr), "HeapAlloc", Replace("HeapAlloc", g_heapAlloc, &CountHeapAlloc)),
      m_texts(GetModuleHandleW(nullptr), "SysAllocStringLen",
              Replace("SysAllocStringLen", g_sysAllocStringLen, &CountText)) {}

CallCounts CCallCounter::Count() const {
    CallCounts counts;
    counts.locks = g_locks;
    counts.allocations = g_allocations;
    counts.heapBlocks = g_heapBlocks;
    counts.texts = g_texts;
    for (const char* const name : kFunctionNames) {
        counts.jni.push_back(m_fake.GetCallCount(name));
    }
    return counts;
}

CallCounts operator-(const CallCounts& left, const CallCounts& right) {
    CallCounts difference = left;
    for (std::size_t i = 0; i < left.jni.size(); ++i) {
        difference.jni[i] -= right.jni[i];
    }
    difference.locks -= right.locks;
    difference.allocations -= right.allocations;
    difference.heapBlocks -= right.heapBlocks;
    difference.texts -= right.texts;
    return difference;
}

std::string CallCounts::TellJni() const {
    std::string text;
    for (std::size_t i = 0; i < jni.size(); ++i) {
        if (jni[i] != 0) {
            text += (text.empty() ? "" : ", ") + std::string(kFunctionNames[i]) + " " + std::to_string(jni[i]);
        }
    }
    return text.empty() ? "none" : text;
}

long CallCounts::CountJni() const noexcept {
    long sum = 0;
    for (const long calls : jni) {
        sum += calls;
    }
    return sum;
}
