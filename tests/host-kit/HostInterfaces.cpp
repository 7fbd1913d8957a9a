#include "HostInterfaces.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <iterator>

#include "HostText.h"
#include "IActionExecutor.h"
#include "IHostLogger.h"
#include "IHostServiceProvider.h"
#include "IInstanceEnumerator.h"
#include "INameValueEnumerator.h"
#include "IPropertyBox.h"
#include "ISampleNode.h"
#include "ISessionCollection.h"
#include "ISystemInfo.h"
#include "IUserSessionInfo.h"

namespace {

struct InterfaceEntry {
    const IID* id;
    const char* name;
};

constexpr InterfaceEntry kInterfaces[] = {
    {&IID_IUnknown, "IUnknown"},
    {&IID_IClassFactory, "IClassFactory"},
    {&IID_IRecordInfo, "IRecordInfo"},
    {&IActionExecutor::kId, "IActionExecutor"},
    {&IHostLogger::kId, "IHostLogger"},
    {&IHostServiceProvider::kId, "IHostServiceProvider"},
    {&IInstanceEnumerator::kId, "IInstanceEnumerator"},
    {&INameValueEnumerator::kId, "INameValueEnumerator"},
    {&IPropertyBox::kId, "IPropertyBox"},
    {&ISampleNode::kId, "ISampleNode"},
    {&ISessionCollection::kId, "ISessionCollection"},
    {&ISystemInfo::kId, "ISystemInfo"},
    {&IUserSessionInfo::kId, "IUserSessionInfo"},
};
static_assert(std::size(kInterfaces) == kHostInterfaceCount);

}  // namespace

std::size_t IndexHostInterface(REFIID interfaceId) noexcept {
    const auto* const found =
        std::find_if(std::begin(kInterfaces), std::end(kInterfaces),
                     [&](const InterfaceEntry& entry) { return IsEqualGUID(*entry.id, interfaceId); });
    return static_cast<std::size_t>(found - std::begin(kInterfaces));
}

const char* NameHostInterface(std::size_t index) noexcept {
    return kInterfaces[index].name;
}

std::string DescribeInterface(REFIID interfaceId) {
    const std::size_t index = IndexHostInterface(interfaceId);
    if (index < kHostInterfaceCount) {
        return NameHostInterface(index);
    }
    wchar_t text[39] = {};
    StringFromGUID2(interfaceId, text, static_cast<int>(std::size(text)));
    return ToUtf8(text);
}
