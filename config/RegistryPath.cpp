#include "RegistryPath.h"

#include <cstdint>

namespace {

using namespace std::string_view_literals;

struct RootName {
    std::wstring_view name;
    std::uint32_t root;  // as winreg.h has it; handles are no constant expressions
};

// In the order in which they are tried.
constexpr RootName kRootNames[] = {
    {L"HKEY_CLASSES_ROOT"sv, 0x80000000},        {L"HKEY_CURRENT_USER"sv, 0x80000001},
    {L"HKEY_LOCAL_MACHINE"sv, 0x80000002},       {L"HKEY_USERS"sv, 0x80000003},
    {L"HKEY_PERFORMANCE_DATA"sv, 0x80000004},    {L"HKEY_PERFORMANCE_TEXT"sv, 0x80000050},
    {L"HKEY_PERFORMANCE_NLSTEXT"sv, 0x80000060},
};

/// Predefined keys are 32-bit numbers with their sign extended to the width of a handle (winreg.h).
HKEY ToKey(std::uint32_t root) noexcept {
    return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(root)));
}

}  // namespace

RegistryPath SplitRegistryPath(std::wstring_view path) {
    for (const RootName& root : kRootNames) {
        if (path.substr(0, root.name.size()) != root.name) {
            continue;
        }
        path.remove_prefix(root.name.size());
        if (!path.empty() && path.front() == L'\\') {
            path.remove_prefix(1);
        }
        return {ToKey(root.root), std::wstring(path)};
    }
    return {HKEY_LOCAL_MACHINE, std::wstring(path)};
}
