#pragma once

#include <windows.h>

#include "CCountedObject.h"
#include "IDataDumpCallback.h"

/// Keeps the last answer and counts them. The interface has no ID: nobody asks for it.
class CAnswerListener final : public CCountedObject<IDataDumpCallback, IID_IUnknown> {
public:
    HRESULT STDMETHODCALLTYPE OnDataDump(ULONG type, const wchar_t* text) override {
        ++m_count;
        m_type = type;
        lstrcpynW(m_text, text, ARRAYSIZE(m_text));
        return S_OK;
    }

    [[nodiscard]] int Count() const { return m_count; }
    [[nodiscard]] bool HeardLast(ULONG type, const wchar_t* text) const {
        return m_type == type && lstrcmpW(m_text, text) == 0;
    }

private:
    int m_count = 0;
    ULONG m_type = ~ULONG{0};
    wchar_t m_text[64] = {};
};
