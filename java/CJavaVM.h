#pragma once

#include <windows.h>

#include <jni.h>

#include <atomic>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CCriticalSection.h"
#include "CWrapperBlocks.h"
#include "JavaMethodBinding.h"
#include "SystemHandles.h"

class CJavaClass;
class CJavaString;

/// One Java virtual machine inside this process: its library, the environment of each attached thread, and the classes
/// loaded so far. It outlives every wrapper made through it.
///
/// Any thread may call in. The environment lock guards the map of environments, the class lock the cache of classes;
/// neither is held while the other is taken. The class lock is held across the Java calls of LoadClass, so that a class
/// that several threads ask for is bound once; the environment lock is never held across a Java call.
/// Exhausted memory leaves as std::bad_alloc or CHresultException; nothing else is thrown.
class CJavaVM {
public:
    /// `jreDirectory` ends in a backslash: the paths inside it are appended as they are. Loads nothing yet. Throws
    /// CHresultException when a lock cannot be made.
    explicit CJavaVM(const std::wstring& jreDirectory);
    /// Shuts down and destroys the machine if it is still there (see Shutdown).
    virtual ~CJavaVM();

    CJavaVM(const CJavaVM&) = delete;
    CJavaVM& operator=(const CJavaVM&) = delete;

    /// Loads the runtime library and starts the machine with `options` (ANSI texts such as "-Xrs"; one that the runtime
    /// does not know makes the start fail). The calling thread becomes the creator thread and stays attached for good.
    ///
    /// Returns 0, at once when the machine runs already; a Win32 error as HRESULT when the library cannot be loaded or
    /// is no Java runtime; else JNI's own error code. A load that fails without a last error returns 0 with no machine.
    /// The library stays mapped from the start on: the machine's threads cannot be stopped.
    [[nodiscard]] long CreateJavaVM(std::vector<std::string> options);

    /// Drops the classes, the environments, the machine and the library handle, in this order. `destroy` has the
    /// machine destroyed, which waits for its threads and for those attached; without, it is abandoned, running. Nobody
    /// else may be loading or looking up classes. When the process is ending, nothing is called or freed.
    void Shutdown(bool destroy) noexcept;

    /// Drops the machine and the environments without calling Java, so that every wrapper that is left falls silently;
    /// the machine is left running. For an owner that dies where Java must not be called.
    void Abandon() noexcept;

    /// The calling thread's environment; null when this object has not attached it, or after Shutdown.
    [[nodiscard]] JNIEnv* GetEnv() const noexcept;
    /// The same for destructors that release references: null also when the process is ending.
    [[nodiscard]] JNIEnv* GetEnvForRelease() const noexcept;

    /// Attaches the calling thread unless it is attached. Returns 0 or JNI's error code; JNI_ERR without a machine.
    [[nodiscard]] long AttachCurrentThread();
    /// Detaches the calling thread, which this object attached; the creator thread stays attached. Returns 0 or JNI's
    /// error code, the thread's environment staying known then; JNI_ERR without a machine.
    long DetachCurrentThread() noexcept;

    /// Drops what is known of the calling thread without calling Java: for a thread that this object has not attached,
    /// though one of the same id that ended undetached was.
    void ForgetCurrentThread() noexcept;

    /// A Java string of all of `text`, embedded zeros included, by a local reference of the calling thread's. Empty on
    /// failure, a Java exception then pending.
    [[nodiscard]] std::shared_ptr<CJavaString> NewString(std::wstring_view text);

    /// A wrapper in memory that is used again for the next one: most live for a moment only. Throws std::bad_alloc.
    template <typename Wrapper, typename... Arguments>
    [[nodiscard]] std::shared_ptr<Wrapper> MakeWrapper(Arguments&&... arguments) {
        return std::allocate_shared<Wrapper>(CWrapperAllocator<Wrapper>(m_wrapperBlocks),
                                             std::forward<Arguments>(arguments)...);
    }

    /// The class `className` ("java/util/HashMap") with the methods of `rows` bound. One that is loaded already is
    /// returned as it is, whatever the rows. Empty on failure, a Java exception then pending and nothing kept.
    [[nodiscard]] std::shared_ptr<CJavaClass> LoadClass(std::string_view className, const JavaMethodBinding* rows,
                                                        std::size_t rowCount);
    /// The class if LoadClass has loaded it, else empty. Never calls Java.
    [[nodiscard]] std::shared_ptr<CJavaClass> GetClass(std::string_view className) const;

    /// Whether a Java exception was pending on the calling thread. If so, it is cleared, and `text` is replaced by its
    /// description and its stack frames; see JavaException.h. To be called right after the call that may have thrown.
    [[nodiscard]] bool GetJavaException(std::wstring& text);
    /// The same where the failure is known already: the text alone, empty when no exception was pending.
    [[nodiscard]] std::wstring TakeExceptionText();
    /// Clears the calling thread's pending exception unseen, for calls whose outcome nobody looks at.
    void DropJavaException() noexcept;

private:
    [[nodiscard]] long LoadLibraryIfNeeded();
    [[nodiscard]] long StartMachine(std::vector<std::string>& options);
    void RememberEnv(JNIEnv* env);
    void ForgetEnvs() noexcept;

    CWrapperBlocks m_wrapperBlocks;
    const std::wstring m_binDirectory;
    const std::wstring m_libraryPath;
    CModule m_library;
    std::atomic<JavaVM*> m_vm{nullptr};  // atomic: threads that end look at it while another one shuts down

    mutable CCriticalSection m_envLock{LockRank::eInnermost};
    std::map<DWORD, JNIEnv*> m_envs;

    mutable CCriticalSection m_classLock{LockRank::eInnermost};
    std::map<std::string, std::shared_ptr<CJavaClass>, std::less<>> m_classes;

    std::atomic<DWORD> m_creatorThreadId{0};
};
