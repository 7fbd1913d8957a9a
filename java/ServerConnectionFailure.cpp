#include "ServerConnectionFailure.h"

#include <algorithm>
#include <iterator>

#include "CWideString.h"

namespace {

constexpr const wchar_t* kMarkers[] = {
    L"rmiURLContext",
    L"java.rmi.ConnectException",
    L"java.rmi.ConnectIOException",
    L"java.security.cert.",
};

}  // namespace

bool IsServerConnectionFailure(const std::wstring& exceptionText, CStringManager* stringManager) {
    const CWideString text(exceptionText, stringManager);
    return std::any_of(std::begin(kMarkers), std::end(kMarkers),
                       [&text](const wchar_t* marker) { return text.Contains(marker); });
}
