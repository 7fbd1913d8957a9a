#include "BindingTable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "CJavaClass.h"
#include "CRealJvmTest.h"

namespace {

/// On real classes with exactly the contract's constructors and methods.
class BindingTableTest : public CRealJvmTest {};

constexpr const char* kClassesInOrder[] = {
    Binding::DesktopMessageClient::kClass, Binding::BaseUserSession::kClass,       Binding::HashMap::kClass,
    Binding::BaseSample::kClass,           Binding::InstanceLoggerFactory::kClass, Binding::DesktopInformation::kClass,
    Binding::DesktopConnection::kClass,    Binding::BaseRemoteApp::kClass,         Binding::BaseMetric::kClass,
    Binding::NetworkInterface::kClass,
};

TEST_F(BindingTableTest, EveryRowIsAMethodOfItsRealClass) {
    for (const char* const className : kClassesInOrder) {
        const Binding::ClassRows rows = Binding::FindRows(className);
        const jclass javaClass = Env()->FindClass(className);
        ASSERT_NE(javaClass, nullptr) << className;
        for (std::size_t i = 0; i < rows.rowCount; ++i) {
            const JavaMethodBinding& row = rows.firstRow[i];
            EXPECT_NE(Env()->GetMethodID(javaClass, row.name, row.signature), nullptr) << className << ' ' << row.alias;
            Env()->ExceptionClear();
        }
        Env()->DeleteLocalRef(javaClass);
    }
}

TEST_F(BindingTableTest, TheClassesRowsLieOneBehindTheOther) {
    const std::size_t counts[] = {14, 6, 2, 4, 2, 4, 2, 4, 6, 7};
    const JavaMethodBinding* expected = Binding::AllRows().firstRow;
    for (std::size_t i = 0; i < std::size(kClassesInOrder); ++i) {
        const Binding::ClassRows rows = Binding::FindRows(kClassesInOrder[i]);

        EXPECT_EQ(rows.firstRow, expected) << kClassesInOrder[i];
        EXPECT_EQ(rows.rowCount, counts[i]) << kClassesInOrder[i];
        expected += rows.rowCount;
    }
    EXPECT_EQ(expected, Binding::AllRows().firstRow + Binding::AllRows().rowCount);
}

TEST_F(BindingTableTest, AliasesAreTheMethodsNamesOrTellTheConstructorsParameters) {
    const Binding::ClassRows rows = Binding::AllRows();
    for (std::size_t i = 0; i < rows.rowCount; ++i) {
        const JavaMethodBinding& row = rows.firstRow[i];
        const std::string alias = row.alias;
        if (std::string(row.name) == "<init>") {
            const std::string parameters = alias.substr(5, alias.size() - 6);
            EXPECT_EQ(alias, "ctor(" + parameters + ")");
            EXPECT_EQ(parameters.find(' '), std::string::npos) << alias;
        } else {
            EXPECT_EQ(alias, row.name);
        }
    }
}

TEST_F(BindingTableTest, AnotherClassHasNoRows) {
    EXPECT_EQ(Binding::FindRows("java/lang/String").rowCount, 0U);
}

}  // namespace
