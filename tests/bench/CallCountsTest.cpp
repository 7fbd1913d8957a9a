#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

#include <boost/thread/detail/tss_hooks.hpp>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "BindingTable.h"
#include "CAgentRegistry.h"
#include "CCallCounter.h"
#include "CItemReader.h"
#include "CLeakCheckedTest.h"
#include "CLeanHost.h"
#include "CRMICommManagerImpl.h"
#include "CThreadSlots.h"
#include "DataType.h"
#include "LoadedFakeRuntime.h"
#include "PlainJava.h"
#include "TestPaths.h"

// How many calls a data item costs, and how many each thing in it. Times depend on the machine, these do not: they are
// what a change of the library's speed shows in, for better or worse. docs/performance.md has the same table.

namespace {

constexpr unsigned char kDesktopPoll = 255;
constexpr unsigned char kUnnamed = 11;

/// An item, and the one that has one thing less, if a thing is what is counted.
struct Subject {
    const char* name;
    unsigned char type;
    IUnknown* (*make)(CLeanHost& host);
    IUnknown* (*makeWithoutOne)(CLeanHost& host);  ///< null: the whole item counts
};

template <int metrics, int sessions = 0, int properties = 0, int applications = 0, int applicationMetrics = 0>
IUnknown* MakeSample(CLeanHost& host) {
    return &host.MakeSample({metrics, sessions, 0, properties, applications, applicationMetrics});
}
template <int metrics, int instances>
IUnknown* MakeExtended(CLeanHost& host) {
    return &host.MakeExtendedData(metrics, instances);
}
IUnknown* MakeSession(CLeanHost& host) {
    return &host.MakeSession({});
}
IUnknown* MakeNothing(CLeanHost&) {
    return nullptr;
}

/// What a subject costs besides calls of JNI's.
struct Expense {
    long locks;
    long allocations;
    long heapBlocks;
    long texts;  ///< BSTRs of the library's own, besides those that any reader of the host's objects makes
};

struct Expected {
    Subject subject;
    Expense expense;
    const char* jni;
};

constexpr Expected kExpected[] = {
    {{"metric", eSample, &MakeSample<11>, &MakeSample<10>},
     {8, 0, 0, 0},
     "ExceptionOccurred 2, NewGlobalRef 1, DeleteGlobalRef 1, DeleteLocalRef 2, NewObjectV 1, CallVoidMethodV 2, "
     "NewString 1"},
    {{"metric with a text", eSample, &MakeSample<10>, &MakeSample<9>},
     {10, 0, 0, 0},
     "ExceptionOccurred 2, NewGlobalRef 1, DeleteGlobalRef 1, DeleteLocalRef 3, NewObjectV 1, CallVoidMethodV 2, "
     "NewString 2"},
    {{"session", eSample, &MakeSample<0, 2>, &MakeSample<0, 1>},
     {15, 0, 1, 2},
     "ExceptionOccurred 1, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 1, DeleteGlobalRef 1, DeleteLocalRef 4, "
     "NewObjectV 1, CallVoidMethodV 1, NewString 3"},
    {{"property", eSample, &MakeSample<0, 1, 2>, &MakeSample<0, 1, 1>},
     {6, 0, 0, 0},
     "ExceptionOccurred 1, DeleteLocalRef 2, CallVoidMethodV 1, NewString 2"},
    {{"application with a metric", eSample, &MakeSample<0, 1, 0, 2, 1>, &MakeSample<0, 1, 0, 1, 1>},
     {17, 1, 1, 2},
     "ExceptionOccurred 3, PushLocalFrame 1, PopLocalFrame 1, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 4, "
     "NewObjectV 2, CallVoidMethodV 3, NewString 2"},
    {{"extended metric", eExtendedData, &MakeExtended<3, 1>, &MakeExtended<2, 1>},
     {16, 0, 0, 0},
     "ExceptionOccurred 3, PushLocalFrame 1, PopLocalFrame 1, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 4, "
     "NewObjectV 2, CallVoidMethodV 3, NewString 2"},
    {{"its instance", eExtendedData, &MakeExtended<1, 11>, &MakeExtended<1, 10>},
     {8, 0, 0, 0},
     "ExceptionOccurred 2, NewGlobalRef 1, DeleteGlobalRef 1, DeleteLocalRef 2, NewObjectV 1, CallVoidMethodV 2, "
     "NewString 1"},
    {{"empty sample", eSample, &MakeSample<0>, nullptr},
     {24, 14, 0, 1},
     "ExceptionOccurred 1, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 6, "
     "NewObjectV 2, CallObjectMethodV 1, NewString 4"},
    {{"empty extended data", eExtendedData, &MakeExtended<0, 0>, nullptr},
     {61, 14, 0, 3},
     "ExceptionOccurred 1, ExceptionClear 5, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 3, DeleteGlobalRef 3, "
     "DeleteLocalRef 17, NewObjectV 3, CallObjectMethodV 6, NewString 14"},
    {{"start-up", eStartup, &MakeNothing, nullptr},
     {20, 15, 1, 1},
     "ExceptionOccurred 1, PushLocalFrame 1, PopLocalFrame 1, NewGlobalRef 1, DeleteGlobalRef 1, DeleteLocalRef 6, "
     "NewObjectV 1, CallObjectMethodV 1, NewString 5"},
    {{"session start", eUserSessionStart, &MakeSession, nullptr},
     {24, 14, 0, 1},
     "PushLocalFrame 2, PopLocalFrame 2, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 9, NewObjectV 2, NewString "
     "7"},
    {{"logon", eUserSessionLogon, &MakeSession, nullptr},
     {88, 19, 0, 1},
     "ExceptionOccurred 14, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 5, DeleteGlobalRef 5, DeleteLocalRef 24, "
     "NewObjectV 5, CallObjectMethodV 1, CallVoidMethodV 13, NewString 19"},
    {{"logoff without figures", eUserSessionLogoff, &MakeSession, nullptr},
     {29, 14, 0, 1},
     "ExceptionOccurred 1, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 9, "
     "NewObjectV 2, CallVoidMethodV 1, NewString 7"},
    {{"refresh", eUserSessionRefresh, &MakeSession, nullptr},
     {87, 19, 0, 1},
     "ExceptionOccurred 14, PushLocalFrame 3, PopLocalFrame 3, NewGlobalRef 5, DeleteGlobalRef 5, DeleteLocalRef 24, "
     "NewObjectV 5, CallVoidMethodV 14, NewString 19"},
    {{"reconnect", eUserSessionReconnect, &MakeSession, nullptr},
     {27, 14, 0, 1},
     "ExceptionOccurred 1, PushLocalFrame 2, PopLocalFrame 2, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 9, "
     "NewObjectV 2, CallVoidMethodV 1, NewString 7"},
    {{"disconnect", eUserSessionDisconnect, &MakeSession, nullptr},
     {27, 14, 0, 1},
     "ExceptionOccurred 1, PushLocalFrame 2, PopLocalFrame 2, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 9, "
     "NewObjectV 2, CallVoidMethodV 1, NewString 7"},
    {{"session end", eUserSessionEnd, &MakeSession, nullptr},
     {24, 14, 0, 1},
     "PushLocalFrame 2, PopLocalFrame 2, NewGlobalRef 2, DeleteGlobalRef 2, DeleteLocalRef 9, NewObjectV 2, NewString "
     "7"},
    {{"desktop poll", kDesktopPoll, &MakeNothing, nullptr},
     {80, 19, 0, 1},
     "ExceptionOccurred 14, PushLocalFrame 2, PopLocalFrame 2, NewGlobalRef 4, DeleteGlobalRef 4, DeleteLocalRef 21, "
     "NewObjectV 4, CallObjectMethodV 1, CallVoidMethodV 13, NewString 17"},
    {{"unnamed type", kUnnamed, &MakeNothing, nullptr}, {3, 14, 0, 1}, "PushLocalFrame 1, PopLocalFrame 1"},
};

class CallCountsTest : public CLeakCheckedTest {
protected:
    static void SetUpTestSuite() { static_cast<void>(LoadedFakeRuntime()); }

    void SetUp() override {
        CLeakCheckedTest::SetUp();
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        LoadedFakeRuntime().Reset();
        LoadedFakeRuntime().SetCallLogEnabled(false);
        for (const JavaMethodBinding* const method : kAnswering) {
            LoadedFakeRuntime().MakeMethodReturnNull(Binding::DesktopMessageClient::kClass, method->name);
        }
        m_registry = std::make_unique<CAgentRegistry>();
        m_registry->SetAgentText(L"JrePath", TestPaths::kFakeRuntime);
        m_registry->SetAgentText(L"ConfigDirectory", L"C:\\Config");
        m_host = std::make_unique<CLeanHost>();
        m_manager = std::make_unique<CRMICommManagerImpl>(m_slots);
        ASSERT_EQ(m_manager->SetCurrentServerConfig(kUrl, kToken, L""), S_OK);
        m_host->ForgetError();  // the fake runtime needs no class path
    }

    void TearDown() override {
        EXPECT_EQ(m_host->GetLastError(), L"");
        m_slots.RunCleaner();
        m_manager.reset();
        m_host.reset();
        m_registry.reset();
        boost::on_thread_exit();  // gives back what Boost keeps for this thread to its end
        CoUninitialize();
        CLeakCheckedTest::TearDown();
    }

    /// What the subject costs: the library's calls, of BSTRs those beyond the reader's.
    [[nodiscard]] CallCounts Measure(const Subject& subject) {
        const CallCounts whole = MeasureItem(subject.type, subject.make(*m_host));
        return subject.makeWithoutOne ? whole - MeasureItem(subject.type, subject.makeWithoutOne(*m_host)) : whole;
    }

private:
    static constexpr const JavaMethodBinding* kAnswering[] = {
        &Binding::DesktopMessageClient::kOnStartup, &Binding::DesktopMessageClient::kOnUserLogon,
        &Binding::DesktopMessageClient::kOnDataCollected, &Binding::DesktopMessageClient::kOnExtendedDataCollected,
        &Binding::DesktopMessageClient::kOnDesktopPoll};
    static constexpr wchar_t kUrl[] = L"rmi://server";
    static constexpr wchar_t kToken[] = L"the token";

    [[nodiscard]] CallCounts MeasureItem(unsigned char type, IUnknown* data) {
        const auto send = [&] { EXPECT_EQ(m_manager->DumpData<IUnknown>(kUrl, kToken, L"", 1, type, data), S_OK); };
        send();  // once uncounted: what is made at the first time stays
        CallCounts counts = CountCalls(send);
        const JavaIds ids{};
        const CItemReader<CNoJava> reader(CNoJava(), ids, m_host->System(), kToken);
        counts.texts -= CountCalls([&] { reader.Send(type, 1, data); }).texts;
        return counts;
    }

    template <typename Work>
    [[nodiscard]] static CallCounts CountCalls(const Work& work) {
        const CCallCounter counter(LoadedFakeRuntime());
        const CallCounts before = counter.Count();
        work();
        return counter.Count() - before;
    }

    std::unique_ptr<CAgentRegistry> m_registry;
    std::unique_ptr<CLeanHost> m_host;
    CThreadSlots m_slots;
    std::unique_ptr<CRMICommManagerImpl> m_manager;
};

constexpr char kCure[] =
    "The calls have changed. More of them are a loss of speed: find out why. Fewer are a gain: write the new figures "
    "into this test's table and into docs/performance.md.";

TEST_F(CallCountsTest, EachItemAndEachThingInItCostsWhatTheTableSays) {
    std::printf(
        "| | JNI calls | locks | allocations | heap blocks | texts | of JNI's |\n|---|--:|--:|--:|--:|--:|---|\n");
    for (const Expected& expected : kExpected) {
        const CallCounts counts = Measure(expected.subject);

        std::printf("| %s | %ld | %ld | %ld | %ld | %ld | %s |\n", expected.subject.name, counts.CountJni(),
                    counts.locks, counts.allocations, counts.heapBlocks, counts.texts, counts.TellJni().c_str());
        EXPECT_EQ(counts.TellJni(), expected.jni) << expected.subject.name << ". " << kCure;
        EXPECT_EQ(counts.locks, expected.expense.locks) << expected.subject.name << ". " << kCure;
        EXPECT_EQ(counts.allocations, expected.expense.allocations) << expected.subject.name << ". " << kCure;
        EXPECT_EQ(counts.heapBlocks, expected.expense.heapBlocks) << expected.subject.name << ". " << kCure;
        EXPECT_EQ(counts.texts, expected.expense.texts) << expected.subject.name << ". " << kCure;
    }
}

}  // namespace
