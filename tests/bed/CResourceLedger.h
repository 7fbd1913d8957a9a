#pragma once

#include <windows.h>

#include <iosfwd>

/// What this program, the product's code linked into it included, holds of the system at a moment.
struct ResourceCounts {
    long criticalSections;  // initialised and not deleted
    long locksHeld;         // entered and not left
    long registryKeys;      // opened or created and not closed
    long libraries;         // loaded and not freed
    long searches;          // directory searches not closed
    long heapBlocks;        // blocks of the process heap taken directly
    long comBlocks;         // BSTRs and blocks of COM's task allocator

    friend bool operator==(const ResourceCounts& left, const ResourceCounts& right);
    friend std::ostream& operator<<(std::ostream& out, const ResourceCounts& counts);
};

/// Counts from the moment it is made, which is once per program, before the first test: by hooks on the program's
/// imports, and by COM's allocation spy. For the spy to see every BSTR the program runs with OANOCACHE=1.
class CResourceLedger {
public:
    /// The one ledger of the program.
    static CResourceLedger& Get();

    [[nodiscard]] ResourceCounts Count() const;

private:
    CResourceLedger();
};
