#pragma once

#include <windows.h>

/// Puts another function in the place of one that `module` imports, for that module alone and as long as the hook
/// lives. The compiler takes an import for something that never changes: a function that is running may have read it
/// already. Hooks of one function end in the reverse of their order. Throws std::runtime_error when the module does not
/// import the function: a hook that replaces nothing would prove nothing.
class CImportHook {
public:
    CImportHook(HMODULE module, const char* function, void* replacement);
    ~CImportHook();

    CImportHook(const CImportHook&) = delete;
    CImportHook& operator=(const CImportHook&) = delete;

private:
    void** m_slot;
    void* m_original;
};

/// Where `module` keeps the address of the function it imports under this name; null when it does not import it.
[[nodiscard]] void** FindImportSlot(HMODULE module, const char* function) noexcept;

/// The function as an address that a hook takes.
template <typename Result, typename... Parameters>
void* AddressOf(Result(WINAPI* function)(Parameters...)) noexcept {
    return reinterpret_cast<void*>(function);
}
