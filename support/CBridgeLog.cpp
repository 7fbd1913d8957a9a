#include "CBridgeLog.h"

#include "CBstr.h"

namespace {

constexpr wchar_t kComponent[] = L"telvar-rmi";
constexpr LONG kVerboseLevel = 8;

}  // namespace

void CBridgeLog::WriteError(const CWideString& text) const {
    m_logger->LogError(CBstr::Make(kComponent).Get(), CBstr::Make(text.GetView()).Get());
}

void CBridgeLog::WriteWarning(const CWideString& text) const {
    m_logger->LogWarning(CBstr::Make(kComponent).Get(), CBstr::Make(text.GetView()).Get());
}

void CBridgeLog::WriteInfo(const CWideString& text) const {
    m_logger->LogInfo(CBstr::Make(kComponent).Get(), CBstr::Make(text.GetView()).Get());
}

void CBridgeLog::WriteVerbose(const CWideString& text) const {
    m_logger->LogVerbose(CBstr::Make(kComponent).Get(), kVerboseLevel, CBstr::Make(text.GetView()).Get());
}
