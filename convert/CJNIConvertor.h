#pragma once

#include <memory>
#include <string>

#include "CBridgeLog.h"
#include "CJavaObject.h"
#include "CJavaString.h"
#include "CJavaVM.h"
#include "ISystemInfo.h"
#include "JavaCallContext.h"

/// Turns the host's data into Java objects, on a thread that is attached and inside a local frame of its. Bad data and
/// failures of Java's are logged and give an empty result; only exhausted memory throws.
class CJNIConvertor {
public:
    explicit CJNIConvertor(CBridgeLog log) : m_log(std::move(log)) {}

    /// A Java string of `text`; `hideValue` keeps a secret out of the message that a failure is logged with.
    [[nodiscard]] std::shared_ptr<CJavaString> NewJavaString(const std::shared_ptr<CJavaVM>& vm,
                                                             const std::wstring& text, bool hideValue) const;

    /// The DesktopConnection that names the sender in every call of the message client's. Only exactly VARIANT_TRUE of
    /// the host's makes it a desktop. Empty without a word when the class is not loaded.
    [[nodiscard]] std::shared_ptr<CJavaObject> GetConnection(const JavaCallContext& context,
                                                             ISystemInfo& systemInfo) const;

private:
    const CBridgeLog m_log;
};
