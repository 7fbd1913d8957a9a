#include "UserLabel.h"

#include "CBstr.h"

namespace {

constexpr wchar_t kNoUser[] = L"NULL";

}  // namespace

std::wstring GetUserLabel(IUserSessionInfo& session) {
    CBstr label;
    if (FAILED(session.get_userLabel(label.Receive()))) {
        return kNoUser;
    }
    return std::wstring(label.GetView());
}
