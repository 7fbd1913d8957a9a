// Items of every kind, sent over and over, leave nothing behind: of Java's, of COM's, of the system's, of memory. Each
// test has a process, and a Java machine, of its own.

#include <map>
#include <tuple>

#include "CRealAccountsTest.h"
#include "ItemKinds.h"
#include "RunOnSystemThread.h"

namespace {

enum class Regime {
    eAnswered,
    eServerDown,      ///< the client cannot reach it, and says so with each item
    eAnswersRefused,  ///< the callback and the executor, who get the answers, fail
    eNewThreads       ///< each item comes from a thread that is attached to Java for it, and ends
};

constexpr ItemKind kNameless{11, L"nameless", nullptr, false};

class DumpDataAccountsTest : public CRealAccountsTest,
                             public testing::WithParamInterface<std::tuple<Regime, ItemKind>> {
protected:
    DumpDataAccountsTest() : m_regime(std::get<Regime>(GetParam())), m_kind(std::get<ItemKind>(GetParam())) {}

    /// Orders the client what to do.
    [[nodiscard]] std::wstring MakeUrl() const {
        std::string url = "rmi://server?forget";
        if (m_kind.method) {
            const std::string method = m_kind.method;
            url += m_regime == Regime::eServerDown ? "&unreachable=" + method : "&" + method + "=answer";
        }
        return {url.begin(), url.end()};
    }

    [[nodiscard]] Outcome Expected() const {
        if (!m_kind.method) {
            return {S_OK, 0, 0, 0};
        }
        if (m_regime == Regime::eServerDown) {
            return {kServerNotReached, 1, 0, 0};
        }
        const bool isRefused = m_regime == Regime::eAnswersRefused;
        switch (m_kind.type) {
            case eUserSessionLogon:
            case eStartup:
                return {S_OK, 0, 1, 0};  // what a callback returns does not count
            case eExtendedData:
            case eSample:
            case kDesktopPoll:
                return isRefused ? Outcome{E_ABORT, 1, 0, 1} : Outcome{S_OK, 0, 0, 1};
            default:
                return {S_OK, 0, 0, 0};
        }
    }

    [[nodiscard]] HRESULT Send(const std::wstring& url) {
        if (m_regime != Regime::eNewThreads) {
            return Dump(url, L"", m_kind.type, m_data.Get());
        }
        HRESULT result = E_UNEXPECTED;
        RunOnSystemThread([&] { result = Dump(url, L"", m_kind.type, m_data.Get()); });
        return result;
    }

    [[nodiscard]] std::string MakeRowName() const {
        static const std::map<Regime, std::string> names = {{Regime::eAnswered, "answered"},
                                                            {Regime::eServerDown, "server down"},
                                                            {Regime::eAnswersRefused, "answers refused"},
                                                            {Regime::eNewThreads, "new threads"}};
        const std::wstring kind = m_kind.name;
        return names.at(m_regime) + ": " + std::string(kind.begin(), kind.end());
    }

    const Regime m_regime;
    const ItemKind m_kind;
};

TEST_P(DumpDataAccountsTest, ManyCallsLeaveNothingBehind) {
    const std::wstring url = MakeUrl();
    const Outcome expected = Expected();
    if (m_regime == Regime::eAnswersRefused) {
        m_callback.SetResult(E_ABORT);
        Host().Actions().SetResult(E_ABORT);
    }
    StartWith(url);

    ExpectNothingLeftBehind(
        {MakeRowName(), kCalls, [&] { ASSERT_EQ(TakeOutcome(Send(url)), expected); }, &EmptyJavaHeap});
}

std::string NameKind(const testing::TestParamInfo<std::tuple<Regime, ItemKind>>& info) {
    const std::wstring name = std::get<ItemKind>(info.param).name;
    return {name.begin(), name.end()};
}

auto EachKindOf(Regime regime) {
    std::vector<ItemKind> kinds(std::begin(kItemKinds), std::end(kItemKinds));
    kinds.push_back(kNameless);
    return testing::Combine(testing::Values(regime), testing::ValuesIn(kinds));
}

INSTANTIATE_TEST_SUITE_P(Answered, DumpDataAccountsTest, EachKindOf(Regime::eAnswered), NameKind);
INSTANTIATE_TEST_SUITE_P(ServerDown, DumpDataAccountsTest, EachKindOf(Regime::eServerDown), NameKind);
INSTANTIATE_TEST_SUITE_P(AnswersRefused, DumpDataAccountsTest, EachKindOf(Regime::eAnswersRefused), NameKind);
INSTANTIATE_TEST_SUITE_P(NewThreads, DumpDataAccountsTest, EachKindOf(Regime::eNewThreads), NameKind);

}  // namespace
