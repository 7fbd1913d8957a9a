#pragma once

#include <string_view>

#include "CBstr.h"

/// One of the three texts that a host asks for, by the address it gave. Several readers may write one after the other
/// in a call: what an earlier one wrote is freed then, what stood there before the call is not.
class CServerInfoOutput {
public:
    /// Null where the host does not want the text.
    explicit CServerInfoOutput(wchar_t** target) noexcept : m_target(target) {}

    [[nodiscard]] bool IsWanted() const noexcept { return m_target != nullptr; }

    /// A copy of `text` for the host. Throws `_com_error` with E_OUTOFMEMORY.
    void Write(std::wstring_view text) {
        if (IsWanted()) {
            Give(CBstr::Make(text));
        }
    }

    /// Gives `text` itself to the host, who wants it.
    void Give(CBstr&& text) noexcept {
        const CBstr earlier(m_isWritten ? *m_target : nullptr);
        *m_target = text.Detach();
        m_isWritten = true;
    }

private:
    wchar_t** const m_target;
    bool m_isWritten = false;
};
