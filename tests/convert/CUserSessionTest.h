#pragma once

#include <string>
#include <utility>
#include <vector>

#include "BindingTable.h"
#include "CDataConversionTest.h"
#include "CJNIConvertor.h"

/// Conversions of the host's session 7.
class CUserSessionTest : public CDataConversionTest {
protected:
    static constexpr char kConstructed[] = R"(BaseUserSession.<init>(7, "S-1-5-21", "user", "domain", true))";
    static inline const Names s_hostCallsBeforeProperties = {"Session 7: get_id", "Session 7: get_sid",
                                                             "Session 7: get_user", "Session 7: get_domain",
                                                             "Session 7: get_state"};

    void SetUp() override {
        CDataConversionTest::SetUp();
        LoadClasses({Binding::BaseUserSession::kClass});
    }

    [[nodiscard]] static SessionData MakeData(std::vector<PropertyData> properties = {}) {
        return {7, L"S-1-5-21", L"user", L"domain", 1, L"DOMAIN\\user", {"Box", std::move(properties)}};
    }
    [[nodiscard]] static std::vector<PropertyData> MakeProperties() {
        return {{L"a", MakeText(L"first")}, {L"b", MakeInt(-2)}, {L"c", MakeText(L"third")}};
    }
    [[nodiscard]] Object Convert(SessionData data) {
        const auto session = MakeUserSession(Host().ShareRecord(), std::move(data));
        return MakeConvertor().GetUserSession(SharedVM(), session.Get());
    }
};
