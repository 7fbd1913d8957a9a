#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJavaClass.h"
#include "HostObjects.h"

/// Conversions of samples and their parts, the classes of the data model loaded.
class CSampleConversionTest : public CDataConversionTest {
protected:
    /// What Java says; it comes out otherwise where it is taken for a format.
    static constexpr char kRefusal[] = "refused %s%n";
    static inline const std::wstring s_refused = L"refused %s%n";

    /// The times of a sample, of its sessions and of their applications tell which node a message means.
    static constexpr DATE kSampleTime = 45351.5;
    static constexpr DATE kSessionTime = 45352.5;
    static constexpr DATE kAppTime = 45353.5;
    static constexpr char kSampleMade[] = "BaseSample.<init>(1709208000000)";
    static inline const std::wstring s_sampleName = L"02/29/24 12:00:00";
    static inline const std::wstring s_sessionNodeName = L"03/01/24 12:00:00";

    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::BaseSample::kClass, Binding::BaseUserSession::kClass, Binding::BaseRemoteApp::kClass,
                     Binding::BaseMetric::kClass});
    }

    [[nodiscard]] CHostReference<ISampleNode> MakeNode(SampleData data) {
        return MakeSampleNode(Host().ShareRecord(), std::move(data));
    }
    /// An object of Java's to put something into; all these classes have that constructor. Empty where Java fails.
    [[nodiscard]] Object MakeTarget(const char* className) {
        Object target = VM().GetClass(className)->NewObject(Binding::BaseSample::kCtor);
        VM().DropJavaException();
        return target;
    }
    /// The same, already there when the test begins to look.
    [[nodiscard]] Object MakeExpectedTarget(const char* className) {
        Object target = MakeTarget(className);
        ForgetCalls();
        ForgetJavaCalls();
        return target;
    }

    /// What Java is called with for a metric with an integer value.
    [[nodiscard]] static Names MetricCalls(const std::string& owner, const std::string& name, LONGLONG value) {
        return {"BaseMetric.<init>(\"" + name + "\")", "BaseMetric.putLongValue(" + std::to_string(value) + ")",
                owner + ".putMetric(BaseMetric@instance)"};
    }
    [[nodiscard]] static Names Join(const std::vector<Names>& parts) {
        Names all;
        for (const Names& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        return all;
    }

    /// What a message ends in that has the error text after two blanks.
    [[nodiscard]] static std::wstring Suffix(HRESULT result) {
        return std::wstring(FormatWithErrorText(ErrorTextForm::eSuffix, result, L"").GetView());
    }

    /// All that happens while `convert` runs, in its order: the host's calls, its logger's too, and Java's.
    template <typename Convert>
    [[nodiscard]] Names Trace(const Convert& convert) {
        Names trace;
        std::size_t javaCallsSeen = 0;
        const auto takeJavaCalls = [&] {
            const Names calls = JavaCalls();
            trace.insert(trace.end(), calls.begin() + static_cast<std::ptrdiff_t>(javaCallsSeen), calls.end());
            javaCallsSeen = calls.size();
        };
        ForgetJavaCalls();
        Host().Record().SetBeforeCall([&](const std::string& text) {
            takeJavaCalls();
            trace.push_back(text);
        });
        convert();
        Host().Record().SetBeforeCall(nullptr);
        takeJavaCalls();
        return trace;
    }
};
