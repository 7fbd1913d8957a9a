#pragma once

#include <windows.h>

#include <string>
#include <vector>

enum class FaultKind {
    eNone,
    eResult,     ///< return a result, leave the out-parameters
    eUntouched,  ///< return S_OK, leave the out-parameters
    eNull        ///< return S_OK, the out-parameters null or zero
};

struct Fault {
    FaultKind kind = FaultKind::eNone;
    HRESULT result = S_OK;
};

/// Whether `pattern` means this call: it is the operation ("ISystemInfo::Refresh") or the call as recorded ("Session 3:
/// get_sid"), or begins either and ends in an asterisk.
[[nodiscard]] bool MatchesCall(const std::string& pattern, const std::string& operation, const std::string& text);

/// Which calls are to go wrong. No lock of its own.
class CFaultTable {
public:
    /// The `nth` matching call from now on (1: the next) has the fault, and those after it, `times` in all; below 0:
    /// for ever.
    void Add(std::string pattern, long nth, Fault fault, long times);
    void Clear() noexcept { m_rows.clear(); }

    /// Counts the call in every row that matches it. What the first of them that is due says, or no fault.
    [[nodiscard]] Fault Take(const std::string& operation, const std::string& text);

    [[nodiscard]] long CountFired() const noexcept { return m_fired; }
    /// The first call that the last row has made go wrong, as recorded; empty when none has.
    [[nodiscard]] const std::string& GetFirstFailed() const noexcept { return m_firstFailed; }

private:
    struct Row {
        std::string pattern;
        long callsUntilDue;
        long times;
        Fault fault;
    };

    std::vector<Row> m_rows;
    long m_fired = 0;
    std::string m_firstFailed;
};
