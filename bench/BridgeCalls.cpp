#include "BridgeCalls.h"

#include <cstdio>
#include <stdexcept>
#include <string>

#include "CRMICommManager.h"

namespace {

constexpr wchar_t kUrl[] = L"rmi://message-server.example.com/DesktopMessageServer";
constexpr wchar_t kCertificate[] = L"the certificate";
constexpr unsigned char kUnnamed = 11;

}  // namespace

void DumpItem(unsigned char type, IUnknown* data) {
    const long result =
        CRMICommManager::GetInstance().DumpData<IUnknown>(kUrl, kAuthToken, kCertificate, kItemId, type, data);
    if (result != S_OK) {
        char text[64];
        static_cast<void>(
            std::snprintf(text, sizeof text, "item %u ended with 0x%08lx", type, static_cast<unsigned long>(result)));
        throw std::runtime_error(text);
    }
}

void DumpNothing() {
    DumpItem(kUnnamed, nullptr);
}
