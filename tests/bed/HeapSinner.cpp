// heap_sinner BehindABlock|IntoABlockGivenBack
// Writes where it must not: both pass, as long as nobody looks.

#include <windows.h>

#include <cstring>

namespace {

constexpr std::size_t kBytes = 24;

void WriteBehindABlock() {
    auto* const block = static_cast<volatile char*>(HeapAlloc(GetProcessHeap(), 0, kBytes));
    block[kBytes] = 'x';
    HeapFree(GetProcessHeap(), 0, const_cast<char*>(block));
}

void WriteIntoABlockGivenBack() {
    auto* const block = static_cast<volatile char*>(HeapAlloc(GetProcessHeap(), 0, kBytes));
    HeapFree(GetProcessHeap(), 0, const_cast<char*>(block));
    block[kBytes - 1] = 'x';
    HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, kBytes));
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    if (std::strcmp(arguments[1], "BehindABlock") == 0) {
        WriteBehindABlock();
    } else {
        WriteIntoABlockGivenBack();
    }
    return 42;
}
