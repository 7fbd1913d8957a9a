#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CAllocationFaults.h"
#include "CBstr.h"
#include "CFakeConvertorTest.h"
#include "CHeldWrapperBlocks.h"
#include "CJavaLocalFrame.h"
#include "CJniFaults.h"

/// Conversions of the host's data on the fake runtime: what Java was called with, and how they bear each failure.
/// After each test the classes alone are referenced.
class CDataConversionTest : public CFakeConvertorTest {
protected:
    using Object = std::shared_ptr<CJavaObject>;

    /// A result that the system has no text for.
    static constexpr auto kUntold = static_cast<HRESULT>(0x8ABCDEF0);
    static constexpr HRESULT kFailures[] = {E_FAIL, E_ACCESSDENIED, E_NOTIMPL, E_POINTER, kUntold};

    /// One conversion during which a JNI call failed.
    struct FaultRound {
        Object object;
        Names calls;         ///< see JavaCalls
        std::string failed;  ///< the function that failed last
        bool isOnce;         ///< else that and all calls after it
        std::vector<std::wstring> errors;
    };

    void TearDown() override {
        EXPECT_EQ(Fake().GetGlobalReferences(), m_loadedClasses) << "the classes' own";
        CFakeConvertorTest::TearDown();
    }

    void LoadClasses(std::initializer_list<const char*> classNames) {
        for (const char* const className : classNames) {
            LoadBoundClass(className);
            ++m_loadedClasses;
        }
        ForgetCalls();
    }

    /// The calls of the data's methods and constructors since ForgetJavaCalls, without packages and signatures:
    /// `BaseUserSession.putProperty("a", "b")`. What is asked of exceptions is left out.
    [[nodiscard]] Names JavaCalls() const {
        Names calls;
        for (long i = m_forgottenJavaCalls; i < Fake().GetMethodLogSize(); ++i) {
            const std::string call = Shorten(Fake().GetMethodLogEntry(i));
            if (call.compare(0, s_languagePackage.size(), s_languagePackage) != 0) {
                calls.push_back(call);
            }
        }
        return calls;
    }
    void ForgetJavaCalls() { m_forgottenJavaCalls = Fake().GetMethodLogSize(); }

    /// What the host was asked, its logger apart.
    [[nodiscard]] Names HostCalls() {
        Names calls = Host().Record().GetCallTexts();
        calls.erase(std::remove_if(calls.begin(), calls.end(),
                                   [](const std::string& call) { return CountCalls({call}, "Logger: ") != 0; }),
                    calls.end());
        return calls;
    }

    /// How many of `calls` begin like this.
    [[nodiscard]] static long CountCalls(const Names& calls, const std::string& beginning) {
        return static_cast<long>(std::count_if(calls.begin(), calls.end(), [&](const std::string& call) {
            return call.compare(0, beginning.size(), beginning) == 0;
        }));
    }

    /// The constructor or method throws from now on, with an exception that says `description` and has no frames.
    static void MakeThrow(const char* className, const char* method, const char* description) {
        FakeException exception;
        exception.description = description;
        Fake().MakeMethodThrow(className, method, exception);
    }

    /// As the calls show a text: quoted and in ASCII.
    [[nodiscard]] static std::string Quote(const std::wstring& text) {
        std::string quoted = "\"";
        for (const wchar_t unit : text) {
            std::array<char, 8> code{};
            const bool isPlain = unit >= L' ' && unit <= L'~' && unit != L'"' && unit != L'\\';
            std::snprintf(code.data(), code.size(), isPlain ? "%c" : "\\u%04x", static_cast<unsigned>(unit));
            quoted += code.data();
        }
        return quoted + "\"";
    }
    /// The system's own text of a value, empty where it has none.
    [[nodiscard]] static std::wstring TextOf(const VARIANT& value) {
        VARIANT text{};
        if ((value.vt & VT_BYREF) != 0 && !value.byref) {
            return {};  // nobody may ask the system for that
        }
        if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR))) {
            return {};
        }
        return std::wstring(CBstr(text.bstrVal).GetView());
    }

    /// What a message ends in that has the error text without blanks in front.
    [[nodiscard]] static std::wstring RunTogether(HRESULT result) {
        return std::wstring(FormatWithErrorText(ErrorTextForm::eRunTogether, result, L"").GetView());
    }

    /// Converts with its 1st, 2nd, 3rd ... JNI call failing, once and then all after it, until none fails. After each
    /// round nothing is pending, pinned or referenced, and Java was called as it is without a fault, calls left out.
    template <typename Convert, typename Check>
    void FailEachJniCall(const Convert& convert, const Check& check) {
        ForgetJavaCalls();
        ASSERT_NE(convert(), nullptr);
        const Names whole = JavaCalls();
        const std::string hostObjects = Host().Record().DescribeLeftovers();

        CJniFaults faults;
        static_cast<void>(FailEachCall(faults, [&](CFaultRound& fault) {
            const CJavaLocalFrame frame(Env());
            ForgetJavaCalls();
            Host().ForgetLog();

            FaultRound round{nullptr, {}, {}, !fault.IsForEver(), {}};
            EXPECT_FALSE(Run(fault, convert, round.object).IsThrown()) << fault;
            round.failed = fault.HasFired() ? fault.NameFailed().front() : "";
            round.calls = JavaCalls();
            round.errors = Host().Errors();

            EXPECT_TRUE(IsPartOf(round.calls, whole)) << fault;
            ExpectNothingPending(fault, round.object);
            EXPECT_EQ(Host().Record().DescribeLeftovers(), hostObjects) << fault;
            if (round.isOnce) {
                EXPECT_LE(Fake().GetLocalReferencesOfThread(), 1) << fault << ": the exception";
            }
            if (fault.HasFired()) {
                check(round);
            } else {
                EXPECT_NE(round.object, nullptr) << fault;
                EXPECT_EQ(round.calls, whole) << fault;
            }
        }));
    }

    /// Converts with its 1st, 2nd, 3rd ... allocation failing, once and then all after it, until none fails: it throws,
    /// or its result is whole. Wrappers find no kept memory, but what one gives back serves the next.
    /// @return how often it threw with one allocation failing
    template <typename Convert>
    long FailEachAllocation(const Convert& convert) {
        ForgetJavaCalls();
        EXPECT_NE(convert(), nullptr);
        const Names whole = JavaCalls();

        long thrown = 0;
        CAllocationFaults faults;
        static_cast<void>(FailEachCall(faults, [&](CFaultRound& fault) {
            const CJavaLocalFrame frame(Env());
            ForgetJavaCalls();
            const ResourceCounts before = CResourceLedger::Get().Count();

            Object object;
            const FaultOutcome outcome = [&] {
                const CHeldWrapperBlocks held(*SharedVM());
                return Run(fault, convert, object);
            }();

            thrown += outcome.IsThrown() && !fault.IsForEver() ? 1 : 0;
            EXPECT_TRUE(!outcome.IsThrown() || outcome.result == E_OUTOFMEMORY) << fault << ": " << outcome;
            // Where there is no memory any more the host's objects have none, either: what they do not give is missing.
            EXPECT_TRUE(fault.IsForEver() || (object == nullptr) == outcome.IsThrown()) << fault;
            EXPECT_TRUE(fault.IsForEver() || outcome.IsThrown() || JavaCalls() == whole) << fault;
            ExpectNothingPending(fault, object);
            EXPECT_EQ(CResourceLedger::Get().Count(), before) << fault;
        }));
        return thrown;
    }

    /// Whether `act` throws for want of memory; it throws nothing else.
    template <typename Act>
    [[nodiscard]] static bool IsMemoryExhausted(const Act& act) {
        const FaultOutcome outcome = CatchExhaustion([&] {
            act();
            return S_OK;
        });
        EXPECT_TRUE(!outcome.IsThrown() || outcome.result == E_OUTOFMEMORY) << outcome;
        return outcome.IsThrown();
    }

private:
    static inline const std::string s_languagePackage = "java/lang/";

    [[nodiscard]] static std::string Shorten(const std::string& call) {
        const std::size_t nameEnd = call.find('(');
        std::string text = call.substr(0, nameEnd) + call.substr(call.find('(', nameEnd + 1));
        for (const std::string package : {"com/orvane/kelbrin/adapters/tolmcommon/datamodel/", "java/util/"}) {
            for (std::size_t at = text.find(package); at != std::string::npos; at = text.find(package, at)) {
                text.erase(at, package.size());
            }
        }
        return text;
    }

    /// Converts in a round.
    template <typename Convert>
    static FaultOutcome Run(CFaultRound& fault, const Convert& convert, Object& object) {
        return fault.Run([&] {
            object = convert();
            return S_OK;
        });
    }

    void ExpectNothingPending(const CFaultRound& fault, const Object& object) {
        EXPECT_FALSE(Fake().IsExceptionPending()) << fault;
        EXPECT_EQ(Fake().GetPinnedStrings(), 0) << fault;
        EXPECT_EQ(Fake().GetOpenFrames(), 1) << fault << ": the round's";
        EXPECT_EQ(Fake().GetGlobalReferences(), m_loadedClasses + (object ? 1 : 0)) << fault;
    }

    /// Whether `part` is `whole` with calls left out.
    [[nodiscard]] static bool IsPartOf(const Names& part, const Names& whole) {
        auto next = whole.begin();
        return std::all_of(part.begin(), part.end(), [&](const std::string& call) {
            next = std::find(next, whole.end(), call);
            return next != whole.end() && next++ != whole.end();
        });
    }

    long m_loadedClasses = 0;
    long m_forgottenJavaCalls = 0;
};
