#include "SystemFunctions.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ImportTable.h"
#include "SystemHandles.h"
#include "TestPaths.h"

namespace {

using Names = std::set<std::string>;

constexpr char kRuntimeLibrary[] = "msvcrt.dll";

/// Imported where assertions are on, by the checks of the order of locks and of calls under the loader lock. They enter
/// and leave locks or tell something that is always there, and so do not fail.
const Names kOfAssertions = {"AcquireSRWLockExclusive", "AcquireSRWLockShared", "ReleaseSRWLockExclusive",
                             "ReleaseSRWLockShared", "RtlGetCurrentPeb"};

bool IsOfTheRuntime(const char* library) {
    return _stricmp(library, kRuntimeLibrary) == 0;
}

/// What the product imports, as its file says. Its code is not run.
class SystemFunctionsTest : public testing::Test {
protected:
    SystemFunctionsTest() : m_product(LoadLibraryExW(TestPaths::kProduct, nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
        if (m_product) {
            VisitImports(m_product.Get(), [this](const char* library, const char* function, void**) {
                (IsOfTheRuntime(library) ? m_ofTheRuntime : m_ofTheSystem).insert(function);
            });
        }
    }

    static Names InTheTable() {
        Names names;
        for (const SystemFunction& function : SystemFunctions()) {
            names.insert(function.name);
        }
        return names;
    }

    const CModule m_product;
    Names m_ofTheSystem;
    Names m_ofTheRuntime;
};

TEST_F(SystemFunctionsTest, EachFunctionThatTheProductImportsIsInTheTable) {
    const Names inTheTable = InTheTable();
    EXPECT_GT(m_ofTheSystem.size(), 50U);

    for (const std::string& function : m_ofTheSystem) {
        EXPECT_EQ(inTheTable.count(function) + kOfAssertions.count(function), 1U)
            << function << ": how does it fail, or why does it not?";
    }
}

TEST_F(SystemFunctionsTest, TheProductImportsEachFunctionOfTheTable) {
    for (const SystemFunction& function : SystemFunctions()) {
        EXPECT_EQ(m_ofTheSystem.count(function.name) + m_ofTheRuntime.count(function.name), 1U) << function.name;
    }
}

TEST_F(SystemFunctionsTest, EachFunctionFailsOrHasAReasonWhyItDoesNot) {
    for (const SystemFunction& function : SystemFunctions()) {
        const bool fails = function.group != SystemGroup::eNone;
        EXPECT_EQ(function.replacement != nullptr && FAILED(function.result), fails) << function.name;
        EXPECT_EQ(function.whyNone != nullptr, !fails) << function.name;
    }
    EXPECT_EQ(InTheTable().size(), SystemFunctions().size()) << "a function stands there twice";
}

}  // namespace
