#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "FakeObjects.h"

/// The local references of one thread by frame; the first frame is the one that the attachment itself opens.
struct FakeLocals {
    std::vector<std::unordered_set<std::uint64_t>> frames = std::vector<std::unordered_set<std::uint64_t>>(1);
    long count = 0;
};

/// Why a reference is no more.
enum class FakeReferenceEnd : std::uint8_t { eNone, eDeleted, eFramePopped, eThreadDetached, eMachineDestroyed };

/// An object, or what was wrong with the reference to it; both null for Java's null.
struct FakeResolved {
    FakeObjectPtr object;
    const char* problem = nullptr;
};

/// Every reference that was ever given out. Handles are numbers that are never given out twice, so that the use of a
/// dead one is always noticed, and with it what ended it.
class CFakeReferences {
public:
    /// Null for a null object.
    [[nodiscard]] jobject MakeLocal(FakeLocals& locals, const FakeObjectPtr& object);
    [[nodiscard]] jobject MakeGlobal(const FakeObjectPtr& object);

    /// `locals` are those of the calling thread.
    [[nodiscard]] FakeResolved Resolve(const FakeLocals& locals, jobject reference) const;

    /// Null, or what was wrong: nothing is deleted then.
    [[nodiscard]] const char* DeleteLocal(FakeLocals& locals, jobject reference);
    [[nodiscard]] const char* DeleteGlobal(jobject reference);

    void PushFrame(FakeLocals& locals);
    /// False when only the thread's first frame is left.
    [[nodiscard]] bool PopFrame(FakeLocals& locals);
    /// Ends all local references of a thread and its frames.
    void ReleaseThread(FakeLocals& locals, FakeReferenceEnd end);
    void ReleaseGlobals();
    /// Starts anew; handles given out before are known to be old.
    void Forget();

    [[nodiscard]] long GetLocals() const noexcept { return m_locals; }
    [[nodiscard]] long GetPeakLocals() const noexcept { return m_peakLocals; }
    [[nodiscard]] long GetGlobals() const noexcept { return m_globals; }
    [[nodiscard]] long GetPeakGlobals() const noexcept { return m_peakGlobals; }
    [[nodiscard]] long GetOpenFrames() const noexcept { return m_openFrames; }

private:
    struct Entry {
        FakeObjectPtr object;
        FakeLocals* owner;  // null for a global reference
        std::size_t frame;
    };

    [[nodiscard]] std::uint64_t MakeHandle(std::uint64_t tag);
    [[nodiscard]] const char* DescribeDead(std::uint64_t handle, const char* whenDeleted) const;
    [[nodiscard]] FakeReferenceEnd& EndOf(std::uint64_t handle);
    void EndLocal(FakeLocals& locals, std::uint64_t handle, FakeReferenceEnd end);

    std::unordered_map<std::uint64_t, Entry> m_live;
    std::uint64_t m_firstNumber = 1;       // of those given out since Forget
    std::vector<FakeReferenceEnd> m_ends;  // by number, from m_firstNumber on
    long m_locals = 0;
    long m_peakLocals = 0;
    long m_globals = 0;
    long m_peakGlobals = 0;
    long m_openFrames = 0;
};
