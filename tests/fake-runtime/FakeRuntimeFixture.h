#pragma once

#include <windows.h>

#include <jni.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "IFakeRuntime.h"
#include "TestPaths.h"

constexpr char kStringGetter[] = "()Ljava/lang/String;";
constexpr char kStackTraceGetter[] = "()[Ljava/lang/StackTraceElement;";

/// Loads a runtime directory's library; null where that fails.
inline HMODULE LoadRuntime(const wchar_t* directory) {
    return LoadLibraryW((std::wstring(directory) + TestPaths::kLibrary).c_str());
}

/// A function of the fake runtime's library.
template <typename Function>
Function FindExport(const char* name) {
    static const HMODULE library = LoadRuntime(TestPaths::kFakeRuntime);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

/// All entries of a log.
inline std::vector<std::string> ReadAll(IFakeRuntime& runtime, const char* (IFakeRuntime::*get)(long)) {
    std::vector<std::string> entries;
    for (long i = 0; const char* const entry = (runtime.*get)(i); ++i) {
        entries.emplace_back(entry);
    }
    return entries;
}

using Texts = std::vector<std::string>;

/// A runtime as new, without a machine.
class FakeInvocationTest : public testing::Test {
protected:
    FakeInvocationTest() { runtime.Reset(); }
    ~FakeInvocationTest() override { runtime.Reset(); }

    jint Create() {
        void* createdEnv = nullptr;
        const jint result =
            FindExport<jint(JNICALL*)(JavaVM**, void**, void*)>("JNI_CreateJavaVM")(&vm, &createdEnv, &arguments);
        env = static_cast<JNIEnv*>(createdEnv);
        return result;
    }
    Texts Misuses() { return ReadAll(runtime, &IFakeRuntime::GetMisuse); }
    Texts Calls() { return ReadAll(runtime, &IFakeRuntime::GetCallLogEntry); }
    Texts Methods() { return ReadAll(runtime, &IFakeRuntime::GetMethodLogEntry); }

    IFakeRuntime& runtime = *FindExport<GetFakeRuntimeFunction>(kGetFakeRuntime)();
    JavaVMInitArgs arguments{JNI_VERSION_1_6, 0, nullptr, JNI_FALSE};
    JavaVM* vm = nullptr;
    JNIEnv* env = nullptr;
};

/// The same with a machine that the test's thread created.
class FakeRuntimeTest : public FakeInvocationTest {
protected:
    FakeRuntimeTest() { EXPECT_EQ(Create(), JNI_OK); }

    jmethodID Method(const char* className, const char* name, const char* signature) {
        return env->GetMethodID(env->FindClass(className), name, signature);
    }
    jobject NewObject(const char* className) {
        return env->NewObject(env->FindClass(className), Method(className, "<init>", "()V"));
    }
    jstring NewText(const std::u16string& units) {
        return env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.length()));
    }
    /// A Java string's bytes; "(null)" for none.
    std::string Bytes(jobject string) {
        const char* const bytes = string ? env->GetStringUTFChars(static_cast<jstring>(string), nullptr) : nullptr;
        std::string copy = bytes ? bytes : "(null)";
        if (bytes) {
            env->ReleaseStringUTFChars(static_cast<jstring>(string), bytes);
        }
        return copy;
    }
    std::string CallText(jobject object, const char* name, const char* signature = kStringGetter) {
        const jclass javaClass = env->GetObjectClass(object);
        return Bytes(env->CallObjectMethod(object, env->GetMethodID(javaClass, name, signature)));
    }
    /// Description of the pending exception, which is cleared.
    std::string TakeException() {
        const jthrowable exception = env->ExceptionOccurred();
        env->ExceptionClear();
        return exception ? CallText(exception, "toString") : "(none)";
    }
    /// Runs `act` on another thread, attached.
    template <typename Act>
    void OnAttachedThread(Act act) {
        std::thread([&] {
            void* other = nullptr;
            EXPECT_EQ(vm->AttachCurrentThread(&other, nullptr), JNI_OK);
            act(static_cast<JNIEnv*>(other));
            vm->DetachCurrentThread();
        }).join();
    }
};
