// Registry paths with near misses of the roots' names.

#include "HostileCases.h"
#include "HostileText.h"
#include "RegistryPath.h"

namespace {

using namespace std::string_view_literals;

constexpr char kWithRoot[] = "below a named root";
constexpr char kOnlyRoot[] = "a named root alone";
constexpr char kWithoutRoot[] = "below the local machine, unnamed";

constexpr std::wstring_view kRoots[] = {
    L"HKEY_CLASSES_ROOT"sv,     L"HKEY_CURRENT_USER"sv,     L"HKEY_LOCAL_MACHINE"sv,       L"HKEY_USERS"sv,
    L"HKEY_PERFORMANCE_DATA"sv, L"HKEY_PERFORMANCE_TEXT"sv, L"HKEY_PERFORMANCE_NLSTEXT"sv,
};

// ---- the model ------------------------------------------------------------------------------------------

struct Expected {
    HKEY root;
    std::wstring key;
    const char* outcome;
};

Expected ExpectedPath(const std::wstring& path) {
    HKEY const keys[] = {HKEY_CLASSES_ROOT,     HKEY_CURRENT_USER,     HKEY_LOCAL_MACHINE,      HKEY_USERS,
                         HKEY_PERFORMANCE_DATA, HKEY_PERFORMANCE_TEXT, HKEY_PERFORMANCE_NLSTEXT};
    for (std::size_t i = 0; i < std::size(kRoots); ++i) {
        const std::wstring root(kRoots[i]);
        if (path.compare(0, root.size(), root) == 0) {
            const std::size_t begin = root.size() + (path[root.size()] == L'\\' ? 1 : 0);
            const std::wstring key(path, begin);
            return {keys[i], key, key.empty() ? kOnlyRoot : kWithRoot};
        }
    }
    return {HKEY_LOCAL_MACHINE, path, kWithoutRoot};
}

// ---- the paths ------------------------------------------------------------------------------------------

constexpr std::wstring_view kFavourites = L"\\\\/_ HKEY\0"sv;

std::wstring MakePath(CRandom& random) {
    static constexpr std::wstring_view kBegins[] = {L"HKEY_"sv, L"HKLM"sv, L"HKEY_CURRENT_CONFIG"sv, L"\\"sv, L""sv};
    std::wstring path(random.OneIn(4) ? random.Pick(kBegins) : random.Pick(kRoots));
    if (random.OneIn(3)) {
        path = NearMiss(random, path, kFavourites);
    }
    if (random.OneIn(20)) {
        path.insert(0, 1, HostileCharacter(random, kFavourites));
    }
    for (std::size_t parts = random.Below(4); parts > 0; --parts) {
        path += random.OneIn(8) ? L"" : L"\\";
        path += random.OneIn(8) ? std::wstring(random.Pick(kRoots)) : HostileText(random, kFavourites, 40'000);
    }
    return path;
}

TEST(HostileRegistryPathTest, AnyPathIsSplitAsTheModelSplitsIt) {
    CHostileCases cases({kWithRoot, kOnlyRoot, kWithoutRoot});

    cases.Run([](CRandom& random) {
        const std::wstring path = MakePath(random);
        const Expected expected = ExpectedPath(path);
        // Not the end of the text: what stands behind it is none of the reader's.
        const std::wstring longer = path + (random.OneIn(2) ? L'\\' : HostileCharacter(random, kFavourites));

        const RegistryPath split = SplitRegistryPath(std::wstring_view(longer).substr(0, path.size()));

        EXPECT_EQ(split.root, expected.root) << testing::PrintToString(path);
        EXPECT_EQ(split.key, expected.key) << testing::PrintToString(path);

        return expected.outcome;
    });
}

}  // namespace
