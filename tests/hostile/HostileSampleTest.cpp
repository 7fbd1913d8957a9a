// Samples whose host contradicts itself at every turn: what Java and the log are told is what a model tells from the
// description alone, and nothing is left over.

#include "HostileSampleFixture.h"
#include "HostileSampleMaker.h"
#include "HostileSampleNote.h"

namespace {

class HostileSampleTest : public CHostileConversionTest {
protected:
    [[nodiscard]] const char* NameOutcome(const Prediction& predicted) const {
        if (!predicted.hasObject) {
            return HasEvent("BaseSample.<init>") ? "given up half made" : "refused at once";
        }
        if (HasEvent("BaseUserSession.putRemoteApp")) {
            return "with applications";
        }
        if (HasEvent("BaseSample.putSession")) {
            return "with sessions";
        }
        return HasEvent("BaseSample.putMetric") ? "with metrics alone" : "empty";
    }
};

TEST_F(HostileSampleTest, ATreeBecomesWhatItsDescriptionSays) {
    CHostileCases cases(
        {"refused at once", "given up half made", "empty", "with metrics alone", "with sessions", "with applications"});
    cases.Run([&](CRandom& random) {
        const HostileTree tree = MakeHostileTree(random);
        const OrderedFault fault = MakeFault(random);
        const bool hasSessions = !random.OneIn(50);
        const Prediction predicted = PredictSample(tree, hasSessions, fault);
        const CNoteOfFailure note([&] { return Describe(tree) + fault.function + " " + std::to_string(fault.nth); });

        ExpectConversion(predicted, fault, [&](CHostileHost& host) {
            return Convertor().GetSample(SharedVM(), host.MakeNode(tree),
                                         hasSessions ? host.MakeSessions(tree) : nullptr);
        });

        return NameOutcome(predicted);
    });
}

TEST_F(HostileSampleTest, ExtendedMetricsBecomeWhatTheirDescriptionSays) {
    CHostileCases cases({"refused at once", "given up half made", "empty", "with metrics alone", "with instances"});
    cases.Run([&](CRandom& random) {
        const HostileTree tree = MakeHostileExtendedTree(random);
        const OrderedFault fault = MakeFault(random);
        const bool hasMetrics = !random.OneIn(50);
        const Prediction predicted = PredictExtendedSample(tree, hasMetrics, fault);
        const CNoteOfFailure note([&] { return Describe(tree) + fault.function + " " + std::to_string(fault.nth); });

        ExpectConversion(predicted, fault, [&](CHostileHost& host) {
            return Convertor().GetExtendedSample(SharedVM(), host.MakeNode(tree),
                                                 hasMetrics ? host.MakeValues(tree.extendedMetrics) : nullptr);
        });

        return HasEvent("BaseMetric.addInstance") ? "with instances" : NameOutcome(predicted);
    });
}

}  // namespace
