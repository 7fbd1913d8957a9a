#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CBridgeLog.h"
#include "HostObjects.h"

/// The host as a convertor sees it: a logger and a machine. At its end nothing of it is referenced any more, and none
/// of its rules were broken.
class CConvertorHost {
public:
    CConvertorHost() = default;
    ~CConvertorHost() {
        EXPECT_EQ(m_record->DescribeLeftovers(), "");
        EXPECT_EQ(m_record->GetViolations(), std::vector<std::string>{});
    }

    CConvertorHost(const CConvertorHost&) = delete;
    CConvertorHost& operator=(const CConvertorHost&) = delete;

    [[nodiscard]] CCallRecord& Record() noexcept { return *m_record; }
    [[nodiscard]] CBridgeLog MakeLog() const { return CBridgeLog(MakeLogger(m_record, m_log).Get()); }
    [[nodiscard]] CHostReference<ISystemInfo> MakeSystem(VARIANT_BOOL isDesktop) const {
        SystemData data;
        data.isDesktop = isDesktop;
        return MakeSystemInfo(m_record, std::move(data));
    }

    /// The errors that were logged; an entry of another level, or in another component's name, fails the test.
    [[nodiscard]] std::vector<std::wstring> Errors() const {
        std::vector<std::wstring> texts;
        for (const HostLogEntry& entry : m_log->GetEntries()) {
            EXPECT_EQ(entry.level, HostLogLevel::eError);
            EXPECT_EQ(entry.component, L"telvar-rmi");
            texts.push_back(entry.text);
        }
        return texts;
    }

private:
    CRecordPointer m_record = std::make_shared<CCallRecord>();
    std::shared_ptr<CHostLog> m_log = std::make_shared<CHostLog>();
};
