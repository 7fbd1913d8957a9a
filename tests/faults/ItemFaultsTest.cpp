// Each kind of item on its way to Java, and its answer on its way back.

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "CFaultedTest.h"

namespace {

/// A method of Java's that throws.
struct Refusal {
    const char* className;
    const char* method;
};

class ItemFaultsTest : public CFaultedTest {
protected:
    /// Sends the kind in rounds, with the refusal in force.
    void Sweep(const ItemKind& kind, const std::string& operation, HRESULT undisturbed, const Refusal& refusal = {}) {
        Begin(refusal);
        ASSERT_EQ(Send(kind.type), undisturbed);
        const Calls whole = JavaCalls();
        SweepAll(operation, [&](CFaultRound& round) {
            if (Fake().GetMethodLogSize() > kMostMethodCalls) {
                Begin(refusal);
            }
            RunRound(kind, undisturbed, whole, round);
        });
    }

    [[nodiscard]] static std::string NameOf(const ItemKind& kind) {
        const std::wstring name = kind.type == kDesktopPoll ? L"desktop poll" : kind.name;
        return "DumpData, " + std::string(name.begin(), name.end());
    }

private:
    /// The runtime's log has an end.
    static constexpr long kMostMethodCalls = 50'000;

    void Begin(const Refusal& refusal) {
        StartManager();
        if (refusal.method) {
            const FakeFrame frames[] = {{"com.orvane.Source.first(Source.java:1)"},
                                        {"com.orvane.Source.second(Source.java:2)"}};
            FakeException exception;
            exception.description = "java.lang.IllegalStateException: refused";
            exception.frames = frames;
            exception.frameCount = std::size(frames);
            Fake().MakeMethodThrow(refusal.className, refusal.method, exception);
        }
        Forget();
    }

    void RunRound(const ItemKind& kind, HRESULT undisturbed, const Calls& whole, CFaultRound& round) {
        Forget();
        const Held held = CountHeld();

        const FaultOutcome sent = round.Run([&] { return Send(kind.type); });

        if (!IsForWantOfAdapters(kind, round, sent)) {
            ExpectLawfulEnd(round, sent, undisturbed);
            ExpectTold(round, sent, undisturbed, whole);
        }
        ExpectNothingLeft(round, held);
        Forget();
        EXPECT_EQ(Send(kind.type), undisturbed) << round << ": the next one";
        EXPECT_EQ(JavaCalls(), whole) << round << ": the next one";
    }

    /// A host that gives no array of adapters, for want of memory perhaps: what the system says of none is thrown.
    static bool IsForWantOfAdapters(const ItemKind& kind, const CFaultRound& round, const FaultOutcome& sent) {
        const bool takesDesktop =
            std::find(std::begin(kDesktopKinds), std::end(kDesktopKinds), kind.type) != std::end(kDesktopKinds);
        const bool isWithoutArray =
            round.GetSource().IsOfMemory() || round.IsForEver() || round.IsFirstFailed("System: get_networkInterfaces");
        return takesDesktop && round.HasFired() && isWithoutArray && sent.end == FaultOutcome::End::eHresult &&
               sent.result == E_INVALIDARG;
    }
};

/// Kinds by their place in kItemKinds.
class EachItemFaultsTest : public ItemFaultsTest, public testing::WithParamInterface<ItemKind> {};

TEST_P(EachItemFaultsTest, EachCallMayFail) {
    Sweep(GetParam(), NameOf(GetParam()), S_OK);
}

TEST_P(EachItemFaultsTest, EachCallMayFailWhereJavaRefusesTheItem) {
    if (GetParam().method) {
        Sweep(GetParam(), NameOf(GetParam()) + ", refused", E_FAIL, {kClient, GetParam().method});
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, EachItemFaultsTest, testing::ValuesIn(kItemKinds),
                         [](const auto& kind) { return "Type" + std::to_string(kind.param.type); });

TEST_F(ItemFaultsTest, ATypeWithoutANameOnlyAsksTheHost) {
    Sweep({kNamelessKind, L"type 11", nullptr, false}, "DumpData, type 11", S_OK);
}

TEST_F(ItemFaultsTest, AMetricThatJavaRefusesIsLeftOut) {
    Sweep({eSample, L"eSample", "onDataCollected", true}, "DumpData, eSample, metrics refused", S_OK,
          {Binding::BaseSample::kClass, "putMetric"});
}

TEST_F(ItemFaultsTest, APropertyThatJavaRefusesIsLeftOut) {
    Sweep({eUserSessionLogon, L"eUserSessionLogon", "onUserLogon", true},
          "DumpData, eUserSessionLogon, properties refused", S_OK, {Binding::BaseUserSession::kClass, "putProperty"});
}

}  // namespace
