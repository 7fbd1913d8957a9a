#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "CImportHook.h"
#include "IFakeRuntime.h"

/// What the program called, of the kinds that cost time.
struct CallCounts {
    std::vector<long> jni;  ///< by function, in the order of kFunctionNames
    long locks = 0;         ///< critical sections entered
    long allocations = 0;   ///< blocks from C++'s `new`
    long heapBlocks = 0;    ///< blocks of the process heap taken directly
    long texts = 0;         ///< BSTRs made

    friend CallCounts operator-(const CallCounts& left, const CallCounts& right);

    /// The calls of JNI's, as "NewString 1, NewObjectV 1"; "none".
    [[nodiscard]] std::string TellJni() const;
    [[nodiscard]] long CountJni() const noexcept;
};

/// Counts from the moment it is made; one at a time, on one thread. It hooks this program's imports and so sees the
/// library, which is linked into it, but nothing of the system's or of Java's.
class CCallCounter {
public:
    explicit CCallCounter(IFakeRuntime& fake);

    [[nodiscard]] CallCounts Count() const;

private:
    IFakeRuntime& m_fake;
    const CImportHook m_locks;
    const CImportHook m_allocations;
    const CImportHook m_heapBlocks;
    const CImportHook m_texts;
};
