#include "FindServer.h"

#include <windows.h>

#include <oleauto.h>

#include <comutil.h>

#include "CItemSender.h"
#include "CRMIConfigLoader.h"

namespace {

/// A text that the library gives, to be freed by who asked. Null where there was none.
class CGivenText {
public:
    CGivenText() = default;
    ~CGivenText() { SysFreeString(m_text); }
    CGivenText(const CGivenText&) = delete;
    CGivenText& operator=(const CGivenText&) = delete;

    wchar_t** Receive() noexcept { return &m_text; }
    [[nodiscard]] std::wstring Copy() const { return {m_text, SysStringLen(m_text)}; }

private:
    wchar_t* m_text = nullptr;
};

}  // namespace

MessageServer FindServer(const std::wstring& configuration) {
    const _variant_t document(configuration.c_str());
    CGivenText url;
    CGivenText secondValue;
    CGivenText certificate;
    if (FAILED(
            CRMIConfigLoader::GetServerInfo(document, url.Receive(), secondValue.Receive(), certificate.Receive()))) {
        throw CannotGoOnException(
            "no message server was found; the log above says why. Is there a legacy list in the registry, or does the "
            "document of --config name a key with the values (docs/host-guide.md)?");
    }
    return {url.Copy(), secondValue.Copy(), certificate.Copy()};
}
