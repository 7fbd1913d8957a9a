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

    /// To make further objects in this host's record.
    [[nodiscard]] const CRecordPointer& ShareRecord() const noexcept { return m_record; }
    [[nodiscard]] CCallRecord& Record() noexcept { return *m_record; }
    [[nodiscard]] CBridgeLog MakeLog() const { return CBridgeLog(MakeLogger(m_record, m_log).Get()); }
    [[nodiscard]] CHostReference<ISystemInfo> MakeSystem(VARIANT_BOOL isDesktop) const {
        SystemData data;
        data.isDesktop = isDesktop;
        return MakeSystemInfo(m_record, std::move(data));
    }

    /// The errors that were logged. Errors and details are all that conversions have to say, in one component's name.
    [[nodiscard]] std::vector<std::wstring> Errors() const { return Entries(HostLogLevel::eError); }
    /// The details that were logged, all of the one level that the library uses.
    [[nodiscard]] std::vector<std::wstring> Details() const { return Entries(HostLogLevel::eVerbose); }
    void ForgetLog() { m_log->Clear(); }

private:
    [[nodiscard]] std::vector<std::wstring> Entries(HostLogLevel level) const {
        std::vector<std::wstring> texts;
        for (const HostLogEntry& entry : m_log->GetEntries()) {
            EXPECT_TRUE(entry.level == HostLogLevel::eError || entry.level == HostLogLevel::eVerbose);
            EXPECT_EQ(entry.detail, entry.level == HostLogLevel::eVerbose ? 8 : 0);
            EXPECT_EQ(entry.component, L"telvar-rmi");
            if (entry.level == level) {
                texts.push_back(entry.text);
            }
        }
        return texts;
    }

    CRecordPointer m_record = std::make_shared<CCallRecord>();
    std::shared_ptr<CHostLog> m_log = std::make_shared<CHostLog>();
};
