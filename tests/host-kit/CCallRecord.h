#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "CFaultTable.h"
#include "HostInterfaces.h"

class CHostObject;

/// One operation that was asked of an object.
struct HostCall {
    std::string operation;  ///< "IPropertyBox::GetProperty"
    std::string text;       ///< "PropertyBox meta: GetProperty(route)"
    DWORD threadId;
};

/// What a host's objects have in common: the calls made on them, in order; the calls that are to go wrong; who is alive
/// and how often referenced; what callers did that they must not. Objects share it and keep it alive while they live.
///
/// Any thread may call. The lock is held for nothing but the record itself, never across the hook or an object's work.
/// It is no critical section, so that tests which count or refuse those see none of it.
///
/// A destroyed object's memory stays with the record, so that a call on it is told, not a crash; see SetKeepsHistory.
class CCallRecord {
public:
    CCallRecord() = default;
    ~CCallRecord();

    CCallRecord(const CCallRecord&) = delete;
    CCallRecord& operator=(const CCallRecord&) = delete;

    // What is to go wrong. Patterns as in MatchesCall, "*" for any call; queries for an interface that the object has
    // are calls ("IUnknown::QueryInterface"), counting of references is not. A failing call leaves its out-parameters
    // as they are, a failing query sets them null.
    void Fail(const std::string& pattern, long nth, HRESULT result, long times = 1);
    void LeaveUntouched(const std::string& pattern, long nth = 1, long times = 1);
    void GiveNull(const std::string& pattern, long nth = 1, long times = 1);
    /// The object of this name denies the interface, for so many queries; below 0: for ever.
    void RefuseQuery(const std::string& objectName, REFIID interfaceId, long times);
    void ClearFaults();
    [[nodiscard]] long CountFiredFaults() const;
    /// The first call that the last order has made go wrong; empty when none has. Kept when faults are cleared.
    [[nodiscard]] std::string GetFirstFailedCall() const;

    /// Run with the call's text when it has been recorded and before anything else happens, on the caller's thread, for
    /// queries too if they are recorded. It may call this record, the objects and the library.
    void SetBeforeCall(std::function<void(const std::string&)> hook);

    /// False: calls and destroyed objects are not kept, for long runs. True from the start.
    void SetKeepsHistory(bool keeps) noexcept { m_keepsHistory = keeps; }
    /// True: queries appear among the calls, those for unknown interfaces too. False from the start.
    void SetRecordsQueries(bool records) noexcept { m_recordsQueries = records; }

    [[nodiscard]] std::vector<HostCall> GetCalls() const;
    [[nodiscard]] std::vector<std::string> GetCallTexts() const;
    [[nodiscard]] long CountCalls(const std::string& pattern) const;
    void ClearCalls();

    /// A reserved slot called, a reference released that nobody has, a call on a destroyed object, a missing address
    /// for an out-parameter.
    [[nodiscard]] std::vector<std::string> GetViolations() const;

    [[nodiscard]] long CountLiveObjects() const;
    [[nodiscard]] long CountReferences(REFIID interfaceId) const noexcept;
    /// To all interfaces of all objects together.
    [[nodiscard]] long CountReferences() const noexcept;
    /// Which objects live and how often each interface is referenced; empty when nothing is left.
    [[nodiscard]] std::string DescribeLeftovers() const;

    // For the objects.
    [[nodiscard]] Fault Enter(const std::string& operation, const std::string& text);
    [[nodiscard]] Fault EnterQuery(const std::string& text, bool isKnown);
    void AddViolation(const std::string& text);
    void AddObject(const std::string& name);
    /// Takes the object, which has lost its last reference, over.
    void Bury(CHostObject* object) noexcept;
    void ChangeReferences(std::size_t interfaceIndex, long change) noexcept { m_references[interfaceIndex] += change; }

private:
    void Note(const std::string& operation, const std::string& text);
    void AddFault(const std::string& pattern, long nth, Fault fault, long times);
    [[nodiscard]] Fault TakeFault(const std::string& operation, const std::string& text);

    std::atomic<bool> m_keepsHistory{true};
    std::atomic<bool> m_recordsQueries{false};
    std::array<std::atomic<long>, kHostInterfaceCount> m_references{};

    mutable std::mutex m_lock;  // guards all below
    std::vector<HostCall> m_calls;
    std::vector<std::string> m_violations;
    std::map<std::string, long> m_objects;
    std::function<void(const std::string&)> m_beforeCall;
    CFaultTable m_faults;
    CHostObject* m_destroyed = nullptr;  // the last of them, each knowing the one before
};
