#pragma once

#include <windows.h>

#include <string>

#include "HostileSampleModel.h"

/// The text that messages end in for a result: what the system says of it, after `blanks`.
[[nodiscard]] std::wstring ModelErrorText(HRESULT result, const wchar_t* blanks);

/// A text as messages show it: up to its first zero.
[[nodiscard]] std::wstring InMessage(const std::wstring& text);

/// Java as the conversions call it: what it is asked, and which call fails.
class CModelJava {
public:
    explicit CModelJava(const OrderedFault& fault) : m_fault(fault) {}

    [[nodiscard]] bool MakeString() { return !Fails("NewString"); }
    [[nodiscard]] bool MakeObject(const std::string& call) {
        if (Fails("NewObjectV")) {
            return false;
        }
        events.push_back(call);
        return !Fails("NewGlobalRef");
    }
    /// False where something is thrown. A call that does nothing without saying so looks well.
    [[nodiscard]] bool Call(const std::string& call) {
        if (Fails("CallVoidMethodV")) {
            return !m_fault.hasException;
        }
        events.push_back(call);
        return true;
    }
    /// What Java says of the failure that was just met.
    [[nodiscard]] std::wstring Thrown() const {
        return m_fault.hasException ? L"java.lang.OutOfMemoryError: injected" : L"";
    }

    void Error(const std::wstring& text) { events.push_back("error: " + QuoteForEvent(text)); }
    void Verbose(const std::wstring& text) { events.push_back("verbose: " + QuoteForEvent(text)); }

    Events events;

private:
    [[nodiscard]] bool Fails(const char* function);

    const OrderedFault m_fault;
    long m_calls = 0;
};
