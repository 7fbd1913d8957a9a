#pragma once

#include <string>

#include "CStringManager.h"

/// Whether the text of a Java exception shows that the message server could not be reached: a failed look-up in the RMI
/// registry, a refused or broken RMI connection, or any fault of a certificate. Letter case counts. Any thread.
/// Throws CHresultException: E_OUTOFMEMORY, or E_FAIL when `stringManager` is null.
[[nodiscard]] bool IsServerConnectionFailure(const std::wstring& exceptionText,
                                             CStringManager* stringManager = CStringManager::Shared());
