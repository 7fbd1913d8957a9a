// Values of every type and none, as metrics and as properties: Java gets what a model says, or the log does.

#include "CJavaClass.h"
#include "HostileSampleFixture.h"
#include "HostileSampleMaker.h"
#include "HostileSampleNote.h"
#include "HostileVariantModel.h"

namespace {

class HostileVariantTest : public CHostileConversionTest {};

TEST_F(HostileVariantTest, AMetricTakesTheValuesOfEightKindsAndNoOther) {
    CHostileCases cases({"a whole number", "a floating number", "a text", "invalid"});
    cases.Run([&](CRandom& random) {
        const CHostileVariant value(random, References::eNeverFollowed);
        const std::wstring name = MakeHostileName(random);
        const Prediction predicted = PredictMetric(name, value.Get(), {});
        const CNoteOfFailure note([&] { return QuoteForEvent(name) + " " + value.Describe(); });

        ExpectConversion(predicted, {},
                         [&](CHostileHost&) { return Convertor().GetMetric(SharedVM(), name, &value.Get()); });

        constexpr const char* kOutcomes[] = {"invalid", "a whole number", "a floating number", "a text"};
        return kOutcomes[static_cast<std::size_t>(ModelMetric(value.Get()).kind)];
    });
}

TEST_F(HostileVariantTest, APropertyIsTheTextThatTheSystemMakesOfIt) {
    CHostileCases cases({"no map", "empty", "with texts", "without any text"});
    cases.Run([&](CRandom& random) {
        const HostileBox box = MakeHostileBox(random);
        const OrderedFault fault = MakeFault(random);
        const Prediction predicted = PredictMap(box, fault);
        const CNoteOfFailure note([&] { return Describe(box) + fault.function + " " + std::to_string(fault.nth); });

        ExpectConversion(predicted, fault,
                         [&](CHostileHost& host) { return Convertor().GetHashMap(SharedVM(), host.MakeBox(box)); });

        if (!predicted.hasObject) {
            return "no map";
        }
        if (predicted.events.size() == 1) {
            return "empty";
        }
        const bool isAnyText =
            std::any_of(predicted.events.begin(), predicted.events.end(), [](const std::string& event) {
                return event.rfind("HashMap.put(", 0) == 0 && event.compare(event.size() - 4, 4, " \"\")") != 0;
            });
        return isAnyText ? "with texts" : "without any text";
    });
}

}  // namespace
