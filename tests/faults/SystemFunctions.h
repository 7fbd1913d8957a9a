#pragma once

#include <windows.h>

#include <vector>

/// What a system function's failure takes away.
enum class SystemGroup {
    eNone,       ///< it does not fail
    eHeap,       ///< memory of the process heap
    eComMemory,  ///< texts, arrays and values of OLE Automation's, blocks of COM's task allocator
    eSystem      ///< anything else: the registry, files, libraries, conversions, COM classes
};

/// How a failure leaves the product, where it leaves at all.
enum class SystemFailure { eResult, eException };

/// A system function that the product imports: how it fails in a round, or why it does not.
struct SystemFunction {
    const char* name;
    SystemGroup group = SystemGroup::eNone;
    const char* whyNone = nullptr;

    // Of those that fail.
    HRESULT result = S_OK;  ///< what the failure says, as an HRESULT
    SystemFailure leaves = SystemFailure::eResult;
    void* replacement = nullptr;
    void** original = nullptr;  ///< what the replacement calls when it is not to fail
};

/// All of them but those of the C runtime which take memory, move bytes, or are called by the C++ runtime alone.
[[nodiscard]] const std::vector<SystemFunction>& SystemFunctions();

/// Counts a call of the function, a row of that table: whether it is to fail. See CSystemFaults.
[[nodiscard]] bool IsSystemCallToFail(const SystemFunction& function) noexcept;
