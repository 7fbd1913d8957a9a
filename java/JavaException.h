#pragma once

#include <jni.h>

#include <string>

/// Whether a Java exception was pending on the calling thread, whose environment `env` is. If so, it is cleared, and
/// `text` is replaced by what its `toString` returns, followed by each frame of its stack trace (not of its causes'),
/// introduced by carriage return, line feed and tab. What Java fails to tell is left out: without a description the
/// earlier content of `text` stays, with the frames behind it. Otherwise `text` is untouched.
///
/// Texts go from Java's modified UTF-8 through the thread's ANSI code page, which garbles characters outside ASCII;
/// hosts know these texts that way. The local reference to the exception ends with the local frame around the call.
/// Throws CHresultException or std::bad_alloc when memory is exhausted, the exception being cleared then.
[[nodiscard]] bool TakeJavaException(JNIEnv* env, std::wstring& text);
