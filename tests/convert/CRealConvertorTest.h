#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BindingTable.h"
#include "CConvertorHost.h"
#include "CJNIConvertor.h"
#include "CJavaClass.h"
#include "CRealJvmTest.h"

/// The convertor between a host and the real runtime, every class of the data model loaded. What needs a Java that
/// fails on demand is tested on CFakeConvertorTest.
class CRealConvertorTest : public CRealJvmTest {
protected:
    using Texts = std::vector<std::wstring>;

    static void SetUpTestSuite() {
        CRealJvmTest::SetUpTestSuite();
        LoadDataModel();
    }

    /// As the product's start has it. Classes that are loaded already stay as they are.
    static void LoadDataModel() {
        namespace Model = Binding;
        for (const char* const className :
             {Model::DesktopConnection::kClass, Model::DesktopInformation::kClass, Model::NetworkInterface::kClass,
              Model::BaseUserSession::kClass, Model::BaseSample::kClass, Model::BaseMetric::kClass,
              Model::BaseRemoteApp::kClass, Model::HashMap::kClass}) {
            const Binding::ClassRows rows = Binding::FindRows(className);
            ASSERT_NE(VM().LoadClass(className, rows.firstRow, rows.rowCount), nullptr) << className;
        }
    }

    [[nodiscard]] CConvertorHost& Host() { return m_host; }
    [[nodiscard]] const CRecordPointer& Record() { return m_host.ShareRecord(); }
    [[nodiscard]] CJNIConvertor MakeConvertor() const { return CJNIConvertor(m_host.MakeLog()); }

    /// Not the owner: the machine is the process's.
    [[nodiscard]] static std::shared_ptr<CJavaVM> SharedVM() { return {std::shared_ptr<CJavaVM>(), &VM()}; }

    // What the host gives as this data, converted.
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertSample(SampleData sample, std::vector<SessionData> sessions = {});
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertMetric(const std::wstring& name, const CVariantValue& value);
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertSession(SessionData session);
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertDesktop(SystemData system);
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertProperties(PropertyBoxData properties);
    [[nodiscard]] std::shared_ptr<CJavaObject> ConvertExtendedSample(DATE time, std::vector<NameValueData> metrics,
                                                                     WalkData walk = {});

private:
    CConvertorHost m_host;
};
