#pragma once

#include <comdef.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "CAllocationFault.h"
#include "CBstr.h"
#include "CFakeConvertorTest.h"
#include "CHresultException.h"
#include "CJavaLocalFrame.h"

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

        for (const bool isOnce : {true, false}) {
            bool hasFired = true;
            for (long nth = 1; hasFired; ++nth) {
                const std::string place = std::to_string(nth) + (isOnce ? "" : " for ever");
                const CJavaLocalFrame frame(Env());
                ForgetJavaCalls();
                Host().ForgetLog();
                Fake().Fail("*", nth, isOnce ? 1 : -1);

                FaultRound round{convert(), {}, {}, isOnce, {}};
                hasFired = Fake().GetFaultsFired() != 0;
                round.failed = hasFired ? Fake().GetFailedFunction() : "";
                Fake().ClearFaults();
                round.calls = JavaCalls();
                round.errors = Host().Errors();

                EXPECT_TRUE(IsPartOf(round.calls, whole)) << place;
                EXPECT_FALSE(Fake().IsExceptionPending()) << place;
                EXPECT_EQ(Fake().GetPinnedStrings(), 0) << place;
                EXPECT_EQ(Fake().GetOpenFrames(), 1) << place << ": the round's";
                EXPECT_EQ(Fake().GetGlobalReferences(), m_loadedClasses + (round.object ? 1 : 0)) << place;
                EXPECT_EQ(Host().Record().DescribeLeftovers(), hostObjects) << place;
                if (isOnce) {
                    EXPECT_LE(Fake().GetLocalReferencesOfThread(), 1) << place << ": the exception";
                }
                if (hasFired) {
                    check(round);
                } else {
                    EXPECT_NE(round.object, nullptr) << place;
                    EXPECT_EQ(round.calls, whole) << place;
                }
            }
        }
    }

    /// Converts with its 1st, 2nd, 3rd ... allocation failing until none fails: it throws, or its result is whole.
    /// @return how often it threw
    template <typename Convert>
    long FailEachAllocation(const Convert& convert) {
        ForgetJavaCalls();
        EXPECT_NE(convert(), nullptr);
        const Names whole = JavaCalls();

        long thrown = 0;
        bool hasFired = true;
        for (long nth = 1; hasFired; ++nth) {
            const CJavaLocalFrame frame(Env());
            ForgetJavaCalls();
            const ResourceCounts before = CResourceLedger::Get().Count();
            Object object;
            bool isThrown = false;
            {
                const CAllocationFault fault(nth);
                isThrown = IsMemoryExhausted([&] { object = convert(); });
                hasFired = fault.HasFired();
            }

            thrown += isThrown ? 1 : 0;
            EXPECT_EQ(object == nullptr, isThrown) << nth;
            EXPECT_TRUE(isThrown || JavaCalls() == whole) << nth;
            EXPECT_FALSE(Fake().IsExceptionPending()) << nth;
            EXPECT_EQ(Fake().GetPinnedStrings(), 0) << nth;
            EXPECT_EQ(Fake().GetOpenFrames(), 1) << nth << ": the round's";
            EXPECT_EQ(Fake().GetGlobalReferences(), m_loadedClasses + (object ? 1 : 0)) << nth;
            EXPECT_EQ(CResourceLedger::Get().Count(), before) << nth;
        }
        return thrown;
    }

    /// Whether `act` throws for want of memory; it throws nothing else.
    template <typename Act>
    [[nodiscard]] static bool IsMemoryExhausted(const Act& act) {
        try {
            act();
            return false;
        } catch (const std::bad_alloc&) {
            return true;
        } catch (const CHresultException& failure) {
            EXPECT_EQ(failure.GetResult(), E_OUTOFMEMORY);
        } catch (const _com_error& failure) {
            EXPECT_EQ(failure.Error(), E_OUTOFMEMORY);
        }
        return true;
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
