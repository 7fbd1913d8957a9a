#pragma once

#include <jni.h>

/// What a getter of a fake object answers.
enum class FakeAnswer { eValue, eNull, eThrows };

/// One element of a fake exception's stack trace.
struct FakeFrame {
    const char* text = "";                     ///< what its `toString` returns
    FakeAnswer toString = FakeAnswer::eValue;  ///< how its `toString` ends
    bool isNullElement = false;                ///< the array holds null in its place
};

/// An exception to be thrown. Texts are modified UTF-8 and are copied by whoever takes this.
struct FakeException {
    const char* className = "java/lang/RuntimeException";
    const char* description = nullptr;  ///< what its `toString` returns; null: Java's null
    const FakeFrame* frames = nullptr;  ///< `frameCount` of them
    long frameCount = 0;
    FakeAnswer toString = FakeAnswer::eValue;
    FakeAnswer getStackTrace = FakeAnswer::eValue;
};

/// What an ordered failure leaves on the thread besides the failure value.
enum class FakeFaultMode { eWithException, eWithoutException };

/// Control surface of the fake Java runtime: tests order failures and ask what the code under test did. There is one
/// per loaded library; any thread may call it. Functions are named as in JNI: those of the JNIEnv table ("FindClass",
/// "CallVoidMethodV"), those of the JavaVM table ("AttachCurrentThread") and the exported ones ("JNI_CreateJavaVM").
/// Returned texts live until Reset. Indexes out of range give null.
class IFakeRuntime {
public:
    /// Forgets everything: machine, threads, references, classes, orders, settings, records. An environment or a
    /// reference from before stays harmless: its use is a misuse.
    virtual void Reset() = 0;

    // The machine.

    /// What JNI_CreateJavaVM returns from now on; anything but JNI_OK makes no machine.
    virtual void SetCreateResult(jint result) = 0;
    /// JNI_CreateJavaVM returns JNI_OK without making a machine; its output arguments stay untouched.
    virtual void SetCreateGivesNoMachine(bool givesNone) = 0;
    /// 1 while a machine is there, else 0.
    virtual long GetMachinesAlive() = 0;
    /// Arguments of the last JNI_CreateJavaVM.
    virtual long GetOptionCount() = 0;
    virtual const char* GetOption(long index) = 0;
    virtual jint GetRequestedVersion() = 0;
    virtual bool GetIgnoreUnrecognized() = 0;
    virtual bool WasOptionsPointerNull() = 0;

    // Classes and methods. By default every class and method exists; void methods do nothing, methods that return a
    // java.lang.String return "result", others null. A later order for the same method replaces an earlier one.

    /// FindClass gives null for it, a NoClassDefFoundError pending.
    virtual void RemoveClass(const char* className) = 0;
    /// GetMethodID gives null for it, a NoSuchMethodError pending.
    virtual void RemoveMethod(const char* className, const char* name, const char* signature) = 0;
    /// All methods `name` of the class, or its constructors ("<init>"), throw.
    virtual void MakeMethodThrow(const char* className, const char* name, const FakeException& exception) = 0;
    virtual void MakeMethodReturnNull(const char* className, const char* name) = 0;
    /// For methods that return a java.lang.String.
    virtual void MakeMethodReturnText(const char* className, const char* name, const char* text) = 0;
    /// How many frames exceptions have that the runtime throws on its own account (none by default); their texts are
    /// "fake.Source.method0(Source.java:1)", "fake.Source.method1(Source.java:2)", ...
    virtual void SetThrowableFrames(long count) = 0;
    /// Leaves the exception pending on the calling thread. False when that thread is not attached.
    virtual bool SetPendingException(const FakeException& exception) = 0;
    virtual bool IsExceptionPending() = 0;

    // Faults.

    /// The `nth` next call of `function` (1: the next one) and the `times` - 1 after it fail; `times` < 0: all after
    /// it. The call then does nothing and returns null or 0, or `errorCode` where it returns an error code. With an
    /// exception a NoClassDefFoundError (FindClass), a NoSuchMethodError (GetMethodID) or an OutOfMemoryError is
    /// pending on the thread. "*" stands for every function of the JNIEnv table that may fail: all but Exception...,
    /// Release..., Delete...Ref, PopLocalFrame and MonitorExit. Calls refused as misuse do not count. Orders add up.
    virtual void Fail(const char* function, long nth, long times = 1,
                      FakeFaultMode mode = FakeFaultMode::eWithException, jint errorCode = JNI_ERR) = 0;
    /// How many calls the last order has made fail.
    virtual long GetFaultsFired() = 0;
    /// The name of the function that the last order has made fail last; null when it has not fired.
    virtual const char* GetFailedFunction() = 0;
    virtual void ClearFaults() = 0;

    // Numbers. References, frames and pinned characters of a destroyed machine are gone; what was left then is kept.

    virtual long GetLocalReferences() = 0;
    virtual long GetPeakLocalReferences() = 0;
    virtual long GetLocalReferencesOfThread() = 0;
    virtual long GetGlobalReferences() = 0;
    virtual long GetPeakGlobalReferences() = 0;
    /// Frames pushed and not popped, of all threads.
    virtual long GetOpenFrames() = 0;
    /// Threads attached, without the one that created the machine.
    virtual long GetAttachedThreads() = 0;
    virtual bool IsCreatorAttached() = 0;
    virtual bool IsThreadAttached() = 0;
    /// Results of GetStringChars and GetStringUTFChars that are not released.
    virtual long GetPinnedStrings() = 0;
    /// What the last DestroyJavaVM found.
    virtual long GetGlobalReferencesAtDestroy() = 0;
    virtual long GetPinnedStringsAtDestroy() = 0;
    /// Threads other than the caller and the creator; a real machine waits for these.
    virtual long GetAttachedThreadsAtDestroy() = 0;

    // Records, in order. Entries after the 100,000th of a log are dropped; calls are still counted.

    /// How often `function` was called, whatever came of it; -1 for a name that JNI does not have.
    virtual long GetCallCount(const char* function) = 0;
    virtual void SetCallLogEnabled(bool enabled) = 0;
    virtual long GetCallLogSize() = 0;
    virtual const char* GetCallLogEntry(long index) = 0;
    /// Calls of Java methods and constructors with their arguments: `java/x/Y.put(Ljava/lang/String;I)V("abc", 5)`.
    /// Characters outside printable ASCII are written as \uXXXX.
    virtual long GetMethodLogSize() = 0;
    virtual const char* GetMethodLogEntry(long index) = 0;
    /// Empties that log, for runs that are longer than it: its texts are gone.
    virtual void ForgetMethodLog() = 0;
    /// Breaches of JNI's rules: "DeleteLocalRef: reference deleted twice". The call in question did nothing.
    virtual long GetMisuseCount() = 0;
    virtual const char* GetMisuse(long index) = 0;

protected:
    IFakeRuntime() = default;
    ~IFakeRuntime() = default;
    IFakeRuntime(const IFakeRuntime&) = default;
    IFakeRuntime& operator=(const IFakeRuntime&) = default;
};

/// The library's export that returns its control surface, which lives as long as the library.
constexpr char kGetFakeRuntime[] = "GetFakeRuntime";
using GetFakeRuntimeFunction = IFakeRuntime* (*)();
