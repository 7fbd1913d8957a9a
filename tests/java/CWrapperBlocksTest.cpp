#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "CAllocationFault.h"
#include "CLeakCheckedTest.h"
#include "CWrapperBlocks.h"
#include "HeapBlocks.h"

namespace {

class CWrapperBlocksTest : public CLeakCheckedTest {
protected:
    using Block = std::array<unsigned char, CWrapperBlocks::kBlockSize>;

    [[nodiscard]] static std::vector<void*> TakeSome(CWrapperBlocks& blocks, int count) {
        std::vector<void*> taken(static_cast<std::size_t>(count));
        std::generate(taken.begin(), taken.end(), [&] { return blocks.Take(); });
        return taken;
    }
    static void GiveBackAll(CWrapperBlocks& blocks, const std::vector<void*>& taken) {
        for (void* const block : taken) {
            blocks.GiveBack(block);
        }
    }
};

TEST_F(CWrapperBlocksTest, ABlockThatWasGivenBackServesAgainWithoutMemory) {
    CWrapperBlocks blocks;
    void* const first = blocks.Take();
    blocks.GiveBack(first);

    const CAllocationFault fault(1);
    void* const second = blocks.Take();

    EXPECT_EQ(second, first);
    EXPECT_FALSE(fault.HasFired());
    blocks.GiveBack(second);
}

TEST_F(CWrapperBlocksTest, WithoutAKeptBlockExhaustedMemoryIsThrown) {
    CWrapperBlocks blocks;
    const CAllocationFault fault(1);

    EXPECT_THROW(static_cast<void>(blocks.Take()), std::bad_alloc);
}

TEST_F(CWrapperBlocksTest, BlocksInUseAreDistinctAndWhollyTheirTakers) {
    CWrapperBlocks blocks;
    GiveBackAll(blocks, TakeSome(blocks, 5));
    const std::vector<void*> taken = TakeSome(blocks, 9);

    for (std::size_t i = 0; i < taken.size(); ++i) {
        static_cast<Block*>(taken[i])->fill(static_cast<unsigned char>(i));
    }
    for (std::size_t i = 0; i < taken.size(); ++i) {
        const Block& block = *static_cast<Block*>(taken[i]);
        EXPECT_EQ(std::count(block.begin(), block.end(), static_cast<unsigned char>(i)),
                  static_cast<std::ptrdiff_t>(block.size()));
    }
    GiveBackAll(blocks, taken);
}

TEST_F(CWrapperBlocksTest, SoManyBlocksAreKeptAndTheOthersFreed) {
    CWrapperBlocks blocks;
    const std::vector<void*> taken = TakeSome(blocks, 3 * CWrapperBlocks::kMostKept);
    const long inUse = CountHeapBlocks();

    GiveBackAll(blocks, taken);

    EXPECT_EQ(CountHeapBlocks(), inUse - 2 * CWrapperBlocks::kMostKept);
}

TEST_F(CWrapperBlocksTest, TheEndFreesWhatIsKept) {
    const long before = CountHeapBlocks();
    {
        CWrapperBlocks blocks;
        GiveBackAll(blocks, TakeSome(blocks, CWrapperBlocks::kMostKept));
        EXPECT_EQ(CountHeapBlocks(), before + CWrapperBlocks::kMostKept);
    }
    EXPECT_EQ(CountHeapBlocks(), before);
}

TEST_F(CWrapperBlocksTest, NoTwoThreadsHoldTheSameBlock) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 200'000;
    constexpr int kHeld = 4;
    CWrapperBlocks blocks;
    std::atomic<int> collisions{0};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, mark = static_cast<unsigned char>(thread + 1)] {
            std::array<Block*, kHeld> held{};
            for (int round = 0; round < kRounds; ++round) {
                for (Block*& block : held) {
                    block = static_cast<Block*>(blocks.Take());
                    block->fill(mark);
                }
                for (Block* const block : held) {
                    const bool isMine = block->front() == mark && block->back() == mark;
                    collisions += isMine ? 0 : 1;
                    blocks.GiveBack(block);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(collisions, 0);
}

TEST_F(CWrapperBlocksTest, ASharedObjectAndItsCountLieInOneBlock) {
    CWrapperBlocks blocks;
    blocks.GiveBack(blocks.Take());

    const CAllocationFault fault(1);
    auto number = std::allocate_shared<int>(CWrapperAllocator<int>(blocks), 5);

    EXPECT_EQ(*number, 5);
    EXPECT_FALSE(fault.HasFired());
    number.reset();
    EXPECT_NE(std::allocate_shared<int>(CWrapperAllocator<int>(blocks), 6), nullptr) << "it came back";
}

}  // namespace
