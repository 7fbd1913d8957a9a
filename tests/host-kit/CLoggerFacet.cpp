#include "CHostFacet.h"
#include "HostObjects.h"
#include "HostText.h"

namespace {

std::wstring TextOf(BSTR text) {
    return {text ? text : L"", SysStringLen(text)};
}

class CLoggerFacet final : public CHostFacet<IHostLogger, std::shared_ptr<CHostLog>> {
public:
    CLoggerFacet(CHostObject& object, std::shared_ptr<CHostLog> log)
        : CHostFacet(object, IHostLogger::kId, std::move(log)) {}

    STDMETHODIMP Reserved3() noexcept override { return Refuse("Reserved3"); }
    STDMETHODIMP Reserved4() noexcept override { return Refuse("Reserved4"); }
    STDMETHODIMP Reserved5() noexcept override { return Refuse("Reserved5"); }
    STDMETHODIMP Reserved6() noexcept override { return Refuse("Reserved6"); }
    STDMETHODIMP Reserved7() noexcept override { return Refuse("Reserved7"); }
    STDMETHODIMP Reserved8() noexcept override { return Refuse("Reserved8"); }

    STDMETHODIMP LogError(BSTR component, BSTR message) noexcept override {
        return Log("LogError", {HostLogLevel::eError, 0}, component, message);
    }
    STDMETHODIMP LogWarning(BSTR component, BSTR message) noexcept override {
        return Log("LogWarning", {HostLogLevel::eWarning, 0}, component, message);
    }
    STDMETHODIMP LogInfo(BSTR component, BSTR message) noexcept override {
        return Log("LogInfo", {HostLogLevel::eInfo, 0}, component, message);
    }
    STDMETHODIMP LogVerbose(BSTR component, LONG level, BSTR message) noexcept override {
        return Log("LogVerbose", {HostLogLevel::eVerbose, level}, component, message);
    }

private:
    struct Level {
        HostLogLevel level;
        LONG detail;
    };

    HRESULT Log(const char* operation, Level level, BSTR component, BSTR message) noexcept {
        const auto inputs = [&] {
            const bool hasDetail = level.level == HostLogLevel::eVerbose;
            return DescribeText(component) + ", " + (hasDetail ? std::to_string(level.detail) + ", " : "") +
                   DescribeText(message);
        };
        return Perform(operation, inputs, [&] {
            m_data->Add({level.level, level.detail, TextOf(component), TextOf(message), GetCurrentThreadId()});
            return S_OK;
        });
    }
};

}  // namespace

CHostReference<IHostLogger> MakeLogger(CRecordPointer record, std::shared_ptr<CHostLog> log) {
    return CHostObject::MakeWith<IHostLogger, CLoggerFacet>(std::move(record), "Logger", std::move(log));
}
