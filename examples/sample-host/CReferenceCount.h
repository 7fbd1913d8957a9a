#pragma once

#include <windows.h>

/// How many hold an object, which ends with the last of them. It begins with one, its maker. For any thread.
class CReferenceCount {
public:
    CReferenceCount(const CReferenceCount&) = delete;
    CReferenceCount& operator=(const CReferenceCount&) = delete;

protected:
    CReferenceCount() = default;
    virtual ~CReferenceCount() = default;

    ULONG CountUp() noexcept;
    ULONG CountDown() noexcept;

private:
    LONG m_count = 1;
};
