#pragma once

#include <windows.h>

#include <wrl/client.h>

#include "CWideString.h"
#include "ErrorText.h"
#include "IHostLogger.h"

/// The host's logger as the library uses it: every entry goes there under the library's component name. Without a
/// logger nothing is logged, nothing is formatted and no memory is taken. Messages are the library's own literals,
/// interpreted as formats; text from outside enters as their arguments. Usable on any thread that the logger is; holds
/// no lock.
///
/// A text that finds no memory is thrown, as CHresultException or `_com_error` with E_OUTOFMEMORY.
class CBridgeLog {
public:
    CBridgeLog() = default;
    explicit CBridgeLog(Microsoft::WRL::ComPtr<IHostLogger> logger) noexcept : m_logger(std::move(logger)) {}

    explicit operator bool() const noexcept { return m_logger != nullptr; }

    template <typename... Arguments>
    void Error(const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteError(CWideString::Format(message, arguments...));
        }
    }

    /// A failure with the error text of its result.
    template <typename... Arguments>
    void ErrorWithResult(HRESULT result, const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteError(FormatWithErrorText(ErrorTextForm::eSuffix, result, message, arguments...));
        }
    }

    /// The same without the blanks in front of the error text: hosts know some messages in this form.
    template <typename... Arguments>
    void ErrorRunTogether(HRESULT result, const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteError(FormatWithErrorText(ErrorTextForm::eRunTogether, result, message, arguments...));
        }
    }

    /// Trouble that was overcome, with the code of its result.
    template <typename... Arguments>
    void WarningWithCode(HRESULT result, const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteWarning(AppendErrorCode(CWideString::Format(message, arguments...), result));
        }
    }

    template <typename... Arguments>
    void Info(const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteInfo(CWideString::Format(message, arguments...));
        }
    }

    /// A detail, at the one level the library uses for details.
    template <typename... Arguments>
    void Verbose(const wchar_t* message, Arguments... arguments) const {
        if (m_logger) {
            WriteVerbose(CWideString::Format(message, arguments...));
        }
    }

private:
    void WriteError(const CWideString& text) const;
    void WriteWarning(const CWideString& text) const;
    void WriteInfo(const CWideString& text) const;
    void WriteVerbose(const CWideString& text) const;

    Microsoft::WRL::ComPtr<IHostLogger> m_logger;
};
