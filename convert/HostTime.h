#pragma once

#include <windows.h>

#include <jni.h>
#include <oleauto.h>

#include <cstdint>

#include "CWideString.h"
#include "ISampleNode.h"

/// Whole seconds from 1970-01-01 to a host's time, which is taken as UTC. A time before that wraps to a very large
/// number, and one that the system takes for no date counts as the year 1601 and so wraps as well: Java's side knows
/// these numbers.
[[nodiscard]] std::uint64_t DateToUnixSeconds(DATE date) noexcept;

/// A host's time as Java counts it: milliseconds since 1970-01-01, always whole seconds.
[[nodiscard]] jlong DateToJavaTime(DATE date) noexcept;

/// A sample's time as messages name it: the locale's date and time, or "Invalid DateTime" for what is no date or,
/// before 1900, cannot be written. Throws CHresultException when memory is exhausted.
[[nodiscard]] CWideString FormatSampleTime(DATE time);

/// The same for a node of a sample, which is asked for its time; one that does not tell it has none.
[[nodiscard]] CWideString NameSample(ISampleNode& node);
