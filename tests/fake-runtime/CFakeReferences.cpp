#include "CFakeReferences.h"

#include <algorithm>

namespace {

// A handle is its number and, in the low bits, its kind: a number that was never a handle hardly looks like one.
constexpr unsigned kTagBits = 4;
constexpr std::uint64_t kLocalTag = 1;
constexpr std::uint64_t kGlobalTag = 2;

constexpr char kUnknown[] = "unknown reference";
constexpr char kUsedAfterDeletion[] = "reference used after deletion";
constexpr char kDeletedTwice[] = "reference deleted twice";
constexpr char kOfAnotherThread[] = "local reference of another thread";

std::uint64_t TagOf(std::uint64_t handle) {
    return handle & ((1u << kTagBits) - 1);
}
std::uint64_t NumberOf(std::uint64_t handle) {
    return handle >> kTagBits;
}
std::uint64_t ToHandle(jobject reference) {
    return reinterpret_cast<std::uint64_t>(reference);
}
jobject ToReference(std::uint64_t handle) {
    return reinterpret_cast<jobject>(handle);
}

}  // namespace

std::uint64_t CFakeReferences::MakeHandle(std::uint64_t tag) {
    const std::uint64_t number = m_firstNumber + m_ends.size();
    m_ends.push_back(FakeReferenceEnd::eNone);
    return (number << kTagBits) | tag;
}

jobject CFakeReferences::MakeLocal(FakeLocals& locals, const FakeObjectPtr& object) {
    if (!object) {
        return nullptr;
    }
    const std::uint64_t handle = MakeHandle(kLocalTag);
    m_live.emplace(handle, Entry{object, &locals, locals.frames.size() - 1});
    locals.frames.back().insert(handle);
    ++locals.count;
    m_peakLocals = std::max(m_peakLocals, ++m_locals);
    return ToReference(handle);
}

jobject CFakeReferences::MakeGlobal(const FakeObjectPtr& object) {
    if (!object) {
        return nullptr;
    }
    const std::uint64_t handle = MakeHandle(kGlobalTag);
    m_live.emplace(handle, Entry{object, nullptr, 0});
    m_peakGlobals = std::max(m_peakGlobals, ++m_globals);
    return ToReference(handle);
}

FakeResolved CFakeReferences::Resolve(const FakeLocals& locals, jobject reference) const {
    if (!reference) {
        return {};
    }
    const auto found = m_live.find(ToHandle(reference));
    if (found == m_live.end()) {
        return {nullptr, DescribeDead(ToHandle(reference), kUsedAfterDeletion)};
    }
    if (found->second.owner && found->second.owner != &locals) {
        return {nullptr, kOfAnotherThread};
    }
    return {found->second.object, nullptr};
}

const char* CFakeReferences::DescribeDead(std::uint64_t handle, const char* whenDeleted) const {
    const std::uint64_t number = NumberOf(handle);
    const bool hasTag = TagOf(handle) == kLocalTag || TagOf(handle) == kGlobalTag;
    if (!hasTag || number == 0 || number >= m_firstNumber + m_ends.size()) {
        return kUnknown;
    }
    if (number < m_firstNumber) {
        return "reference used after Reset";
    }
    switch (m_ends[number - m_firstNumber]) {
        case FakeReferenceEnd::eDeleted:
            return whenDeleted;
        case FakeReferenceEnd::eFramePopped:
            return "reference used after its frame was popped";
        case FakeReferenceEnd::eThreadDetached:
            return "reference used after its thread was detached";
        case FakeReferenceEnd::eMachineDestroyed:
            return "reference used after the machine was destroyed";
        case FakeReferenceEnd::eNone:
            break;
    }
    return kUnknown;
}

FakeReferenceEnd& CFakeReferences::EndOf(std::uint64_t handle) {
    return m_ends[NumberOf(handle) - m_firstNumber];
}

void CFakeReferences::EndLocal(FakeLocals& locals, std::uint64_t handle, FakeReferenceEnd end) {
    EndOf(handle) = end;
    m_live.erase(handle);
    --locals.count;
    --m_locals;
}

const char* CFakeReferences::DeleteLocal(FakeLocals& locals, jobject reference) {
    if (!reference) {
        return nullptr;
    }
    const std::uint64_t handle = ToHandle(reference);
    const auto found = m_live.find(handle);
    if (found == m_live.end()) {
        return DescribeDead(handle, kDeletedTwice);
    }
    if (!found->second.owner) {
        return "global reference deleted as a local one";
    }
    if (found->second.owner != &locals) {
        return kOfAnotherThread;
    }
    locals.frames[found->second.frame].erase(handle);
    EndLocal(locals, handle, FakeReferenceEnd::eDeleted);
    return nullptr;
}

const char* CFakeReferences::DeleteGlobal(jobject reference) {
    if (!reference) {
        return nullptr;
    }
    const std::uint64_t handle = ToHandle(reference);
    const auto found = m_live.find(handle);
    if (found == m_live.end()) {
        return DescribeDead(handle, kDeletedTwice);
    }
    if (found->second.owner) {
        return "local reference deleted as a global one";
    }
    EndOf(handle) = FakeReferenceEnd::eDeleted;
    m_live.erase(found);
    --m_globals;
    return nullptr;
}

void CFakeReferences::PushFrame(FakeLocals& locals) {
    locals.frames.emplace_back();
    ++m_openFrames;
}

bool CFakeReferences::PopFrame(FakeLocals& locals) {
    if (locals.frames.size() == 1) {
        return false;
    }
    for (const std::uint64_t handle : locals.frames.back()) {
        EndLocal(locals, handle, FakeReferenceEnd::eFramePopped);
    }
    locals.frames.pop_back();
    --m_openFrames;
    return true;
}

void CFakeReferences::ReleaseThread(FakeLocals& locals, FakeReferenceEnd end) {
    for (const auto& frame : locals.frames) {
        for (const std::uint64_t handle : frame) {
            EndLocal(locals, handle, end);
        }
    }
    m_openFrames -= static_cast<long>(locals.frames.size()) - 1;
    locals = FakeLocals();
}

void CFakeReferences::ReleaseGlobals() {
    for (auto entry = m_live.begin(); entry != m_live.end();) {
        if (entry->second.owner) {
            ++entry;
            continue;
        }
        EndOf(entry->first) = FakeReferenceEnd::eMachineDestroyed;
        entry = m_live.erase(entry);
    }
    m_globals = 0;
}

void CFakeReferences::Forget() {
    m_firstNumber += m_ends.size();
    m_ends = {};
    m_live.clear();
    m_locals = m_peakLocals = m_globals = m_peakGlobals = m_openFrames = 0;
}
