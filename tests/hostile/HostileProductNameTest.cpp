// Command lines that name the product in ways that nobody would write.

#include <windows.h>

#include "CImportHook.h"
#include "CLeakCheckedTest.h"
#include "HostileCases.h"
#include "HostileText.h"
#include "ProductName.h"

namespace {

using namespace std::string_view_literals;

class HostileProductNameTest : public CLeakCheckedTest {};

constexpr char kDefault[] = "the default name";
constexpr char kQuoted[] = "a name in quotes";
constexpr char kBare[] = "a bare name";
constexpr char kEmpty[] = "no name";
constexpr char kProgram[] = "the program's path";

/// The command line of the process; null for none.
const wchar_t* g_commandLine = nullptr;
wchar_t* WINAPI GiveCommandLine() {
    return const_cast<wchar_t*>(g_commandLine);
}

// ---- the model ------------------------------------------------------------------------------------------

struct Named {
    std::wstring name;
    const char* outcome;
};

bool EndsBareName(wchar_t character) {
    switch (character) {
        case 0x00:
        case 0x08:
        case 0x09:
        case 0x0A:
        case 0x0C:
        case 0x0D:
        case 0x20:
            return true;
        default:
            return false;
    }
}

/// Behind the first `word` in `text`, or null where there is none.
const wchar_t* Behind(const wchar_t* text, const wchar_t* word) {
    const wchar_t* const found = wcsstr(text, word);
    return found ? found + wcslen(word) : nullptr;
}

Named ExpectedName(const wchar_t* commandLine) {
    if (!commandLine) {
        return {L"Tessaro", kDefault};
    }
    bool isNamed = true;
    const wchar_t* at = Behind(commandLine, L"--product=");
    if (!at) {
        at = Behind(commandLine, L"--product");
        while (at && *at != 0 && EndsBareName(*at)) {
            ++at;
        }
    }
    if (!at) {
        at = commandLine;
        isNamed = false;
    }
    std::wstring name;
    if (*at == L'"') {
        for (++at; *at != L'"'; ++at) {
            if (*at == 0) {
                return {L"Tessaro", kDefault};
            }
            name += *at;
        }
        return {name, isNamed ? kQuoted : kProgram};
    }
    for (; !EndsBareName(*at); ++at) {
        name += *at;
    }
    return {name, name.empty() ? kEmpty : isNamed ? kBare : kProgram};
}

// ---- the command lines ----------------------------------------------------------------------------------

constexpr std::wstring_view kFavourites = L"\"\" \t\r\n\f\b\v=-'\\"sv;
constexpr std::size_t kLongest = 32'000;  // as long as the system's own command lines are

/// Half of them are right.
std::wstring MakeOption(CRandom& random) {
    static constexpr std::wstring_view kOptions[] = {
        L"--product="sv, L"--product"sv,    L"--product "sv,  L"--product = "sv, L"--products="sv,
        L"-product="sv,  L"---product="sv,  L"/product="sv,   L"--Product="sv,   L"--product=="sv,
        L"--produc"sv,   L"\"--product="sv, L"--product\t"sv, L"--product-"sv,   L"--product\v"sv,
    };
    return std::wstring(random.OneIn(2) ? kOptions[random.Below(3)] : random.Pick(kOptions));
}

std::wstring MakeValue(CRandom& random) {
    std::wstring text = HostileText(random, kFavourites, kLongest);
    switch (random.Below(5)) {
        case 0:
            return L"Alpha";
        case 1:
            return L"\"Alpha beta\"";
        case 2:
            return L"\"" + text + L"\"";
        case 3:
            return L"\"" + text;
        default:
            return text;
    }
}

std::wstring MakeCommandLine(CRandom& random) {
    static constexpr std::wstring_view kPrograms[] = {
        L"host.exe"sv, L"\"C:\\Program Files\\host.exe\""sv, L"\"host"sv, L""sv, L" "sv, L"\""sv};
    std::wstring line(random.Pick(kPrograms));
    for (std::size_t options = random.Below(4); options > 0; --options) {
        line += random.OneIn(8) ? HostileText(random, kFavourites, 100) : L" ";
        line += MakeOption(random);
        line += MakeValue(random);
    }
    if (random.OneIn(3)) {
        line = NearMiss(random, line, kFavourites);
    }
    return random.OneIn(20) ? HostileText(random, kFavourites, kLongest) : line;
}

TEST_F(HostileProductNameTest, AnyCommandLineNamesTheProductThatTheModelNames) {
    const CImportHook hook(GetModuleHandleW(nullptr), "GetCommandLineW", AddressOf(&GiveCommandLine));
    CHostileCases cases({kDefault, kQuoted, kBare, kEmpty, kProgram});

    cases.Run([](CRandom& random) {
        const std::wstring line = MakeCommandLine(random);
        g_commandLine = random.OneIn(1000) ? nullptr : line.c_str();
        const Named expected = ExpectedName(g_commandLine);

        EXPECT_EQ(ProductName(), expected.name) << testing::PrintToString(line);

        return expected.outcome;
    });
}

}  // namespace
