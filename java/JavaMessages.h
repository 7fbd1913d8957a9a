#pragma once

// Messages that several operations log.

/// Takes the text that could not become a Java string, and the Java exception's.
inline constexpr wchar_t kNoJavaString[] = L"Failed to create a new Java string for '%s'.  %s";
