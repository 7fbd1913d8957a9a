#pragma once

#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"

/// Conversions of a machine with three network interfaces.
class CDesktopTest : public CDataConversionTest {
protected:
    static inline const Names s_hostCalls = {"System: get_networkInterfaces", "System: get_machineName",
                                             "System: get_FQDN", "System: get_totalMemory"};
    static inline const Names s_desktop = {R"(DesktopInformation.<init>("PC", "pc.example"))",
                                           "DesktopInformation.putTotalMemory(8192)"};

    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::DesktopInformation::kClass, Binding::NetworkInterface::kClass});
    }

    [[nodiscard]] static SystemData MakeData() {
        SystemData data;
        data.machineName = L"PC";
        data.fqdn = L"pc.example";
        data.totalMemory = 8192;
        data.networkInterfaces = {{L"one", L"m1", L"i1", L"k1", L"s1", 10},
                                  {L"two", L"m2", L"i2", L"k2", L"s2", 20},
                                  {L"three", L"m3", L"i3", L"k3", L"s3", 30}};
        return data;
    }
    [[nodiscard]] Object Convert(SystemData data) {
        const auto system = MakeSystemInfo(Host().ShareRecord(), std::move(data));
        return MakeConvertor().GetDesktop(SharedVM(), system.Get());
    }
    /// What converting throws, which it must.
    [[nodiscard]] HRESULT ThrownBy(SystemData data) {
        try {
            static_cast<void>(Convert(std::move(data)));
            ADD_FAILURE() << "nothing was thrown";
            return S_OK;
        } catch (const CHresultException& failure) {
            return failure.GetResult();
        }
    }

    /// Java's calls for the interfaces `numbers` (from 1 on), each added.
    [[nodiscard]] static Names Interfaces(const std::vector<int>& numbers) {
        static const Names kNames = {"one", "two", "three"};
        Names calls = s_desktop;
        for (const int number : numbers) {
            const std::string digit = std::to_string(number);
            calls.insert(
                calls.end(),
                {"NetworkInterface.<init>(\"" + kNames[static_cast<std::size_t>(number) - 1] + "\")",
                 "NetworkInterface.putMacAddress(\"m" + digit + "\")",
                 "NetworkInterface.putIpAddress(\"i" + digit + "\")",
                 "NetworkInterface.putSubnetMask(\"k" + digit + "\")", "NetworkInterface.putSubnet(\"s" + digit + "\")",
                 "NetworkInterface.putLinkSpeed(" + digit + "0)",
                 "DesktopInformation.addNetworkInterface(NetworkInterface@instance)"});
        }
        return calls;
    }
};
