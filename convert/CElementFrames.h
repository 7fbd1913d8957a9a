#pragma once

#include <jni.h>

#include <optional>

#include "CJavaLocalFrame.h"

/// The local frames of a walk over the host's data: one for so many elements. Each exception that Java throws leaves a
/// reference to its frame, so data of which every element fails would fill the frame around without bounds; a frame
/// for each element would cost more than most of them need. Lives on the stack of one thread.
class CElementFrames {
public:
    /// `env` is the calling thread's, null where it has none.
    explicit CElementFrames(JNIEnv* env) noexcept : m_env(env) {}

    /// To be called before each element, when every wrapper that was made for the one before has died.
    void BeginElement() noexcept {
        if (m_elementsLeft == 0) {
            m_frame.reset();  // before the next one is pushed
            m_frame.emplace(m_env);
            m_elementsLeft = kElementsPerFrame;
        }
        --m_elementsLeft;
    }

private:
    static constexpr int kElementsPerFrame = 32;

    JNIEnv* const m_env;
    std::optional<CJavaLocalFrame> m_frame;
    int m_elementsLeft = 0;
};
