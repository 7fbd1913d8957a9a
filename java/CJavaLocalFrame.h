#pragma once

#include <jni.h>

/// A JNI local frame: every local reference that is still there when it ends is released then. An attached native
/// thread never gets rid of a local reference otherwise, so a frame opens wherever the host calls in, and it outlives
/// every wrapper made inside. Lives on the stack of one thread.
class CJavaLocalFrame {
public:
    /// References that a frame has room for from the start; it grows on demand.
    static constexpr jint kCapacity = 64;

    /// `env` is the calling thread's, null where it has none. A frame that cannot be had is no failure: the exception
    /// that the machine then throws is cleared, and references are left to the frame around.
    explicit CJavaLocalFrame(JNIEnv* env, jint capacity = kCapacity) noexcept;
    ~CJavaLocalFrame();

    CJavaLocalFrame(const CJavaLocalFrame&) = delete;
    CJavaLocalFrame& operator=(const CJavaLocalFrame&) = delete;

private:
    JNIEnv* m_env;  // null when there is no frame to pop
};
