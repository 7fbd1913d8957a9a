#include "BindingTable.h"

#include <iterator>

namespace Binding {

namespace {

constexpr JavaMethodBinding kRows[] = {
    DesktopMessageClient::kCtor,
    DesktopMessageClient::kInitialize,
    DesktopMessageClient::kSetProviderUrl,
    DesktopMessageClient::kOnStartup,
    DesktopMessageClient::kOnUserLogon,
    DesktopMessageClient::kOnUserLogoff,
    DesktopMessageClient::kOnUserDisconnect,
    DesktopMessageClient::kOnUserReconnect,
    DesktopMessageClient::kOnDataCollected,
    DesktopMessageClient::kOnExtendedDataCollected,
    DesktopMessageClient::kRefreshSession,
    DesktopMessageClient::kOnDesktopPoll,
    DesktopMessageClient::kOnActionPerformed,
    DesktopMessageClient::kDispose,
    BaseUserSession::kCtor,
    BaseUserSession::kCtorIdSidUserDomain,
    BaseUserSession::kCtorIdSidUserDomainConnected,
    BaseUserSession::kPutProperty,
    BaseUserSession::kPutMetric,
    BaseUserSession::kPutRemoteApp,
    HashMap::kCtor,
    HashMap::kPut,
    BaseSample::kCtor,
    BaseSample::kCtorTime,
    BaseSample::kPutMetric,
    BaseSample::kPutSession,
    InstanceLoggerFactory::kCtor,
    InstanceLoggerFactory::kCtorFolder,
    DesktopInformation::kCtor,
    DesktopInformation::kCtorNameFqdn,
    DesktopInformation::kPutTotalMemory,
    DesktopInformation::kAddNetworkInterface,
    DesktopConnection::kCtor,
    DesktopConnection::kCtorIdAuthTokenUniqueIdVersionDeviceType,
    BaseRemoteApp::kCtor,
    BaseRemoteApp::kCtorId,
    BaseRemoteApp::kPutProperty,
    BaseRemoteApp::kPutMetric,
    BaseMetric::kCtor,
    BaseMetric::kCtorName,
    BaseMetric::kPutDoubleValue,
    BaseMetric::kPutLongValue,
    BaseMetric::kPutStringValue,
    BaseMetric::kAddInstance,
    NetworkInterface::kCtor,
    NetworkInterface::kCtorDescription,
    NetworkInterface::kPutMacAddress,
    NetworkInterface::kPutIpAddress,
    NetworkInterface::kPutSubnetMask,
    NetworkInterface::kPutSubnet,
    NetworkInterface::kPutLinkSpeed,
};

struct ClassSection {
    std::string_view className;
    std::size_t rowCount;
};

// In the order in which their rows lie above.
constexpr ClassSection kSections[] = {
    {DesktopMessageClient::kClass, 14},
    {BaseUserSession::kClass, 6},
    {HashMap::kClass, 2},
    {BaseSample::kClass, 4},
    {InstanceLoggerFactory::kClass, 2},
    {DesktopInformation::kClass, 4},
    {DesktopConnection::kClass, 2},
    {BaseRemoteApp::kClass, 4},
    {BaseMetric::kClass, 6},
    {NetworkInterface::kClass, 7},
};

constexpr std::size_t CountSectionRows() {
    std::size_t count = 0;
    for (const ClassSection& section : kSections) {
        count += section.rowCount;
    }
    return count;
}
static_assert(CountSectionRows() == std::size(kRows), "the sections cover the rows");

constexpr bool AreAliasNumbersDistinct() {
    for (const JavaMethodBinding& row : kRows) {
        for (const JavaMethodBinding& other : kRows) {
            const bool isSameAlias = std::string_view(row.alias) == other.alias;
            if (!isSameAlias && AliasNumber(row.alias) == AliasNumber(other.alias)) {
                return false;
            }
        }
    }
    return true;
}
static_assert(AreAliasNumbersDistinct(), "two aliases share a number: rename one");

}  // namespace

ClassRows FindRows(std::string_view className) noexcept {
    const JavaMethodBinding* firstRow = kRows;
    for (const ClassSection& section : kSections) {
        if (section.className == className) {
            return {firstRow, section.rowCount};
        }
        firstRow += section.rowCount;
    }
    return {nullptr, 0};
}

ClassRows AllRows() noexcept {
    return {kRows, std::size(kRows)};
}

}  // namespace Binding
