#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CImportHook.h"
#include "CJNIConvertor.h"
#include "CJavaLocalFrame.h"
#include "CSampleTreeTest.h"
#include "StackSamples.h"

namespace {

using SampleSessionConversionTest = CSampleTreeTest;

// ---- sessions that are skipped --------------------------------------------------------------------------

TEST_F(SampleSessionConversionTest, ASessionThatTheHostDoesNotHaveIsSkippedWithoutAWord) {
    for (const HRESULT failure : kFailures) {
        Host().Record().ClearCalls();
        Host().Record().Fail("Sessions: GetSession(7)", 1, failure);

        EXPECT_NE(Convert(MakeTree()), nullptr);

        EXPECT_EQ(JavaCalls(), Join({SampleCalls(), BobCalls()})) << failure;
        EXPECT_EQ(Host().Record().CountCalls("Sample/7*"), 0) << "its node is not asked";
    }
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleSessionConversionTest, ANullSessionIsSkippedWithoutAWord) {
    Host().Record().GiveNull("Sessions: GetSession(7)");
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), BobCalls()}));
    Host().Record().LeaveUntouched("Sessions: GetSession(8)");
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls()}));

    EXPECT_EQ(Host().Record().CountFiredFaults(), 2);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleSessionConversionTest, WithoutACollectionThereAreNoSessions) {
    const auto node = MakeNode(MakeTree());

    EXPECT_NE(MakeConvertor().GetSample(SharedVM(), node.Get(), nullptr), nullptr);

    EXPECT_EQ(JavaCalls(), SampleCalls());
    EXPECT_EQ(Host().Errors(), Texts{});
    EXPECT_EQ(Host().Details(), Texts{});
}

TEST_F(SampleSessionConversionTest, ASessionThatCannotBeConvertedIsSkippedAndItsNodeNotAsked) {
    Host().Record().Fail("Session 7: get_user", 1, E_FAIL);
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), BobCalls()}));
    EXPECT_EQ(Host().Errors(), Texts{});

    MakeThrow(Binding::BaseUserSession::kClass, "<init>", kRefusal);
    EXPECT_NE(Convert(MakeTree()), nullptr);
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), {kAnnMade, kBobMade}}));
    EXPECT_EQ(Host().Errors(), Texts(2, L"Failed to create a new Java user session object.  " + s_refused));

    EXPECT_EQ(Host().Record().CountCalls("Sample/7*"), 0);
}

// ---- sessions that go all the same ----------------------------------------------------------------------

TEST_F(SampleSessionConversionTest, ASessionGoesWithoutTheMetricsAndApplicationsThatCannotBeHad) {
    Host().Record().Fail("Sample/7: get_metrics(1)", 1, E_FAIL);
    Host().Record().Fail("Sample/7: get_instances", 1, kUntold);

    EXPECT_NE(Convert(MakeTree()), nullptr);

    EXPECT_EQ(Host().Errors(), (Texts{L"Failed to get metrics from sample" + Suffix(E_FAIL),
                                      L"Failed to get instances from sample  Error code 0x8abcdef0."}));
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), {kAnnMade, kSessionPut}, BobCalls()}));
}

TEST_F(SampleSessionConversionTest, AMetricThatItCannotTakeIsNamedWithItsNodesTime) {
    MakeThrow(Binding::BaseUserSession::kClass, "putMetric", kRefusal);

    EXPECT_NE(Convert(MakeTree()), nullptr);

    const std::wstring error = L"Failed to add metric 'load' to sample '" + s_sessionNodeName + L"'.  " + s_refused;
    EXPECT_EQ(Host().Errors(), (Texts{error, error}));
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls(), BobCalls()}));
}

TEST_F(SampleSessionConversionTest, ASessionThatCannotBePutIsLoggedWithTheSamplesTimeAndTheNextGoesOn) {
    MakeThrow(Binding::BaseSample::kClass, "putSession", kRefusal);
    SampleData data = MakeTree();
    data.instances[1].key = L"8%s";

    EXPECT_NE(Convert(data), nullptr);

    EXPECT_EQ(Host().Errors(),
              (Texts{L"Failed to add session '7' to sample '" + s_sampleName + L"'.  " + s_refused,
                     L"Failed to add session '8%s' to sample '" + s_sampleName + L"'.  " + s_refused}));
    EXPECT_EQ(Host().Details(), (Texts{L"Adding remote app to sample: 'mail'", L"Adding session to sample: '7'",
                                       L"Adding session to sample: '8%s'"}));
    EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls(), BobCalls()}));
    EXPECT_EQ(Host().Record().CountCalls("ISampleNode::get_time"), 1) << "not asked for again";
}

TEST_F(SampleSessionConversionTest, ASampleOfNoDateIsNamedSo) {
    MakeThrow(Binding::BaseSample::kClass, "putSession", kRefusal);

    EXPECT_NE(Convert({1e300, {}, {{L"7", {}}}}), nullptr);

    EXPECT_EQ(Host().Errors(), Texts{L"Failed to add session '7' to sample 'Invalid DateTime'.  " + s_refused});
}

// ---- faults ---------------------------------------------------------------------------------------------

TEST_F(SampleSessionConversionTest, EachCallOfJnisMayFailOnceOrForEver) {
    const auto node = MakeNode(MakeTree());
    const auto sessions = MakeSessions();

    FailEachJniCall([&] { return MakeConvertor().GetSample(SharedVM(), node.Get(), sessions.Get()); },
                    [](const FaultRound& round) {
                        if (!round.isOnce) {
                            return;
                        }
                        const bool isFrame = round.failed == "PushLocalFrame";
                        EXPECT_EQ(round.errors.size(), isFrame ? 0U : 1U) << round.failed;
                        const bool isWithout = round.errors.size() == 1 &&
                                               round.errors[0].find(L"Failed to create a new Java sample object.") == 0;
                        EXPECT_EQ(round.object == nullptr, isWithout) << round.failed;
                        // One fault costs one part with what is in it: at least the sample's metric and one session are
                        // left.
                        const long put = CountCalls(round.calls, "BaseSample.put");
                        EXPECT_GE(put, isWithout ? 0 : isFrame ? 3 : 2) << round.failed;
                    });
}

TEST_F(SampleSessionConversionTest, EachCallOfTheHostsMayFailOnceOrForEver) {
    const auto node = MakeNode(MakeTree());
    const auto sessions = MakeSessions();
    for (const long times : {1L, -1L}) {
        long lost = 0;
        bool hasFired = true;
        for (long nth = 1; hasFired; ++nth) {
            const long firedBefore = Host().Record().CountFiredFaults();
            ForgetJavaCalls();
            Host().Record().Fail("I*", nth, kUntold, times);

            const Object sample = MakeConvertorWithoutLogger().GetSample(SharedVM(), node.Get(), sessions.Get());
            hasFired = Host().Record().CountFiredFaults() != firedBefore;
            Host().Record().ClearFaults();

            lost += sample ? 0 : 1;
            EXPECT_TRUE(sample || CountCalls(JavaCalls(), "BaseUserSession") == 0) << nth;
            EXPECT_TRUE(!sample || times < 0 || CountCalls(JavaCalls(), "BaseSample.put") > 0) << nth;
            EXPECT_EQ(Fake().GetLocalReferences(), 0) << nth;
        }
        EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls(), BobCalls()})) << "the round without a failure";
        EXPECT_EQ(lost, times == 1 ? 2 : 5) << "by its time and its instances, the fifth call, alone";
    }
}

TEST_F(SampleSessionConversionTest, WithoutALoggerJavaIsCalledTheSameWay) {
    const auto node = MakeNode(MakeTree());
    const auto sessions = MakeSessions();
    for (const char* const method : {"putMetric", "putSession"}) {
        MakeThrow(Binding::BaseSample::kClass, method, kRefusal);
        Host().Record().ClearCalls();
        ForgetJavaCalls();

        EXPECT_NE(MakeConvertorWithoutLogger().GetSample(SharedVM(), node.Get(), sessions.Get()), nullptr);

        EXPECT_EQ(JavaCalls(), Join({SampleCalls(), AnnCalls(), BobCalls()})) << method;
        EXPECT_EQ(Host().Record().CountCalls("Logger*"), 0);
    }
}

TEST_F(SampleSessionConversionTest, TenThousandRefusedSessionsDoNotFillTheFrame) {
    constexpr std::size_t kMany = 10'000;
    Host().Record().SetKeepsHistory(false);
    Fake().SetCallLogEnabled(false);
    MakeThrow(Binding::BaseSample::kClass, "putSession", "refused");

    EXPECT_NE(Convert({kSampleTime, {}, std::vector<InstanceData>(kMany, {L"7", {}})}), nullptr);

    EXPECT_LT(Fake().GetPeakLocalReferences(), 300);
    EXPECT_EQ(Fake().GetLocalReferences(), 0);
    EXPECT_EQ(Host().Errors().size(), kMany);
}

decltype(&HeapAlloc) g_allocBlock;
long g_blocksToRefusal = 0;
void* WINAPI RefuseOneBlock(HANDLE heap, DWORD flags, SIZE_T bytes) {
    return --g_blocksToRefusal == 0 ? nullptr : g_allocBlock(heap, flags, bytes);
}

/// A sample on the stack: a metric, a session with a metric, and below that an application with the same.
class SampleMemoryTest : public CSampleConversionTest {
protected:
    [[nodiscard]] long FailEachAllocation(const CJNIConvertor& convertor) {
        return WithSample(SharedVM(), convertor,
                          [&](const auto& convert) { return CSampleConversionTest::FailEachAllocation(convert); });
    }

    /// Texts of messages are on the process's heap. Refuses it the 1st, 2nd, 3rd ... block until there are no more.
    [[nodiscard]] long RefuseEachBlock(const CJNIConvertor& convertor) {
        return WithSample(SharedVM(), convertor, [&](const auto& convert) {
            g_allocBlock =
                reinterpret_cast<decltype(&HeapAlloc)>(*FindImportSlot(GetModuleHandleW(nullptr), "HeapAlloc"));
            long thrown = 0;
            for (bool hasRefused = true; hasRefused;) {
                const CJavaLocalFrame frame(Env());
                const CImportHook hook(GetModuleHandleW(nullptr), "HeapAlloc", AddressOf(&RefuseOneBlock));
                g_blocksToRefusal = thrown + 1;

                const bool isThrown = IsMemoryExhausted([&] { static_cast<void>(convert()); });

                hasRefused = g_blocksToRefusal <= 0;
                EXPECT_EQ(isThrown, hasRefused);
                EXPECT_FALSE(Fake().IsExceptionPending()) << thrown;
                thrown += hasRefused ? 1 : 0;
            }
            return thrown;
        });
    }

private:
    template <typename Act>
    static long WithSample(const std::shared_ptr<CJavaVM>& vm, const CJNIConvertor& convertor, const Act& act) {
        const CVariantValue value = MakeText(L"a value that is longer than a short text");
        const StackPair pairs[] = {{L"a name that is longer than a short text", value.Get()}};
        CStackValues metrics[] = {CStackValues(pairs), CStackValues(pairs), CStackValues(pairs)};
        CStackSample app(&metrics[0]);
        CStackInstances apps(L"the id of an application, no short text", &app);
        CStackSample sessionNode(&metrics[1], &apps);
        CStackInstances sessionNodes(L"7 and more than makes up a short text", &sessionNode);
        CStackSample sample(&metrics[2], &sessionNodes);
        CStackBox box(nullptr);
        CStackSession session(&box);
        CStackSessions sessions(&session);

        return act([&] {
            for (CStackValues& walk : metrics) {
                walk.Rewind();
            }
            apps.Rewind();
            sessionNodes.Rewind();
            return convertor.GetSample(vm, &sample, &sessions);
        });
    }
};

TEST_F(SampleMemoryTest, EachAllocationMayFail) {
    EXPECT_EQ(FailEachAllocation(MakeConvertor()), 8);
    EXPECT_EQ(Host().Errors(), Texts{});
}

TEST_F(SampleMemoryTest, EachAllocationMayFailWhereJavaRefuses) {
    MakeThrow(Binding::BaseSample::kClass, "putSession", "a reason that is longer than a short text");
    MakeThrow(Binding::BaseSample::kClass, "putMetric", "a reason that is longer than a short text");
    MakeThrow(Binding::BaseUserSession::kClass, "putRemoteApp", "a reason that is longer than a short text");
    MakeThrow(Binding::BaseRemoteApp::kClass, "putMetric", "a reason that is longer than a short text");

    EXPECT_EQ(FailEachAllocation(MakeConvertorWithoutLogger()), 20);
}

TEST_F(SampleMemoryTest, EachMessagesTextMayFindNoMemoryAndNoExceptionStaysPending) {
    MakeThrow(Binding::BaseSample::kClass, "putSession", "refused");
    MakeThrow(Binding::BaseSample::kClass, "putMetric", "refused");
    MakeThrow(Binding::BaseUserSession::kClass, "putRemoteApp", "refused");

    EXPECT_GT(RefuseEachBlock(MakeConvertor()), 6);
}

}  // namespace
