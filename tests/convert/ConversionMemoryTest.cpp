#include "CJavaLocalFrame.h"
#include "CStandInTest.h"
#include "GreatSample.h"

namespace {

/// Great samples that Java refuses; those that it takes are in ModelMemoryTest.cpp.
class ConversionMemoryTest : public CStandInTest {
protected:
    /// Bytes of Java's heap in use but for the record of the calls.
    [[nodiscard]] int CountUsedHeapWithoutCalls() {
        ForgetCalls();
        return CountUsedHeap();
    }
};

TEST_F(ConversionMemoryTest, ASampleOfWhichEveryMetricIsRefusedLeavesNothingInJavasHeap) {
    Record()->SetKeepsHistory(false);
    const CJNIConvertor convertor{CBridgeLog()};  // the host's log would hold all the messages
    const auto node = MakeSampleNode(Record(), MakeGreatSample());
    EXPECT_NE(convertor.GetSample(SharedVM(), node.Get(), nullptr), nullptr);
    const int before = CountUsedHeapWithoutCalls();

    for (const char* const refused : {"BaseMetric(", "BaseMetric.putLongValue(", "BaseSample.putMetric("}) {
        const CJavaLocalFrame frame(Env());  // that of the host's call: what goes to it stays until the call returns
        ThrowIn({refused, refused + std::char_traits<char>::length(refused)});

        EXPECT_NE(convertor.GetSample(SharedVM(), node.Get(), nullptr), nullptr);

        ThrowIn(L"");
        EXPECT_EQ(CountJavaCalls(refused), kGreatCount);
        EXPECT_LT(CountUsedHeapWithoutCalls(), before + kHeapMargin) << refused;
    }
}

}  // namespace
