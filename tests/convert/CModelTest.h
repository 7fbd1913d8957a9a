#pragma once

#include <memory>
#include <string>

#include "CRealConvertorTest.h"

/// A result that the system has no text for, so that messages do not depend on the system.
inline constexpr HRESULT kFailure = static_cast<HRESULT>(0x8004ABCD);
inline const std::wstring kFailureText = L"Error code 0x8004abcd.";

/// On the message client's own data model, told by the recording client: a whole object is one line of text, in which
/// each value shows its type and other characters than ASCII their UTF-16 codes (see ModelText.java). "null" is none.
class CModelTest : public CRealConvertorTest {
protected:
    static void SetUpTestSuite();

    [[nodiscard]] static std::string TellSample(const std::shared_ptr<CJavaObject>& sample);
    [[nodiscard]] static std::string TellMetric(const std::shared_ptr<CJavaObject>& metric);
    [[nodiscard]] static std::string TellSession(const std::shared_ptr<CJavaObject>& session);
    [[nodiscard]] static std::string TellDesktop(const std::shared_ptr<CJavaObject>& desktop);
    [[nodiscard]] static std::string TellNetworkInterface(const std::shared_ptr<CJavaObject>& networkInterface);
    /// Sorted by key.
    [[nodiscard]] static std::string TellMap(const std::shared_ptr<CJavaObject>& map);
    /// As Java has it that is given these UTF-16 units without the product's help.
    [[nodiscard]] static std::string TellText(const std::wstring& text);

private:
    [[nodiscard]] static std::string Tell(const char* method, const char* signature,
                                          const std::shared_ptr<CJavaObject>& object);
    [[nodiscard]] static std::string TellReference(const char* method, const char* signature, jobject reference);
};
