#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <comdef.h>

#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "CHresultException.h"

/// One kind of thing that the code under test depends on, whose calls fail when told to.
class CFaultSource {
public:
    CFaultSource() = default;
    virtual ~CFaultSource() = default;

    CFaultSource(const CFaultSource&) = delete;
    CFaultSource& operator=(const CFaultSource&) = delete;

    [[nodiscard]] virtual const char* GetName() const noexcept = 0;

    /// The `nth` call from now on fails (1: the next one), on the calling thread at least; `isForEver`: all behind it
    /// as well.
    virtual void Start(long nth, bool isForEver) = 0;
    /// No call fails from now on. Any thread.
    virtual void Stop() noexcept = 0;

    // Of the time between the last Start and its Stop.

    [[nodiscard]] virtual bool HasFired() const = 0;
    /// The calls that failed, as far as the source tells them apart: the one that failed first in front.
    [[nodiscard]] virtual std::vector<std::string> NameFailed() const = 0;
    /// Whether a failed call said that, as an HRESULT.
    [[nodiscard]] virtual bool HasSaid(HRESULT result) const = 0;
    /// Whether one did that leaves the code under test as an exception with that result.
    [[nodiscard]] virtual bool MayThrow(HRESULT /*result*/) const { return false; }
    /// Whether there is no memory: the tests' own objects on the other side have none either, then.
    [[nodiscard]] virtual bool IsOfMemory() const noexcept { return false; }
};

/// How an operation ended: with a result, or with one of the exceptions that stand for exhausted resources.
struct FaultOutcome {
    enum class End { eReturned, eBadAlloc, eComError, eHresult };

    End end = End::eReturned;
    HRESULT result = S_OK;  ///< E_OUTOFMEMORY for std::bad_alloc

    [[nodiscard]] bool IsThrown() const noexcept { return end != End::eReturned; }

    friend std::ostream& operator<<(std::ostream& out, const FaultOutcome& outcome) {
        constexpr const char* kEnds[] = {"returned", "std::bad_alloc", "_com_error", "CHresultException"};
        return out << kEnds[static_cast<int>(outcome.end)] << " 0x" << std::hex
                   << static_cast<unsigned long>(outcome.result) << std::dec;
    }
};

/// Any other exception goes on, and fails the test.
template <typename Act>
[[nodiscard]] FaultOutcome CatchExhaustion(const Act& act) {
    using End = FaultOutcome::End;
    try {
        return {End::eReturned, act()};
    } catch (const std::bad_alloc&) {
        return {End::eBadAlloc, E_OUTOFMEMORY};
    } catch (const _com_error& failure) {
        return {End::eComError, failure.Error()};
    } catch (const CHresultException& failure) {
        return {End::eHresult, failure.GetResult()};
    }
}

/// One round: an operation, run once while one of its calls, or that and all behind it, fails.
class CFaultRound {
public:
    CFaultRound(CFaultSource& source, long nth, bool isForEver) noexcept
        : m_source(source), m_nth(nth), m_isForEver(isForEver) {}

    CFaultRound(const CFaultRound&) = delete;
    CFaultRound& operator=(const CFaultRound&) = delete;

    /// Runs `act`, which returns an HRESULT, with the fault in force on the calling thread.
    template <typename Act>
    FaultOutcome Run(const Act& act) {
        const CInForce inForce(*this);
        return CatchExhaustion(act);
    }

    [[nodiscard]] const CFaultSource& GetSource() const noexcept { return m_source; }
    [[nodiscard]] bool IsForEver() const noexcept { return m_isForEver; }
    /// Whether a call failed in Run, and which one did first.
    [[nodiscard]] bool HasFired() const { return m_source.HasFired(); }
    [[nodiscard]] std::vector<std::string> NameFailed() const {
        return HasFired() ? m_source.NameFailed() : std::vector<std::string>();
    }
    [[nodiscard]] bool IsFirstFailed(const char* name) const {
        const std::vector<std::string> failed = NameFailed();
        return !failed.empty() && failed.front() == name;
    }

    friend std::ostream& operator<<(std::ostream& out, const CFaultRound& round) {
        out << round.m_source.GetName() << ", call " << round.m_nth << (round.m_isForEver ? " for ever" : "")
            << (round.HasFired() ? "" : " (no fault)");
        for (const std::string& call : round.NameFailed()) {
            out << ' ' << call;
        }
        return out;
    }

private:
    class CInForce {
    public:
        explicit CInForce(const CFaultRound& round) : m_source(round.m_source) {
            m_source.Start(round.m_nth, round.m_isForEver);
        }
        ~CInForce() { m_source.Stop(); }

        CInForce(const CInForce&) = delete;
        CInForce& operator=(const CInForce&) = delete;

    private:
        CFaultSource& m_source;
    };

    CFaultSource& m_source;
    const long m_nth;
    const bool m_isForEver;
};

/// How many rounds were run, the quiet one at the end included.
struct FaultRoundCounts {
    long once = 0;
    long forEver = 0;
};

/// The one loop: `runRound` with the 1st, 2nd, 3rd ... call failing, first alone and then with all calls behind it,
/// each until a round runs in which none failed. That last round proves that there are no further calls.
template <typename RunRound>
FaultRoundCounts FailEachCall(CFaultSource& source, const RunRound& runRound) {
    constexpr long kMostRounds = 50'000;
    FaultRoundCounts counts;
    for (const bool isForEver : {false, true}) {
        long nth = 0;
        bool hasFired = true;
        while (hasFired && nth < kMostRounds) {
            CFaultRound round(source, ++nth, isForEver);
            runRound(round);
            hasFired = round.HasFired();
        }
        EXPECT_FALSE(hasFired) << source.GetName() << ": the rounds come to no end";
        (isForEver ? counts.forEver : counts.once) = nth;
    }
    return counts;
}
