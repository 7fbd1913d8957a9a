#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "CBstr.h"
#include "CLeakCheckedTest.h"
#include "CVariant.h"
#include "HostObjects.h"
#include "HostText.h"

/// Fixture with a record. After each test nothing lives in it, and callers have violated nothing but what was expected.
class CHostKitTest : public CLeakCheckedTest {
protected:
    void TearDown() override {
        EXPECT_EQ(m_record->DescribeLeftovers(), "");
        EXPECT_EQ(m_record->GetViolations(), m_expectedViolations);
        CLeakCheckedTest::TearDown();
    }

    void ExpectViolations(std::vector<std::string> violations) { m_expectedViolations = std::move(violations); }

    /// Asks an object for a text; the result in its place where it fails.
    template <typename Interface>
    [[nodiscard]] static std::string Read(Interface* object, HRESULT (STDMETHODCALLTYPE Interface::*get)(BSTR*)) {
        CBstr text;
        const HRESULT result = (object->*get)(text.Receive());
        return result == S_OK ? DescribeText(text.Get()) : DescribeResult(result);
    }

    /// Takes the next pair as "name = value", or the result where there is none.
    [[nodiscard]] static std::string TakeNext(INameValueEnumerator* values) {
        CBstr name;
        CVariant value;
        const HRESULT result = values->Next(name.Receive(), value.Receive());
        return result == S_OK ? DescribeText(name.Get()) + " = " + DescribeValue(value) : DescribeResult(result);
    }

    [[nodiscard]] static std::string DescribeResult(HRESULT result) { return "result " + std::to_string(result); }

    CRecordPointer m_record = std::make_shared<CCallRecord>();

private:
    std::vector<std::string> m_expectedViolations;
};
