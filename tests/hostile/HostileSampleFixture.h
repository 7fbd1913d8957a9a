#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "CDataConversionTest.h"
#include "CJavaLocalFrame.h"
#include "HostileCases.h"
#include "HostileSampleHost.h"
#include "HostileSampleModel.h"
#include "IHostLogger.h"

/// Conversions of hostile data on the fake runtime: one machine, one convertor and one logger for all cases of a test.
class CHostileConversionTest : public CDataConversionTest {
protected:
    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::BaseSample::kClass, Binding::BaseUserSession::kClass, Binding::BaseRemoteApp::kClass,
                     Binding::BaseMetric::kClass, Binding::HashMap::kClass});
        Fake().SetCallLogEnabled(false);
        m_globalReferences = Fake().GetGlobalReferences();
    }
    void TearDown() override {
        m_convertor.reset();
        EXPECT_EQ(m_logger.CountReferences(), 0);
        CDataConversionTest::TearDown();
    }

    [[nodiscard]] const CJNIConvertor& Convertor() {
        if (!m_convertor) {
            m_convertor = std::make_unique<CJNIConvertor>(CBridgeLog(&m_logger));
        }
        return *m_convertor;
    }

    /// A fault for three cases in ten: at the first calls as a rule, and at times all calls from one on.
    [[nodiscard]] static OrderedFault MakeFault(CRandom& random) {
        constexpr const char* kFunctions[] = {"NewString", "NewObjectV", "CallVoidMethodV", "NewGlobalRef",
                                              "PushLocalFrame"};
        OrderedFault fault;
        if (random.Below(10) < 3) {
            fault.function = random.Pick(kFunctions);
            fault.nth = static_cast<long>(random.Between(1, 12));
            fault.times = random.OneIn(4) ? -1 : static_cast<long>(random.Between(1, 3));
            fault.hasException = !random.OneIn(4);
        }
        return fault;
    }

    /// Converts with `convert(host)`, which gives the object that it made, and compares what happened with `predicted`.
    /// Afterwards nothing is referenced, pending or pinned, and every text is freed.
    template <typename Convert>
    void ExpectConversion(const Prediction& predicted, const OrderedFault& fault, const Convert& convert) {
        const ResourceCounts before = CResourceLedger::Get().Count();
        const long violations = Fake().GetMisuseCount();
        m_events.clear();
        Fake().ForgetMethodLog();
        ForgetJavaCalls();
        CHostileHost host;
        {
            const CJavaLocalFrame frame(Env());
            if (fault.nth != 0) {
                Fake().Fail(fault.function, fault.nth, fault.times,
                            fault.hasException ? FakeFaultMode::eWithException : FakeFaultMode::eWithoutException);
            }
            const Object object = convert(host);
            Fake().ClearFaults();
            TakeJavaCalls();
            EXPECT_EQ(object != nullptr, predicted.hasObject);
            EXPECT_EQ(Fake().GetOpenFrames(), 1);
        }
        host.ReleaseOwn();
        EXPECT_EQ(m_events, predicted.events);
        EXPECT_EQ(host.DescribeViolations(), "");
        EXPECT_FALSE(Fake().IsExceptionPending());
        EXPECT_EQ(Fake().GetPinnedStrings(), 0);
        EXPECT_EQ(Fake().GetLocalReferencesOfThread(), 0);
        EXPECT_EQ(Fake().GetGlobalReferences(), m_globalReferences);
        EXPECT_EQ(Fake().GetMisuseCount(), violations);
        EXPECT_EQ(CResourceLedger::Get().Count(), before);
    }

    [[nodiscard]] bool HasEvent(const std::string& beginning) const { return CountCalls(m_events, beginning) != 0; }

private:
    /// A logger that puts its entries between Java's calls.
    class CEventLogger final : public IHostLogger {
    public:
        explicit CEventLogger(CHostileConversionTest& test) : m_test(test) {}
        virtual ~CEventLogger() = default;

        CEventLogger(const CEventLogger&) = delete;
        CEventLogger& operator=(const CEventLogger&) = delete;

        [[nodiscard]] long CountReferences() const noexcept { return m_references; }

        STDMETHODIMP QueryInterface(REFIID, void** object) noexcept override {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(++m_references); }
        STDMETHODIMP_(ULONG) Release() noexcept override { return static_cast<ULONG>(--m_references); }
        STDMETHODIMP Reserved3() noexcept override { return Refuse(); }
        STDMETHODIMP Reserved4() noexcept override { return Refuse(); }
        STDMETHODIMP Reserved5() noexcept override { return Refuse(); }
        STDMETHODIMP Reserved6() noexcept override { return Refuse(); }
        STDMETHODIMP Reserved7() noexcept override { return Refuse(); }
        STDMETHODIMP Reserved8() noexcept override { return Refuse(); }
        STDMETHODIMP LogError(BSTR component, BSTR message) noexcept override {
            return Add("error: ", component, message);
        }
        STDMETHODIMP LogWarning(BSTR component, BSTR message) noexcept override {
            return Add("warning: ", component, message);
        }
        STDMETHODIMP LogInfo(BSTR component, BSTR message) noexcept override {
            return Add("information: ", component, message);
        }
        STDMETHODIMP LogVerbose(BSTR component, LONG level, BSTR message) noexcept override {
            return Add(level == 8 ? "verbose: " : "verbose of another level: ", component, message);
        }

    private:
        HRESULT Refuse() {
            m_test.m_events.emplace_back("a reserved operation of the logger's was called");
            return E_NOTIMPL;
        }
        HRESULT Add(const char* level, BSTR component, BSTR message) {
            m_test.TakeJavaCalls();
            const bool isOurs = ViewBstr(component) == L"telvar-rmi";
            m_test.m_events.push_back((isOurs ? "" : "by another component: ") + std::string(level) +
                                      QuoteForEvent(std::wstring(ViewBstr(message))));
            return E_NOTIMPL;  // which nobody looks at
        }

        CHostileConversionTest& m_test;
        long m_references = 0;
    };

    void TakeJavaCalls() {
        for (std::string& call : JavaCalls()) {
            m_events.push_back(std::move(call));
        }
        ForgetJavaCalls();
    }

    Events m_events;
    CEventLogger m_logger{*this};
    std::unique_ptr<CJNIConvertor> m_convertor;
    long m_globalReferences = 0;
};
