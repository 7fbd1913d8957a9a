#include "CJavaLocalFrame.h"
#include "CModelTest.h"
#include "GreatSample.h"

namespace {

/// Great samples that Java takes; those that it refuses are in ConversionMemoryTest.cpp.
class ModelMemoryTest : public CModelTest {};

TEST_F(ModelMemoryTest, ASampleThatWasLetGoLeavesNothingInJavasHeap) {
    // A metric with its name, its list of instances and its place in the sample takes more than 100 bytes.
    constexpr int kSampleSize = 100 * kGreatCount;
    Record()->SetKeepsHistory(false);
    const SampleData data = MakeGreatSample();
    EXPECT_NE(ConvertSample(data), nullptr);  // what Java compiles and keeps for it counts as there from the start
    const int before = CountUsedHeap();

    for (int round = 0; round < 3; ++round) {
        const CJavaLocalFrame frame(Env());  // that of the host's call: what goes to it stays until the call returns
        std::shared_ptr<CJavaObject> sample = ConvertSample(data);
        EXPECT_GT(CountUsedHeap(), before + kSampleSize) << "the sample itself";

        sample.reset();

        EXPECT_LT(CountUsedHeap(), before + kHeapMargin) << "round " << round;
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

}  // namespace
