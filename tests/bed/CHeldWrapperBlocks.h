#pragma once

#include <array>
#include <memory>

#include "CJavaVM.h"

/// Holds all the memory that a CJavaVM keeps for its wrappers, so that the next wrapper needs some of its own, which a
/// test can refuse. Afterwards the machine keeps as much as it ever does.
class CHeldWrapperBlocks {
public:
    explicit CHeldWrapperBlocks(CJavaVM& vm) {
        for (std::shared_ptr<Held>& block : m_blocks) {
            block = vm.MakeWrapper<Held>();
        }
    }

private:
    struct Held {};

    std::array<std::shared_ptr<Held>, CWrapperBlocks::kMostKept> m_blocks;
};
