#pragma once

#include <jni.h>

/// The function table of every environment.
[[nodiscard]] const JNINativeInterface_* GetJniTable();

/// These put the functions that the fake runtime really has into their slots.
void InstallClassFunctions(JNINativeInterface_& table);
void InstallReferenceFunctions(JNINativeInterface_& table);
void InstallExceptionFunctions(JNINativeInterface_& table);
void InstallCallFunctions(JNINativeInterface_& table);
void InstallStringFunctions(JNINativeInterface_& table);
void InstallArrayFunctions(JNINativeInterface_& table);
