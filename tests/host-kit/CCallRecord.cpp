#include "CCallRecord.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>

#include "CHostObject.h"

namespace {

using Lock = std::lock_guard<std::mutex>;

constexpr char kQueryOperation[] = "IUnknown::QueryInterface";

}  // namespace

CCallRecord::~CCallRecord() {
    while (m_destroyed) {
        delete std::exchange(m_destroyed, m_destroyed->GetDestroyedBefore());
    }
}

void CCallRecord::Fail(const std::string& pattern, long nth, HRESULT result, long times) {
    AddFault(pattern, nth, {FaultKind::eResult, result}, times);
}

void CCallRecord::LeaveUntouched(const std::string& pattern, long nth, long times) {
    AddFault(pattern, nth, {FaultKind::eUntouched, S_OK}, times);
}

void CCallRecord::GiveNull(const std::string& pattern, long nth, long times) {
    AddFault(pattern, nth, {FaultKind::eNull, S_OK}, times);
}

void CCallRecord::RefuseQuery(const std::string& objectName, REFIID interfaceId, long times) {
    Fail(CHostObject::DescribeQuery(objectName, interfaceId), 1, E_NOINTERFACE, times);
}

void CCallRecord::AddFault(const std::string& pattern, long nth, Fault fault, long times) {
    const Lock lock(m_lock);
    m_faults.Add(pattern, nth, fault, times);
}

void CCallRecord::ClearFaults() {
    const Lock lock(m_lock);
    m_faults.Clear();
}

long CCallRecord::CountFiredFaults() const {
    const Lock lock(m_lock);
    return m_faults.CountFired();
}

std::string CCallRecord::GetFirstFailedCall() const {
    const Lock lock(m_lock);
    return m_faults.GetFirstFailed();
}

void CCallRecord::SetBeforeCall(std::function<void(const std::string&)> hook) {
    const Lock lock(m_lock);
    m_beforeCall = std::move(hook);
}

std::vector<HostCall> CCallRecord::GetCalls() const {
    const Lock lock(m_lock);
    return m_calls;
}

std::vector<std::string> CCallRecord::GetCallTexts() const {
    const Lock lock(m_lock);
    std::vector<std::string> texts;
    std::transform(m_calls.begin(), m_calls.end(), std::back_inserter(texts),
                   [](const HostCall& call) { return call.text; });
    return texts;
}

long CCallRecord::CountCalls(const std::string& pattern) const {
    const Lock lock(m_lock);
    return static_cast<long>(std::count_if(m_calls.begin(), m_calls.end(), [&](const HostCall& call) {
        return MatchesCall(pattern, call.operation, call.text);
    }));
}

void CCallRecord::ClearCalls() {
    const Lock lock(m_lock);
    m_calls.clear();
}

std::vector<std::string> CCallRecord::GetViolations() const {
    const Lock lock(m_lock);
    return m_violations;
}

long CCallRecord::CountLiveObjects() const {
    const Lock lock(m_lock);
    long count = 0;
    for (const auto& [name, living] : m_objects) {
        count += living;
    }
    return count;
}

long CCallRecord::CountReferences(REFIID interfaceId) const noexcept {
    const std::size_t index = IndexHostInterface(interfaceId);
    return index < kHostInterfaceCount ? m_references[index].load() : 0;
}

long CCallRecord::CountReferences() const noexcept {
    return std::accumulate(m_references.begin(), m_references.end(), 0L);
}

std::string CCallRecord::DescribeLeftovers() const {
    const Lock lock(m_lock);
    std::ostringstream text;
    for (const auto& [name, living] : m_objects) {
        text << living << " of " << name << "; ";
    }
    for (std::size_t index = 0; index < kHostInterfaceCount; ++index) {
        if (m_references[index] != 0) {
            text << m_references[index] << " references to " << NameHostInterface(index) << "; ";
        }
    }
    return text.str();
}

Fault CCallRecord::Enter(const std::string& operation, const std::string& text) {
    Note(operation, text);
    return TakeFault(operation, text);
}

Fault CCallRecord::EnterQuery(const std::string& text, bool isKnown) {
    if (m_recordsQueries) {
        Note(kQueryOperation, text);
    }
    return isKnown ? TakeFault(kQueryOperation, text) : Fault();
}

void CCallRecord::Note(const std::string& operation, const std::string& text) {
    std::function<void(const std::string&)> beforeCall;
    {
        const Lock lock(m_lock);
        if (m_keepsHistory) {
            m_calls.push_back({operation, text, GetCurrentThreadId()});
        }
        beforeCall = m_beforeCall;
    }
    if (beforeCall) {
        beforeCall(text);
    }
}

// Asked after the hook has run, so that the hook can make the very call fail that it is told of.
Fault CCallRecord::TakeFault(const std::string& operation, const std::string& text) {
    const Lock lock(m_lock);
    return m_faults.Take(operation, text);
}

void CCallRecord::AddViolation(const std::string& text) {
    const Lock lock(m_lock);
    m_violations.push_back(text);
}

void CCallRecord::AddObject(const std::string& name) {
    const Lock lock(m_lock);
    ++m_objects[name];
}

void CCallRecord::Bury(CHostObject* object) noexcept {
    const Lock lock(m_lock);
    const auto living = m_objects.find(object->GetName());
    if (--living->second == 0) {
        m_objects.erase(living);
    }
    if (m_keepsHistory) {
        object->SetDestroyedBefore(std::exchange(m_destroyed, object));
    } else {
        delete object;
    }
}
