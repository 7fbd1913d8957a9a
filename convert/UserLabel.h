#pragma once

#include <string>

#include "IUserSessionInfo.h"

/// The session's user as failure messages name him; "NULL" where the host does not say.
[[nodiscard]] std::wstring GetUserLabel(IUserSessionInfo& session);
