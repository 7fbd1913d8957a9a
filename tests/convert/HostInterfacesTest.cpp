// The host's interfaces as binary contracts: which operation lies in which slot, and which ID each has.

#include <windows.h>

#include <objbase.h>

#include <cstddef>
#include <cstring>
#include <string>

#include "CLeakCheckedTest.h"
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
#include "NetworkInterfaceRecord.h"

namespace {

class HostInterfacesTest : public CLeakCheckedTest {
protected:
    static std::wstring Text(REFIID id) {
        wchar_t text[64] = L"";
        StringFromGUID2(id, text, 64);
        return text;
    }

    /// The slot of a virtual operation. A pointer to one holds, in this compiler's ABI, its offset in the table plus
    /// one.
    template <typename Operation>
    static std::size_t SlotOf(Operation operation) {
        std::size_t representation = 0;
        std::memcpy(&representation, &operation, sizeof(representation));
        return (representation - 1) / sizeof(void*);
    }
};

TEST_F(HostInterfacesTest, EachHasItsOwnId) {
    EXPECT_EQ(Text(IHostServiceProvider::kId), L"{E6A5AF92-7B4C-4B33-BF40-F68E4DA74AA5}");
    EXPECT_EQ(Text(IHostLogger::kId), L"{D320790B-D7C2-4757-A1CA-8C0F82975845}");
    EXPECT_EQ(Text(ISystemInfo::kId), L"{AE7AFB5C-DA85-43BA-BB7B-9AAC30F27E31}");
    EXPECT_EQ(Text(ISessionCollection::kId), L"{C0781D6C-5265-496A-9933-B15392864F81}");
    EXPECT_EQ(Text(IUserSessionInfo::kId), L"{0F46AB8A-A37C-40CA-9592-2BF0F718AC87}");
    EXPECT_EQ(Text(IPropertyBox::kId), L"{6AF5CC36-C4D7-4890-AAE3-A39C31654D5D}");
    EXPECT_EQ(Text(ISampleNode::kId), L"{C4FABE5D-60DF-4AE7-A735-1DD567CD2F2B}");
    EXPECT_EQ(Text(INameValueEnumerator::kId), L"{A570A90F-11C1-4935-8788-EAFB4D3115AA}");
    EXPECT_EQ(Text(IActionExecutor::kId), L"{545A3670-9230-4402-838F-4AC388270E6A}");
}

TEST_F(HostInterfacesTest, TheServicesOperationLiesBehindFourOfTheHosts) {
    EXPECT_EQ(SlotOf(&IHostServiceProvider::GetHostObject), 7U);
}

TEST_F(HostInterfacesTest, TheLoggersOperationsLieBehindSixOfTheHosts) {
    EXPECT_EQ(SlotOf(&IHostLogger::LogError), 9U);
    EXPECT_EQ(SlotOf(&IHostLogger::LogWarning), 10U);
    EXPECT_EQ(SlotOf(&IHostLogger::LogInfo), 11U);
    EXPECT_EQ(SlotOf(&IHostLogger::LogVerbose), 12U);
}

TEST_F(HostInterfacesTest, TheSystemsOperationsLieInTheirSlots) {
    EXPECT_EQ(SlotOf(&ISystemInfo::Refresh), 3U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_networkInterfaces), 4U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_machineName), 5U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_isDesktop), 7U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_FQDN), 8U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_totalMemory), 9U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_virtualMachineId), 10U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_machineId), 11U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_machineUniqueId), 12U);
    EXPECT_EQ(SlotOf(&ISystemInfo::get_componentsIdentities), 13U);
}

TEST_F(HostInterfacesTest, TheDatasOperationsLieInTheirSlots) {
    EXPECT_EQ(SlotOf(&ISampleNode::get_time), 7U);
    EXPECT_EQ(SlotOf(&ISampleNode::get_instances), 8U);
    EXPECT_EQ(SlotOf(&ISampleNode::get_metrics), 9U);
    EXPECT_EQ(SlotOf(&IInstanceEnumerator::Next), 4U);
    EXPECT_EQ(SlotOf(&INameValueEnumerator::Next), 4U);
    EXPECT_EQ(SlotOf(&IPropertyBox::get_enumerator), 3U);
    EXPECT_EQ(SlotOf(&IPropertyBox::GetProperty), 4U);
}

TEST_F(HostInterfacesTest, TheSessionsOperationsLieInTheirSlots) {
    EXPECT_EQ(SlotOf(&ISessionCollection::GetSession), 3U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_propertyBox), 3U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_id), 4U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_sid), 5U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_user), 6U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_domain), 7U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_state), 8U);
    EXPECT_EQ(SlotOf(&IUserSessionInfo::get_userLabel), 14U);
}

TEST_F(HostInterfacesTest, TheExecutorsOperationIsTheFirst) {
    EXPECT_EQ(SlotOf(&IActionExecutor::Execute), 3U);
}

TEST_F(HostInterfacesTest, ANetworkRecordIs56BytesWithItsFieldsInTheirPlaces) {
    EXPECT_EQ(sizeof(NetworkInterfaceRecord), 56U);
    EXPECT_EQ(offsetof(NetworkInterfaceRecord, description), 8U);
    EXPECT_EQ(offsetof(NetworkInterfaceRecord, linkSpeed), 48U);
}

}  // namespace
